// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/e2e/E2ETest.h"

namespace tallowmere {

using desktop::Colour;
using desktop::Rectangle;
using desktop::waitUntil;

/// Pictures in the colours of a telephone.
class ColourTest : public E2ETest
{
protected:
    static constexpr Colour kStored{200, 60, 60};
    /// The same light on an sRGB screen.
    static constexpr Colour kShown{217, 42, 52};
    static constexpr int kTolerance = 5; ///< nearer than kStored, and room for the JPEG's own steps

    void addWidePicture(const std::string &name, int width, int height)
    {
        addFile(name, picture(kStored, width, height, {.profile = photos::ColourSpace::displayP3}));
    }
    [[nodiscard]] bool waitForShownColour() const
    {
        return waitUntil([this] { return alike(screen.at(windows.contents(window).centre()), kShown, kTolerance); });
    }
    [[nodiscard]] desktop::Point corner() const
    {
        const Rectangle contents = windows.contents(window);
        return {contents.x + 4, contents.y + contents.height - 4};
    }
};

TEST_F(ColourTest, aWideGamutPhotoShowsTheColoursOfItsProfileFittedAndMagnified)
{
    writeSettings("AutoResizeToImageSize=false\n");
    addWidePicture("small.jpg", 640, 480);
    addWidePicture("large.jpg", 3600, 2400); // seen in a reduced decode first
    for (const char *name : {"small.jpg", "large.jpg"}) {
        start({name});
        ASSERT_TRUE(waitForTitle(std::string("Tallowmere • ") + name)) << situation();
        EXPECT_TRUE(waitForShownColour()) << name << '\n' << situation();
        // More than three times as large: the middle part fills the window.
        for (int i = 0; i < 3; ++i)
            input.control('=');
        EXPECT_TRUE(waitUntil([this] { return alike(screen.at(corner()), kShown, kTolerance); }))
            << name << ": " << screen.at(corner()) << '\n'
            << situation();
        program.reset();
    }
}

TEST_F(ColourTest, theAverageBehindAPictureIsThatOfItsStoredValues)
{
    addWidePicture("a.jpg", 640, 480);
    start({"a.jpg"});
    ASSERT_TRUE(waitForShownColour()) << situation();
    const Rectangle frame = windows.frame(window);
    const int height = windows.contents(window).height;
    windows.moveAndResize(window, {frame.x, frame.y, 900, height});
    ASSERT_TRUE(waitUntil([this] { return windows.contents(window).width == 900; })) << situation();
    // A quarter of the picture is its middle.
    const Colour average{(kStored.red + 3 * kSurround.red) / 4, (kStored.green + 3 * kSurround.green) / 4,
                         (kStored.blue + 3 * kSurround.blue) / 4};
    EXPECT_TRUE(screen.waitForColour(corner(), average, 2)) << screen.at(corner()) << '\n' << situation();
}

} // namespace tallowmere
