// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/desktop/WaylandDesktop.h"
#include "tests/e2e/E2ETest.h"

#include <algorithm>

namespace tallowmere {

using desktop::waitUntil;
namespace fs = std::filesystem;
namespace key = desktop::key;

/// What a session usually has may be missing: a photo is shown all the same.
class SurroundingsTest : public E2ETest
{
protected:
    void SetUp() override
    {
        addPicture("a.jpg", kRed);
        addPicture("b.jpg", kGreen, 500, 400);
    }
    void expectPhotoAndStep()
    {
        start({"a.jpg"});
        EXPECT_TRUE(waitForPicture("a.jpg", kRed)) << situation();
        input.press(key::kLeft);
        EXPECT_TRUE(waitForPicture("b.jpg", kGreen)) << situation();
    }
};

TEST_F(SurroundingsTest, withoutASessionBus)
{
    environment.erase("DBUS_SESSION_BUS_ADDRESS");
    expectPhotoAndStep();
}

TEST_F(SurroundingsTest, withABusThatDoesNotAnswer)
{
    environment["DBUS_SESSION_BUS_ADDRESS"] = "unix:path=/nowhere/at/all";
    expectPhotoAndStep();
}

TEST_F(SurroundingsTest, withoutAHomeFolder)
{
    for (const char *name : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_STATE_HOME"})
        environment.erase(name);
    expectPhotoAndStep();
}

TEST_F(SurroundingsTest, withoutARuntimeFolder)
{
    environment.erase("XDG_RUNTIME_DIR");
    expectPhotoAndStep();
}

TEST_F(SurroundingsTest, inTheCLocale)
{
    setEnvironment("LANG", "C");
    addPicture("Käse10.jpg", kBlue, 300, 300);
    addPicture("Käse2.jpg", kYellow, 300, 300);
    start({"b.jpg"});
    EXPECT_TRUE(waitForPicture("b.jpg", kGreen)) << situation();
    // Numbers still count by value, and titles are still UTF-8.
    input.press(key::kLeft);
    EXPECT_TRUE(waitForPicture("Käse2.jpg", kYellow)) << situation();
    input.press(key::kLeft);
    EXPECT_TRUE(waitForPicture("Käse10.jpg", kBlue)) << situation();
}

TEST_F(SurroundingsTest, afterItsOutputHasBeenClosed)
{
    // As in "tallowmere a.jpg | head": the reader has gone before the program writes.
    desktop::Launch launched{.arguments = {"sh", "-c", "trap '' PIPE; exec \"$0\" a.jpg >&-", programFile.string()},
                             .environment = environment,
                             .workingDirectory = folders.pictures(),
                             .user = {}};
    program = std::make_unique<desktop::Process>(launched);
    adopt(program->id());
    EXPECT_TRUE(waitForPicture("a.jpg", kRed)) << situation();
    input.press(key::kLeft);
    EXPECT_TRUE(waitForPicture("b.jpg", kGreen)) << situation();
}

TEST_F(SurroundingsTest, atTwiceTheScale)
{
    setEnvironment("QT_SCALE_FACTOR", "2");
    start({"a.jpg"});
    EXPECT_TRUE(waitForPicture("a.jpg", kRed)) << situation();
    // One image pixel for each screen pixel: the window is as wide as the picture here, too.
    EXPECT_TRUE(waitUntil([&] { return std::abs(windows.frame(window).width - 640) <= 4; })) << situation();
    const auto contents = windows.contents(window);
    const int bottom = contents.y + contents.height;
    EXPECT_TRUE(screen.waitForColour({contents.x + 6, bottom - 6}, kSurround)) << situation();
    EXPECT_TRUE(screen.waitForColour({contents.x + 6, bottom - 474}, kSurround)) << situation();
}

class ReadOnlySettingsTest : public OrdinaryUserTest
{};

TEST_F(ReadOnlySettingsTest, aChangedSettingLastsAsLongAsTheProgram)
{
    addPicture("a.jpg", kRed);
    addPicture("b.jpg", kGreen, 500, 400);
    fs::remove_all(folders.config() / "tallowmere");
    fs::permissions(folders.config(), static_cast<fs::perms>(0555));
    start({"a.jpg"});
    EXPECT_TRUE(waitForPicture("a.jpg", kRed)) << situation();
    waitUntilKeysAreDealtWith();
    input.press(key::kLeft);
    EXPECT_TRUE(waitForPicture("b.jpg", kGreen)) << situation();
    EXPECT_EQ(windows.frame(window).width, 900) << "automatic resizing was switched off\n" << situation();
    EXPECT_TRUE(fs::is_empty(folders.config()));
}

/// A compositor instead of the X server.
class WaylandTest : public E2ETest
{
protected:
    explicit WaylandTest(desktop::WaylandDesktop::Shell shell = desktop::WaylandDesktop::Shell::desktop)
        : wayland(folders.root() / "run", shell)
    {
        environment.erase("DISPLAY");
        environment["WAYLAND_DISPLAY"] = desktop::WaylandDesktop::name();
    }
    [[nodiscard]] std::ptrdiff_t pixelsOf(const desktop::Colour &colour) const
    {
        const auto picture = wayland.capture();
        return std::ranges::count_if(picture.pixels, [&](const auto &pixel) { return alike(pixel, colour); });
    }
    /// The centre of a picture of that size, pixel for pixel.
    [[nodiscard]] bool waitForCentre(const desktop::Colour &colour, int width, int height)
    {
        const int expected = (width / 2) * (height / 2);
        return waitUntil([&] { return std::abs(pixelsOf(colour) - expected) < expected / 20; });
    }

    desktop::WaylandDesktop wayland;
};

TEST_F(WaylandTest, aPhotoIsShownPixelForPixelAndTheNextOneAfterIt)
{
    const auto b = addPicture("b.jpg", kGreen, 500, 400);
    addPicture("a.jpg", kRed);
    program = launch({"a.jpg"});
    EXPECT_TRUE(waitForCentre(kRed, 640, 480)) << pixelsOf(kRed) << '\n' << situation();
    EXPECT_EQ(callApplication("Open", {uris({uri(b)}), "{}"}).status, 0);
    EXPECT_TRUE(waitForCentre(kGreen, 500, 400)) << pixelsOf(kGreen) << '\n' << situation();
    EXPECT_EQ(callApplication("ActivateAction", {"quit", "[]", "{}"}).status, 0);
    EXPECT_EQ(program->waitForExit(), 0) << situation();
}

/// A compositor under which every window fills the output. Without a screen it shows none of them, so that what the
/// program says has to do.
class KioskTest : public WaylandTest
{
protected:
    KioskTest() : WaylandTest(desktop::WaylandDesktop::Shell::kiosk) { setEnvironment("WAYLAND_DEBUG", "1"); }
    /// While two pictures of the output are taken, the program has next to nothing to do.
    [[nodiscard]] bool comesToRest()
    {
        return waitUntil([&] {
            const auto before = program->processorTicks();
            (void)wayland.capture();
            (void)wayland.capture();
            return program->processorTicks() <= before + 1;
        });
    }
    [[nodiscard]] bool waitForTitleRequest(const std::string &name)
    {
        const std::string request = std::string("set_title(\"Tallowmere • ").append(name);
        return waitUntil([&] { return program->errors().find(request) != std::string::npos; });
    }
};

TEST_F(KioskTest, aCompositorThatGivesAnotherSizeIsNotFoughtOver)
{
    const auto b = addPicture("b.jpg", kGreen, 500, 400);
    addPicture("a.jpg", kRed);
    program = launch({"a.jpg"});
    EXPECT_TRUE(waitForTitleRequest("a.jpg")) << situation();
    EXPECT_TRUE(comesToRest()) << situation();
    EXPECT_NE(program->errors().find(".configure(1280, 800, "), std::string::npos) << "it was given its own size";
    EXPECT_EQ(callApplication("Open", {uris({uri(b)}), "{}"}).status, 0);
    EXPECT_TRUE(waitForTitleRequest("b.jpg")) << situation();
    EXPECT_TRUE(comesToRest()) << situation();
    EXPECT_EQ(callApplication("ActivateAction", {"quit", "[]", "{}"}).status, 0);
    EXPECT_EQ(program->waitForExit(), 0) << situation();
}

} // namespace tallowmere
