// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/desktop/SettingsPortal.h"
#include "tests/e2e/E2ETest.h"

namespace tallowmere {

using desktop::Colour;
using desktop::Point;
using desktop::SettingsPortal;
using desktop::waitUntil;

/// The desktop's light and dark.
class AppearanceTest : public E2ETest
{
protected:
    static constexpr std::uint32_t kDark = 1;
    static constexpr std::uint32_t kLight = 2;

    /// Beside the logo, or beside and through the picture.
    [[nodiscard]] Colour ground() const
    {
        const auto contents = windows.contents(window);
        return screen.at({contents.x + 4, contents.y + contents.height - 4});
    }
    static Colour grey(int white) { return {white, white, white}; }
    [[nodiscard]] bool becomesDark() const
    {
        // Dark and grey: the average colour of a picture may be dark, too.
        return waitUntil([this] { return ground().green < 80 && alike(ground(), grey(ground().green), 6); });
    }
    [[nodiscard]] bool becomesLight() const
    {
        return waitUntil([this] { return ground().green > 200; });
    }
};

TEST_F(AppearanceTest, theWindowFollowsTheDesktopsColourScheme)
{
    SettingsPortal portal(bus->address(), kDark);
    start();
    EXPECT_TRUE(becomesDark()) << situation();
    portal.change(kLight);
    EXPECT_TRUE(becomesLight()) << situation();
    portal.change(kDark);
    EXPECT_TRUE(becomesDark()) << situation();
}

TEST_F(AppearanceTest, lightAndDarkChangeTheCheckerboardsGreys)
{
    writeSettings("AutoResizeToImageSize=false\nTransparencyBackground=checkers\nShowFileSize=false\n"
                  "ShowImageResolution=false\n");
    addFile("a.png", photos::makeClearPng(300, 200));
    SettingsPortal portal(bus->address(), kLight);
    start({"a.png"});
    const auto contents = windows.contents(window);
    const Point square{contents.x + 305, contents.y + contents.height - 400 + 205};
    const Point base{square.x + 10, square.y};
    EXPECT_TRUE(screen.waitForColour(square, {209, 209, 209}, 1)) << situation();
    EXPECT_TRUE(screen.waitForColour(base, {224, 224, 224}, 1)) << situation();
    portal.change(kDark);
    EXPECT_TRUE(screen.waitForColour(square, {69, 69, 69}, 1)) << situation();
    EXPECT_TRUE(screen.waitForColour(base, {82, 82, 82}, 1)) << situation();
}

TEST_F(AppearanceTest, aChangeReplacesTheAverageColourBehindAPictureByTheWindowsColour)
{
    addPicture("a.jpg", kRed);
    SettingsPortal portal(bus->address(), kLight);
    start({"a.jpg"});
    ASSERT_TRUE(waitForPicture("a.jpg", kRed)) << situation();
    // Wider than the picture, so that what lies behind it shows.
    const auto frame = windows.frame(window);
    windows.moveAndResize(window, {frame.x, frame.y, 900, windows.contents(window).height});
    ASSERT_TRUE(waitUntil([this] { return windows.contents(window).width == 900; })) << situation();
    EXPECT_TRUE(waitUntil([this] { return ground().red > ground().green + 30; })) << "the average\n" << situation();
    portal.change(kDark);
    EXPECT_TRUE(becomesDark()) << situation();
}

TEST_F(AppearanceTest, aPortalThatNeverAnswersHoldsNothingUp)
{
    addPicture("a.jpg", kRed);
    SettingsPortal portal(bus->address(), kDark, SettingsPortal::Manner::isMute);
    start({"a.jpg"});
    EXPECT_TRUE(waitForPicture("a.jpg", kRed)) << situation();
    EXPECT_TRUE(waitUntil([&] { return portal.questions() == 1; })) << "and it was asked";
}

} // namespace tallowmere
