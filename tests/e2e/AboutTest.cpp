// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/desktop/SettingsPortal.h"
#include "tests/e2e/OtherWindowsTest.h"

#include <algorithm>

namespace tallowmere {

using desktop::waitUntil;
using desktop::WindowId;
namespace key = desktop::key;

/// The windows that the program menu and the Help menu show.
class AboutTest : public OtherWindowsTest
{
protected:
    /// Opens a menu by its access key, and chooses an item by going down to it.
    void choose(char menu, int item) const
    {
        input.press(static_cast<std::uint32_t>(menu), {key::kAlt});
        for (int i = 1; i < item; ++i)
            input.press(key::kDown);
        input.press(key::kReturn);
    }
    void showAbout() const { choose('t', 1); }
    /// A picture behind the other windows, and its name not in the title.
    void startWithPicture()
    {
        writeSettings("AutoResizeToImageSize=false\nFileNameDisplayLocation=off\n");
        addPicture("a.jpg", kRed);
        start({"a.jpg"});
        ASSERT_TRUE(screen.waitForColour(windows.contents(window).centre(), kRed)) << situation();
    }
    [[nodiscard]] std::ptrdiff_t countTitled(const std::string &title) const
    {
        const auto all = windows.all();
        return std::ranges::count_if(all, [&](WindowId each) { return windows.title(each) == title; });
    }
};

TEST_F(AboutTest, aboutIs400By240InTheMiddleOfTheWorkArea)
{
    startWithPicture();
    showAbout();
    const WindowId about = waitForWindow("About Tallowmere");
    const auto contents = windows.contents(about);
    EXPECT_EQ(contents.width, 400) << situation();
    EXPECT_EQ(contents.height, 240) << situation();
    const auto area = screenAndKeys.workArea();
    EXPECT_NEAR(contents.centre().x, area.centre().x, 30);
    EXPECT_NEAR(contents.centre().y, area.centre().y, 30);
}

TEST_F(AboutTest, aPngThatIsRefusedDoesNotBringTheClosedViewerForward)
{
    writeSettings("AutoResizeToImageSize=false\nFileNameDisplayLocation=off\nPNGSupportEnabled=false\n");
    const auto jpeg = addPicture("a.jpg", kRed);
    const auto png = addFile("x.png", photos::makePlainPng(300, 200, {224, 200, 24}));
    start({"a.jpg"});
    ASSERT_TRUE(screen.waitForColour(windows.contents(window).centre(), kRed)) << situation();
    showAbout();
    const WindowId about = waitForWindow("About Tallowmere");
    windows.close(window);
    ASSERT_TRUE(waitUntilGone("Tallowmere")) << situation();
    EXPECT_EQ(callApplication("Open", {uris({uri(png)}), "{}"}).status, 0);
    switchTo(about);
    input.press(key::kEscape); // after the request
    EXPECT_TRUE(waitUntilGone("About Tallowmere")) << situation();
    EXPECT_EQ(countTitled("Tallowmere"), 0) << situation();
    EXPECT_EQ(callApplication("Open", {uris({uri(jpeg)}), "{}"}).status, 0);
    EXPECT_TRUE(waitUntil([&] { return countTitled("Tallowmere") == 1; })) << situation();
}

TEST_F(AboutTest, choosingAboutTwiceShowsOneAboutWindow)
{
    startWithPicture();
    showAbout();
    const WindowId about = waitForWindow("About Tallowmere");
    switchTo(window);
    showAbout();
    EXPECT_EQ(waitForWindow("About Tallowmere"), about);
    EXPECT_EQ(countTitled("About Tallowmere"), 1) << situation();
}

TEST_F(AboutTest, escapeAndControlWCloseTheAboutWindow)
{
    startWithPicture();
    showAbout();
    waitForWindow("About Tallowmere");
    input.press(key::kEscape);
    EXPECT_TRUE(waitUntilGone("About Tallowmere")) << situation();
    ASSERT_TRUE(waitUntil([&] { return windows.hasFocus(window); })) << situation();
    showAbout();
    waitForWindow("About Tallowmere");
    input.control('w');
    EXPECT_TRUE(waitUntilGone("About Tallowmere")) << situation();
    EXPECT_TRUE(windows.visible(window)) << "and not the viewer\n" << situation();
}

TEST_F(AboutTest, controlQInTheAboutWindowStillReachesQuit)
{
    startWithPicture();
    showAbout();
    waitForWindow("About Tallowmere");
    input.control('q');
    EXPECT_EQ(program->waitForExit(), 0) << situation();
}

TEST_F(AboutTest, controlQAndControlWWorkThereAlsoWhileTheViewerIsClosed)
{
    startWithPicture();
    showAbout();
    const WindowId about = waitForWindow("About Tallowmere");
    windows.close(window);
    ASSERT_TRUE(waitUntilGone("Tallowmere")) << situation();
    switchTo(about);
    input.control(',');
    const WindowId settingsWindow = waitForWindow("Settings");
    input.control('w');
    EXPECT_TRUE(waitUntilGone("Settings")) << settingsWindow << '\n' << situation();
    switchTo(about);
    input.control('q');
    EXPECT_EQ(program->waitForExit(), 0) << situation();
}

TEST_F(AboutTest, aSecondStartWithOnlyTheAboutWindowOpenLeavesTheViewerClosed)
{
    startWithPicture();
    showAbout();
    const WindowId about = waitForWindow("About Tallowmere");
    windows.close(window);
    ASSERT_TRUE(waitUntilGone("Tallowmere")) << situation();
    EXPECT_EQ(launch({})->waitForExit(), 0);
    switchTo(about);
    input.press(key::kEscape); // comes after the request
    EXPECT_TRUE(waitUntilGone("About Tallowmere")) << situation();
    EXPECT_EQ(countTitled("Tallowmere"), 0) << situation();
    EXPECT_EQ(launch({})->waitForExit(), 0);
    EXPECT_TRUE(waitUntil([&] { return countTitled("Tallowmere") == 1; })) << situation();
}

TEST_F(AboutTest, aChangeOfTheSystemAppearanceWhileSettingsIsOpenUpdatesBothWindows)
{
    constexpr std::uint32_t kDark = 1;
    constexpr std::uint32_t kLight = 2;
    desktop::SettingsPortal portal(bus->address(), kLight);
    start();
    input.control(',');
    const WindowId settingsWindow = waitForWindow("Settings");
    // In the margin, beside everything that is written there.
    const auto ground = [&](WindowId each) {
        const auto contents = windows.contents(each);
        return screen.at({contents.x + 3, contents.y + contents.height - 4}).green;
    };
    EXPECT_TRUE(waitUntil([&] { return ground(window) > 200 && ground(settingsWindow) > 200; })) << situation();
    portal.change(kDark);
    EXPECT_TRUE(waitUntil([&] { return ground(window) < 80 && ground(settingsWindow) < 80; }))
        << ground(window) << ", " << ground(settingsWindow) << '\n'
        << situation();
}

TEST_F(AboutTest, minimisingTheProgramTakesItsOtherWindowsAlong)
{
    startWithPicture();
    showAbout();
    const WindowId about = waitForWindow("About Tallowmere");
    switchTo(window);
    input.control('h');
    const auto minimised = [&](WindowId each) { return windows.hasState(each, "_NET_WM_STATE_HIDDEN"); };
    EXPECT_TRUE(waitUntil([&] { return minimised(window) && minimised(about); })) << situation();
}

TEST_F(AboutTest, keyboardShortcutsOpensAWindowThatEscapeCloses)
{
    startWithPicture();
    choose('h', 1);
    waitForWindow("Keyboard Shortcuts");
    input.press(key::kEscape);
    EXPECT_TRUE(waitUntilGone("Keyboard Shortcuts")) << situation();
}

TEST_F(AboutTest, manualPageOpensAWindowThatControlWCloses)
{
    startWithPicture();
    choose('h', 2);
    waitForWindow("Manual Page");
    input.control('w');
    EXPECT_TRUE(waitUntilGone("Manual Page")) << situation();
    EXPECT_TRUE(windows.visible(window)) << situation();
}

} // namespace tallowmere
