// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/desktop/XdndSource.h"
#include "tests/e2e/E2ETest.h"

#include <algorithm>

namespace tallowmere {

using desktop::Point;
using desktop::waitUntil;
using desktop::XdndSource;
namespace fs = std::filesystem;

/// Files dragged from another program.
class DragTest : public E2ETest
{
protected:
    static std::string list(const std::vector<std::string> &uris)
    {
        std::string text;
        for (const auto &each : uris)
            text.append(each).append("\r\n");
        return text;
    }
    [[nodiscard]] XdndSource drag(const std::vector<std::string> &uris) const { return {screenAndKeys, list(uris)}; }
    [[nodiscard]] Point middle() const { return windows.contents(window).centre(); }
    /// Pixels that are not of the window's colour, in a part of the window given from its middle.
    [[nodiscard]] std::ptrdiff_t distinctPixels(int left, int top, int width, int height) const
    {
        const auto contents = windows.contents(window);
        const auto centre = contents.centre();
        const auto seen = screen.capture({centre.x + left, centre.y + top, width, height});
        const auto ground = screen.at({contents.x + 5, contents.y + contents.height - 5});
        return std::ranges::count_if(seen.pixels, [&](const auto &pixel) { return !alike(pixel, ground, 24); });
    }
    [[nodiscard]] bool logoIsVisible() const { return distinctPixels(-50, -70, 100, 100) > 500; }
    /// A line of text below the logo.
    [[nodiscard]] bool labelIsVisible() const { return distinctPixels(-200, 52, 400, 40) > 150; }
    /// The window is where and as large as it stays: what it has asked for on its way to the screen is done.
    void makeLarge()
    {
        ASSERT_TRUE(waitUntil([this] { return logoIsVisible(); })) << situation();
        const auto frame = windows.frame(window);
        windows.moveAndResize(window, {frame.x, frame.y, 800, 560});
        ASSERT_TRUE(waitUntil([this] {
            return windows.contents(window).width == 800 && logoIsVisible() && labelIsVisible();
        })) << situation();
    }
    /// Over the idle window with @p file and away again, twice; then it is dropped.
    void hoverTwiceAndDrop(const fs::path &file)
    {
        for (int round = 0; round < 2; ++round) {
            auto source = drag({uri(file)});
            EXPECT_TRUE(source.moveTo(middle())) << source.transfers() << " transfers in round " << round << '\n'
                                                 << situation();
            EXPECT_TRUE(waitUntil([this] { return !logoIsVisible(); })) << situation();
            source.leave();
            EXPECT_TRUE(waitUntil([this] { return logoIsVisible() && labelIsVisible(); })) << situation();
        }
        auto source = drag({uri(file)});
        EXPECT_TRUE(source.moveTo(middle()));
        EXPECT_TRUE(source.drop());
    }
};

TEST_F(DragTest, droppedOnTheIdleLogoAFileIsOpenedAndItsFolderCanBeStepped)
{
    const auto file = addPicture("a.jpg", kRed);
    addPicture("b.jpg", kGreen);
    start();
    ASSERT_TRUE(waitUntil([this] { return logoIsVisible(); })) << situation();
    auto source = drag({uri(file)});
    auto point = middle();
    point.y -= 20;
    EXPECT_TRUE(source.moveTo(point));
    EXPECT_EQ(source.action(), "XdndActionCopy");
    EXPECT_TRUE(source.drop());
    EXPECT_EQ(source.action(), "XdndActionCopy");
    EXPECT_TRUE(waitForPicture("a.jpg", kRed)) << situation();
    windows.activate(window);
    ASSERT_TRUE(waitUntil([this] { return windows.hasFocus(window); }));
    input.press(desktop::key::kLeft);
    EXPECT_TRUE(waitForPicture("b.jpg", kGreen)) << situation();
    EXPECT_TRUE(fs::exists(file)) << "a drop copies, it never moves";
}

TEST_F(DragTest, droppedOnTheFileNamePillAFileIsOpened)
{
    writeSettings("FileNameDisplayLocation=inCorner\nAutoResizeToImageSize=false\n");
    addPicture("a.jpg", kRed);
    fs::create_directory(folders.pictures() / "other");
    const auto other = addPicture("other/z.jpg", kBlue);
    start({"a.jpg"});
    const auto contents = windows.contents(window);
    const Point onPill{contents.x + contents.width - 16 - 75, contents.y + contents.height - 16 - 12};
    ASSERT_TRUE(screen.waitForColour(middle(), kRed)) << situation();
    ASSERT_TRUE(waitUntil([&] {
        return !alike(screen.at(onPill), screen.at({onPill.x, onPill.y - 20}), 4);
    })) << "no pill\n"
        << situation();
    auto source = drag({uri(other)});
    EXPECT_TRUE(source.moveTo(onPill));
    EXPECT_TRUE(source.drop());
    EXPECT_TRUE(screen.waitForColour(middle(), kBlue)) << situation();
}

TEST_F(DragTest, overTheIdleScreenAndLeavingLogoAndSizeComeBack)
{
    const auto file = addPicture("a.jpg", kRed);
    start();
    ASSERT_TRUE(waitUntil([this] { return logoIsVisible(); })) << situation();
    makeLarge();
    auto source = drag({uri(file)});
    EXPECT_TRUE(source.moveTo(middle()));
    EXPECT_TRUE(waitUntil([this] { return !logoIsVisible() && !labelIsVisible(); })) << situation();
    EXPECT_EQ(windows.contents(window).width, 800) << "hovering changes no size";
    source.leave();
    EXPECT_TRUE(waitUntil([this] {
        const auto now = windows.frame(window);
        return now.width == 600 && now.height == 400 && logoIsVisible() && labelIsVisible();
    })) << situation();
}

TEST_F(DragTest, overAMaximisedIdleWindowAndLeavingItStaysMaximised)
{
    const auto file = addPicture("a.jpg", kRed);
    start();
    makeLarge();
    windows.maximise(window);
    const auto area = screenAndKeys.workArea();
    ASSERT_TRUE(waitForFrame(area)) << situation();
    ASSERT_TRUE(waitUntil([this] { return logoIsVisible(); })) << situation();
    hoverTwiceAndDrop(file);
    EXPECT_TRUE(waitForPicture("a.jpg", kRed)) << situation();
    EXPECT_EQ(windows.frame(window), area) << situation();
    EXPECT_TRUE(windows.hasState(window, "_NET_WM_STATE_MAXIMIZED_VERT"));
}

TEST_F(DragTest, overAnIdleWindowHeldInOneDirectionAndLeavingItStaysSo)
{
    const auto file = addPicture("a.jpg", kRed);
    start();
    makeLarge();
    windows.maximiseVertically(window);
    const auto area = screenAndKeys.workArea();
    ASSERT_TRUE(waitUntil([&] {
        const auto frame = windows.frame(window);
        return frame.y == area.y && frame.height == area.height;
    })) << situation();
    ASSERT_TRUE(waitUntil([this] { return logoIsVisible(); })) << situation();
    const auto held = windows.frame(window);
    hoverTwiceAndDrop(file);
    EXPECT_TRUE(waitForPicture("a.jpg", kRed)) << situation();
    EXPECT_EQ(windows.frame(window), held) << situation();
    EXPECT_TRUE(windows.hasState(window, "_NET_WM_STATE_MAXIMIZED_VERT"));
}

TEST_F(DragTest, overTheMenuBarItIsStillOverTheWindowAndCanBeDropped)
{
    writeSettings("AutoResizeToImageSize=false\n");
    const auto file = addPicture("a.jpg", kRed);
    start();
    makeLarge();
    const auto contents = windows.contents(window);
    auto source = drag({uri(file)});
    EXPECT_TRUE(source.moveTo(middle()));
    EXPECT_TRUE(waitUntil([this] { return !logoIsVisible(); })) << situation();
    for (const int y : {8, 200, 8})
        EXPECT_TRUE(source.moveTo({contents.x + 400, contents.y + y})) << y;
    EXPECT_FALSE(logoIsVisible());
    EXPECT_TRUE(source.drop());
    EXPECT_TRUE(waitForPicture("a.jpg", kRed)) << situation();
    EXPECT_EQ(windows.contents(window), contents) << "as if it had left\n" << situation();
}

TEST_F(DragTest, overAShownImageAndLeavingNothingChanges)
{
    writeSettings("AutoResizeToImageSize=false\n");
    addPicture("a.jpg", kRed);
    fs::create_directory(folders.pictures() / "other");
    const auto other = addPicture("other/z.jpg", kBlue);
    start({"a.jpg"});
    ASSERT_TRUE(waitForPicture("a.jpg", kRed)) << situation();
    const auto before = windows.frame(window);
    {
        auto source = drag({uri(other)});
        EXPECT_TRUE(source.moveTo(middle()));
        EXPECT_TRUE(source.moveTo({middle().x + 20, middle().y + 20}));
        source.leave();
    }
    EXPECT_EQ(windows.title(window), "Tallowmere • a.jpg");
    // Whatever the leaving set off shows by the time that another drag is over.
    auto source = drag({uri(other)});
    EXPECT_TRUE(source.moveTo(middle()));
    EXPECT_TRUE(waitForPicture("a.jpg", kRed)) << situation();
    EXPECT_TRUE(source.drop());
    EXPECT_TRUE(waitForPicture("z.jpg", kBlue)) << situation();
    EXPECT_EQ(windows.frame(window), before) << situation();
}

TEST_F(DragTest, anUpperCasePngIsTaken)
{
    const auto file = addFile("A.PNG", photos::makePlainPng(200, 200, {32, 64, 200}));
    start();
    auto source = drag({uri(file)});
    EXPECT_TRUE(source.moveTo(middle()));
    EXPECT_TRUE(source.drop());
    EXPECT_TRUE(waitForPicture("A.PNG", kBlue)) << situation();
}

TEST_F(DragTest, withPngSupportOffAPngIsRefused)
{
    writeSettings("PNGSupportEnabled=false\n");
    const auto file = addFile("A.PNG", photos::makePlainPng(200, 200, {32, 64, 200}));
    start();
    ASSERT_TRUE(waitUntil([this] { return logoIsVisible(); })) << situation();
    auto source = drag({uri(file)});
    EXPECT_FALSE(source.moveTo(middle()));
    EXPECT_EQ(source.action(), "");
    source.leave();
    waitUntilKeysAreDealtWith();
    EXPECT_TRUE(logoIsVisible()) << situation();
}

TEST_F(DragTest, aTextFileTogetherWithAJpegOpensTheJpeg)
{
    const auto notes = addFile("a.txt", {});
    const auto file = addPicture("b.jpg", kGreen);
    start();
    auto source = drag({uri(notes), uri(file)});
    EXPECT_TRUE(source.moveTo(middle()));
    EXPECT_TRUE(source.drop());
    EXPECT_TRUE(waitForPicture("b.jpg", kGreen)) << situation();
}

TEST_F(DragTest, aNameThatIsNoTextIsOpened)
{
    addPicture("na\xEFve.jpg", kBlue);
    start();
    auto source = drag({uri(folders.pictures() / "na%EFve.jpg")});
    EXPECT_TRUE(source.moveTo(middle()));
    EXPECT_TRUE(source.drop());
    EXPECT_TRUE(waitForPicture("na\xEF\xBF\xBDve.jpg", kBlue)) << situation();
}

TEST_F(DragTest, foldersRemoteAddressesAndNonsenseAreRefusedAndTheProgramLivesOn)
{
    const auto file = addPicture("a.jpg", kRed);
    start();
    for (const auto &uris : std::vector<std::vector<std::string>>{
             {},
             {uri(folders.pictures())},
             {"http://example.org/a.jpg", "trash:///a.jpg", "mtp://phone/a.jpg"},
             {std::string(100'000, 'x')},
             {"file://", "file:///", "%00.jpg", "# file:///a.jpg"},
         }) {
        auto source = drag(uris);
        EXPECT_FALSE(source.moveTo(middle())) << (uris.empty() ? "" : uris.front().substr(0, 40));
    }
    auto source = drag({uri(file)});
    EXPECT_TRUE(source.moveTo(middle()));
    EXPECT_TRUE(source.drop());
    EXPECT_TRUE(waitForPicture("a.jpg", kRed)) << situation();
}

TEST_F(DragTest, tenThousandFilesAreHandedOverOnce)
{
    const auto file = addPicture("a.jpg", kRed);
    start();
    std::vector<std::string> uris(10'000, uri(folders.pictures() / "notes.txt"));
    uris.push_back(uri(file));
    auto source = drag(uris);
    for (int i = 0; i < 20; ++i)
        EXPECT_TRUE(source.moveTo({middle().x + i, middle().y}));
    EXPECT_TRUE(source.drop());
    EXPECT_TRUE(waitForPicture("a.jpg", kRed)) << situation();
    EXPECT_EQ(source.transfers(), 1);
}

TEST_F(DragTest, aFolderWithAPicturesNameIsTakenAndShowsNothing)
{
    const auto folder = folders.pictures() / "folder.jpg";
    fs::create_directory(folder);
    start();
    auto source = drag({uri(folder)});
    EXPECT_TRUE(source.moveTo(middle()));
    EXPECT_TRUE(source.drop());
    EXPECT_TRUE(waitForTitle("Tallowmere • folder.jpg")) << situation();
    waitUntilKeysAreDealtWith();
    EXPECT_TRUE(showsNoPicture()) << situation();
}

} // namespace tallowmere
