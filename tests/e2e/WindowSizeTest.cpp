// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/e2e/E2ETest.h"

#include <cstdlib>

namespace tallowmere {

using desktop::Point;
using desktop::Rectangle;
using desktop::waitUntil;
namespace key = desktop::key;

class WindowSizeTest : public E2ETest
{
protected:
    void SetUp() override
    {
        addPicture("a.jpg", kRed, 640, 480);
        addPicture("b.jpg", kGreen, 800, 300);
    }
    /// Shows a.jpg in a window of its size.
    void startFitted()
    {
        start({"a.jpg"});
        ASSERT_TRUE(waitForPicture("a.jpg", kRed)) << situation();
        ASSERT_TRUE(waitUntil([&] { return std::abs(windows.frame(window).width - 640) <= 2; })) << situation();
        ASSERT_TRUE(waitUntilFrameRests());
    }
    /// The animation of 250 ms is over: the frame is in the middle of the work area.
    [[nodiscard]] bool waitUntilFrameRests()
    {
        const Point middle = screenAndKeys.workArea().centre();
        return waitUntil([&] {
            const Point centre = windows.frame(window).centre();
            return std::abs(centre.x - middle.x) <= 1 && std::abs(centre.y - middle.y) <= 1;
        });
    }
    /// Any automatic resize would be seen in either direction.
    void makeUnlikeAnyPicture()
    {
        windows.moveAndResize(window, {100, 60, 450, 350});
        ASSERT_TRUE(waitUntil([&] {
            return windows.contents(window).width == 450 && windows.contents(window).height == 350 &&
                   windows.frame(window).x == 100 && windows.frame(window).y == 60;
        })) << situation();
    }
    static constexpr const char *kHeldVertically = "_NET_WM_STATE_MAXIMIZED_VERT";
    void holdVertically()
    {
        windows.maximiseVertically(window);
        // Its size and its place may arrive one after the other.
        ASSERT_TRUE(waitUntil([&] {
            const Rectangle frame = windows.frame(window);
            const Rectangle area = screenAndKeys.workArea();
            return frame.height == area.height && frame.y == area.y;
        })) << situation();
    }
    [[nodiscard]] static Rectangle around(const Point &centre, int width, int height)
    {
        return {centre.x - width / 2, centre.y - height / 2, width, height};
    }
    [[nodiscard]] bool waitForSetting(const std::string &line)
    {
        return waitUntil([&] { return settings().find(line + "\n") != std::string::npos; });
    }
    [[nodiscard]] std::ptrdiff_t occurrences(const std::string &text) const
    {
        std::ptrdiff_t count = 0;
        const std::string all = settings();
        for (auto at = all.find(text); at != std::string::npos; at = all.find(text, at + 1))
            ++count;
        return count;
    }
};

TEST_F(WindowSizeTest, control1MakesTheFrame600By400AroundItsCentreAndEndsAutomaticResizing)
{
    startFitted();
    const Point centre = windows.frame(window).centre();
    input.control('1');
    EXPECT_TRUE(waitForFrame(around(centre, 600, 400), 2)) << situation();
    EXPECT_TRUE(waitForSetting("AutoResizeToImageSize=false")) << situation();
    // The window keeps its size from now on.
    input.press(key::kLeft);
    EXPECT_TRUE(waitForPicture("b.jpg", kGreen)) << situation();
    EXPECT_TRUE(waitForFrame(around(centre, 600, 400), 2)) << situation();
}

TEST_F(WindowSizeTest, control1AtTheScreensEdgeKeepsTheCentreAndMayPassTheEdge)
{
    startFitted();
    windows.moveAndResize(window, {1500, 400, 300, 200});
    ASSERT_TRUE(waitUntil([&] { return windows.contents(window).width == 300 && windows.frame(window).x == 1500; }))
        << situation();
    const Point centre = windows.frame(window).centre();
    input.control('1');
    EXPECT_TRUE(waitForFrame(around(centre, 600, 400), 2)) << situation();
}

TEST_F(WindowSizeTest, control2MakesTheFrame900By600)
{
    startFitted();
    const Point centre = windows.frame(window).centre();
    input.control('2');
    EXPECT_TRUE(waitForFrame(around(centre, 900, 600), 2)) << situation();
    EXPECT_TRUE(waitForSetting("AutoResizeToImageSize=false")) << situation();
}

TEST_F(WindowSizeTest, control3LeavesFortyPointsOfTheWorkAreaOnEverySide)
{
    startFitted();
    const Rectangle area = screenAndKeys.workArea();
    input.control('3');
    EXPECT_TRUE(waitForFrame({area.x + 40, area.y + 40, area.width - 80, area.height - 80})) << situation();
    EXPECT_TRUE(waitForSetting("AutoResizeToImageSize=false")) << situation();
}

TEST_F(WindowSizeTest, control4TogglesAutomaticResizingExactlyOnce)
{
    startFitted();
    const Rectangle before = windows.frame(window);
    input.control('4');
    EXPECT_TRUE(waitForSetting("AutoResizeToImageSize=false")) << situation();
    input.press(key::kLeft);
    ASSERT_TRUE(waitForPicture("b.jpg", kGreen)) << situation();
    EXPECT_EQ(windows.frame(window), before) << "switched off, the window keeps its size\n" << situation();
    input.control('4');
    EXPECT_TRUE(waitForSetting("AutoResizeToImageSize=true")) << situation();
    EXPECT_TRUE(waitUntil([&] { return std::abs(windows.frame(window).width - 800) <= 2; })) << situation();
}

TEST_F(WindowSizeTest, toImageWhileAutomaticResizingIsOnTurnsItOffAndKeepsTheSize)
{
    startFitted();
    makeUnlikeAnyPicture();
    const Rectangle before = windows.frame(window);
    input.control('4');
    EXPECT_TRUE(waitForSetting("AutoResizeToImageSize=false")) << situation();
    // Whatever else the key may have set off has happened by then.
    input.press(key::kLeft);
    EXPECT_TRUE(waitForPicture("b.jpg", kGreen)) << situation();
    EXPECT_EQ(windows.frame(window), before) << situation();
}

/// A picture of 1000 x 700 in a window of its size.
class WindowSizeByZoomTest : public WindowSizeTest
{
protected:
    void SetUp() override
    {
        addPicture("a.jpg", kRed, 1000, 700);
        writeSettings("AutoResizeWithAnimation=false\n");
        start({"a.jpg"});
        ASSERT_TRUE(waitForPicture("a.jpg", kRed)) << situation();
        ASSERT_TRUE(waitUntil([&] { return windows.contents(window).width == 1000; })) << situation();
        ASSERT_TRUE(waitUntilFrameRests()) << situation();
        m_menuBar = windows.contents(window).height - 700;
        ASSERT_GT(m_menuBar, 0);
    }
    [[nodiscard]] bool waitForWidth(int width, int tolerance)
    {
        return waitUntil([&] { return std::abs(windows.contents(window).width - width) <= tolerance; });
    }
    [[nodiscard]] bool waitForContents(int width, int height)
    {
        return waitUntil([&] {
            const Rectangle contents = windows.contents(window);
            return contents.width == width && contents.height == height + m_menuBar;
        });
    }
    int m_menuBar = 0;
};

TEST_F(WindowSizeByZoomTest, growingFrom800By600StopsAtTheFittedSizeOf1000By700)
{
    windows.moveAndResize(window, {200, 100, 800, 600 + m_menuBar});
    ASSERT_TRUE(waitForContents(800, 600)) << situation();
    input.control('=');
    EXPECT_TRUE(waitForContents(1000, 700)) << situation();
    EXPECT_TRUE(waitUntilFrameRests()) << situation();
}

TEST_F(WindowSizeByZoomTest, twelveStepsOutAndBackInEndAtTheSizeOfThePicture)
{
    for (const int width : {667, 444, 296, 250}) {
        input.control('-');
        ASSERT_TRUE(waitForWidth(width, 2)) << width << '\n' << situation();
    }
    for (int step = 4; step < 12; ++step)
        input.control('-');
    for (const int width : {375, 562, 844, 1000}) {
        input.control('=');
        ASSERT_TRUE(waitForWidth(width, 2)) << width << '\n' << situation();
    }
    EXPECT_TRUE(waitForContents(1000, 700)) << situation();
}

TEST_F(WindowSizeTest, aPictureSoNarrowThatItsWidthRoundsToNothingStillHasAWindow)
{
    addPicture("c.jpg", kBlue, 2, 4000);
    start({"c.jpg"});
    ASSERT_NE(window, 0U);
    ASSERT_TRUE(waitForTitle("Tallowmere • c.jpg")) << situation();
    ASSERT_TRUE(program->waitForOutput("✅ Successfully loaded 3 files from directory\n")) << situation();
    EXPECT_TRUE(windows.visible(window));
    for (int step = 0; step < 3; ++step)
        input.control('-');
    input.press(key::kLeft);
    EXPECT_TRUE(waitForPicture("a.jpg", kRed)) << situation();
    EXPECT_TRUE(waitUntil([&] { return std::abs(windows.frame(window).width - 640) <= 2; })) << situation();
    EXPECT_TRUE(waitUntilFrameRests()) << situation();
    input.press(key::kRight);
    EXPECT_TRUE(waitForTitle("Tallowmere • c.jpg")) << situation();
    input.press(key::kLeft);
    EXPECT_TRUE(waitForPicture("a.jpg", kRed)) << "and again in a window that is there already\n" << situation();
    EXPECT_TRUE(waitUntil([&] { return std::abs(windows.frame(window).width - 640) <= 2; })) << situation();
}

TEST_F(WindowSizeTest, fixedSizesWorkWithoutAFile)
{
    start();
    const Point centre = windows.frame(window).centre();
    input.control('2');
    EXPECT_TRUE(waitForFrame(around(centre, 900, 600), 2)) << situation();
    input.control('1');
    EXPECT_TRUE(waitForFrame(around(centre, 600, 400), 2)) << situation();
}

TEST_F(WindowSizeTest, aFixedSizeEndsTheMaximisedState)
{
    startFitted();
    windows.maximise(window);
    ASSERT_TRUE(waitUntil([&] { return windows.hasState(window, "_NET_WM_STATE_MAXIMIZED_VERT"); }));
    input.control('1');
    EXPECT_TRUE(waitUntil([&] {
        const Rectangle frame = windows.frame(window);
        return !windows.hasState(window, "_NET_WM_STATE_MAXIMIZED_VERT") && frame.width == 600 && frame.height == 400;
    })) << situation();
}

TEST_F(WindowSizeTest, aMaximisedWindowKeepsItsFrameWhenAnotherPictureComes)
{
    startFitted();
    windows.maximise(window);
    const Rectangle area = screenAndKeys.workArea();
    ASSERT_TRUE(waitForFrame(area));
    input.press(key::kLeft);
    EXPECT_TRUE(waitForPicture("b.jpg", kGreen)) << situation();
    input.press(key::kRight);
    EXPECT_TRUE(waitForPicture("a.jpg", kRed)) << situation();
    EXPECT_EQ(windows.frame(window), area) << situation();
}

TEST_F(WindowSizeTest, aMaximisedWindowStaysSoWhenItsLastPictureIsBinned)
{
    std::filesystem::remove(folders.pictures() / "b.jpg");
    startFitted();
    windows.maximise(window);
    const Rectangle area = screenAndKeys.workArea();
    ASSERT_TRUE(waitForFrame(area));
    input.control(key::kBackspace);
    EXPECT_TRUE(waitForTitle("Tallowmere")) << situation();
    EXPECT_TRUE(waitUntil([&] { return showsNoPicture(); })) << situation();
    input.control('z');
    EXPECT_TRUE(waitForPicture("a.jpg", kRed)) << situation();
    EXPECT_EQ(windows.frame(window), area) << situation();
    EXPECT_TRUE(windows.hasState(window, kHeldVertically));
}

TEST_F(WindowSizeTest, aHeldWindowThatIsClosedIsNoLongerHeldWhenItComesBack)
{
    startFitted();
    const int whole = screenAndKeys.workArea().height;
    for (const bool inBothDirections : {false, true}) {
        if (inBothDirections)
            windows.maximise(window);
        else
            windows.maximiseVertically(window);
        ASSERT_TRUE(waitUntil([&] { return windows.frame(window).height == whole; })) << situation();
        input.control('w');
        ASSERT_TRUE(waitUntil([&] { return !windows.visible(window); })) << situation();
        ASSERT_EQ(callApplication("Activate", {"{}"}).status, 0);
        adopt(program->id());
        EXPECT_TRUE(waitUntil([&] {
            return windows.frame(window).height < whole / 2 && !windows.hasState(window, kHeldVertically);
        })) << situation();
    }
}

TEST_F(WindowSizeTest, aWindowHeldBetweenTopAndBottomKeepsItsFrameWhenAnotherPictureComes)
{
    startFitted();
    makeUnlikeAnyPicture();
    holdVertically();
    const Rectangle tall = windows.frame(window);
    input.press(key::kLeft);
    EXPECT_TRUE(waitForPicture("b.jpg", kGreen)) << situation();
    input.press(key::kRight);
    EXPECT_TRUE(waitForPicture("a.jpg", kRed)) << situation();
    EXPECT_EQ(windows.frame(window), tall) << situation();
    EXPECT_TRUE(windows.hasState(window, kHeldVertically));
}

TEST_F(WindowSizeTest, aWindowHeldBetweenLeftAndRightKeepsItsFrameWhenAnotherPictureComes)
{
    startFitted();
    makeUnlikeAnyPicture();
    windows.maximiseHorizontally(window);
    ASSERT_TRUE(waitUntil([&] {
        const Rectangle frame = windows.frame(window);
        const Rectangle area = screenAndKeys.workArea();
        return frame.width == area.width && frame.x == area.x;
    })) << situation();
    const Rectangle wide = windows.frame(window);
    input.press(key::kLeft);
    EXPECT_TRUE(waitForPicture("b.jpg", kGreen)) << situation();
    input.press(key::kRight);
    EXPECT_TRUE(waitForPicture("a.jpg", kRed)) << situation();
    EXPECT_EQ(windows.frame(window), wide) << situation();
    EXPECT_TRUE(windows.hasState(window, "_NET_WM_STATE_MAXIMIZED_HORZ"));
}

TEST_F(WindowSizeTest, control1EndsTheStateOfAWindowHeldInOneDirection)
{
    startFitted();
    holdVertically();
    const Point centre = windows.frame(window).centre();
    input.control('1');
    EXPECT_TRUE(waitForFrame(around(centre, 600, 400), 2)) << situation();
    EXPECT_TRUE(waitUntil([&] { return !windows.hasState(window, kHeldVertically); })) << situation();
    // It is the user's own size from now on.
    waitUntilKeysAreDealtWith();
    EXPECT_TRUE(waitForFrame(around(centre, 900, 600), 2)) << situation();
}

TEST_F(WindowSizeTest, control3EndsTheStateOfAWindowHeldInOneDirection)
{
    startFitted();
    holdVertically();
    const Rectangle area = screenAndKeys.workArea();
    input.control('3');
    EXPECT_TRUE(waitForFrame({area.x + 40, area.y + 40, area.width - 80, area.height - 80})) << situation();
    EXPECT_TRUE(waitUntil([&] { return !windows.hasState(window, kHeldVertically); })) << situation();
}

TEST_F(WindowSizeTest, aWindowThatIsNoLongerHeldIsFittedToItsPictureAgain)
{
    startFitted();
    holdVertically();
    input.press(key::kLeft);
    ASSERT_TRUE(waitForPicture("b.jpg", kGreen)) << situation();
    windows.unmaximise(window);
    ASSERT_TRUE(waitUntil([&] { return !windows.hasState(window, kHeldVertically); })) << situation();
    input.press(key::kRight);
    ASSERT_TRUE(waitForPicture("a.jpg", kRed)) << situation();
    input.press(key::kLeft);
    EXPECT_TRUE(waitForPicture("b.jpg", kGreen)) << situation();
    EXPECT_TRUE(waitUntil([&] { return std::abs(windows.frame(window).width - 800) <= 2; })) << situation();
}

TEST_F(WindowSizeTest, settingsSurviveTheProgram)
{
    startFitted();
    input.control('1');
    ASSERT_TRUE(waitForSetting("AutoResizeToImageSize=false")) << situation();
    ASSERT_EQ(callApplication("ActivateAction", {"quit", "[]", "{}"}).status, 0);
    ASSERT_EQ(program->waitForExit(), 0);
    EXPECT_EQ(occurrences("AutoResizeToImageSize"), 1) << settings();
    start({"b.jpg"});
    EXPECT_TRUE(waitForPicture("b.jpg", kGreen)) << situation();
    // No longer fitted to the picture, which is 800 wide.
    EXPECT_EQ(windows.contents(window).width, 600) << situation();
}

TEST_F(WindowSizeTest, settingsAreReadUnderTheirExactNames)
{
    writeSettings("AutoResizeToImageSize=false\nFileNameDisplayLocation=off\n");
    start({"b.jpg"});
    EXPECT_TRUE(program->waitForOutput("✅ Successfully loaded 2 files from directory\n")) << situation();
    EXPECT_TRUE(waitUntil([&] { return alike(screen.at(windows.contents(window).centre()), kGreen); })) << situation();
    EXPECT_EQ(windows.contents(window).width, 600) << situation();
    EXPECT_EQ(windows.title(window), "Tallowmere");
}

TEST_F(WindowSizeTest, withoutAutomaticResizingAPictureIsScaledIntoTheWindow)
{
    writeSettings("AutoResizeToImageSize=false\n");
    addPicture("wide.jpg", kBlue, 2400, 600);
    start({"wide.jpg"});
    ASSERT_TRUE(waitForPicture("wide.jpg", kBlue)) << situation();
    const Rectangle contents = windows.contents(window);
    // 600 wide, so 150 high: the surround reaches the sides, and the window's own colour lies above and below.
    const int middle = contents.y + contents.height - 200;
    EXPECT_TRUE(screen.waitForColour({contents.x + 10, middle}, kSurround)) << situation();
    EXPECT_TRUE(screen.waitForColour({contents.centre().x, middle - 65}, kSurround)) << situation();
    EXPECT_FALSE(alike(screen.at({contents.centre().x, middle - 100}), kSurround));
    EXPECT_FALSE(alike(screen.at({contents.centre().x, middle + 100}), kSurround));
}

TEST_F(WindowSizeTest, hideMinimisesTheWindow)
{
    startFitted();
    input.control('h');
    EXPECT_TRUE(waitUntil([&] { return !windows.visible(window); })) << situation();
    windows.activate(window);
    EXPECT_TRUE(waitUntil([&] { return windows.visible(window); })) << situation();
    EXPECT_TRUE(waitForPicture("a.jpg", kRed)) << situation();
}

TEST_F(WindowSizeTest, controlWClosesTheWindowAndControlQQuits)
{
    startFitted();
    input.control('w');
    EXPECT_TRUE(waitUntil([&] { return !windows.visible(window); })) << situation();
    EXPECT_TRUE(program->running());
    ASSERT_EQ(callApplication("Activate", {"{}"}).status, 0);
    adopt(program->id());
    input.control('q');
    EXPECT_EQ(program->waitForExit(), 0) << situation();
}

TEST_F(WindowSizeTest, aDoubleClickOnTheIdleWindowOpensTheOpenPanel)
{
    start();
    // A window manager may keep the first click on a window that is new to it, as focusing it: then the user, too,
    // clicks again.
    const auto panelIsOpen = [&] { return windows.ofProcess(program->id()).size() == 2; };
    bool open = false;
    for (int attempt = 0; attempt < 4 && !open; ++attempt) {
        input.click(windows.contents(window).centre(), 2);
        open = waitUntil(panelIsOpen, desktop::patience() / 4);
    }
    EXPECT_TRUE(open) << situation();
    input.press(key::kEscape);
    EXPECT_TRUE(waitUntil([&] { return windows.ofProcess(program->id()).size() == 1; })) << situation();
}

TEST_F(WindowSizeTest, aDoubleClickOnAPictureDoesNothing)
{
    startFitted();
    input.click(windows.contents(window).centre(), 2);
    waitUntilKeysAreDealtWith();
    EXPECT_EQ(windows.ofProcess(program->id()).size(), 1U) << situation();
    EXPECT_EQ(windows.title(window), "Tallowmere • a.jpg");
}

TEST_F(WindowSizeTest, controlOOpensThePanelAndAFileChosenThereIsShown)
{
    start();
    input.control('o');
    ASSERT_TRUE(waitUntil([&] { return windows.ofProcess(program->id()).size() == 2; })) << situation();
    const auto panel = windows.ofProcess(program->id()).back();
    ASSERT_TRUE(waitUntil([&] { return windows.hasFocus(panel); })) << situation();
    const std::string path = folders.pictures() / "b.jpg";
    for (const char character : path)
        input.type(character);
    input.press(key::kReturn);
    EXPECT_TRUE(waitForPicture("b.jpg", kGreen)) << situation();
    EXPECT_TRUE(waitUntil([&] { return windows.ofProcess(program->id()).size() == 1; })) << situation();
}

} // namespace tallowmere
