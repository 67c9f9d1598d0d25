// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/desktop/Tiler.h"
#include "tests/e2e/E2ETest.h"

#include <algorithm>

namespace tallowmere {

using desktop::Point;
using desktop::Rectangle;
using desktop::waitUntil;
namespace key = desktop::key;

/// A window manager that keeps its tiles, whatever the program asks for.
class TilingTest : public E2ETest
{
protected:
    static constexpr Rectangle kTile{20, 30, 1200, 800};

    TilingTest() : E2ETest(std::nullopt, {.windowManager = false}) {}

    void SetUp() override
    {
        addPicture("a.jpg", kRed);
        addPicture("b.jpg", kGreen, 300, 200);
        addPicture("c.jpg", kBlue, 4000, 3000);
    }
    void startTiled(const std::string &name)
    {
        program = launch({name});
        adopt(program->id());
        ASSERT_TRUE(waitForTitle("Tallowmere • " + name)) << situation();
        ASSERT_TRUE(program->waitForOutput("✅ Successfully loaded 3 files from directory\n")) << situation();
    }
    /// The middle part of a picture of @p width by @p height lies in the middle of the tile, at the size that fits.
    [[nodiscard]] bool waitForPictureInTile(const desktop::Colour &colour, int width, int height,
                                            const Rectangle &tile = kTile) const
    {
        return waitUntil([&] {
            // The menu bar takes its part of the height, some twenty pixels.
            const double fitting = std::min(
                {1.0, static_cast<double>(tile.width) / width, static_cast<double>(tile.height - 20) / height});
            const int reach = static_cast<int>(width * fitting / 4);
            const Point middle{tile.centre().x, tile.centre().y + 10};
            const auto at = [&](int dx) { return screen.at({middle.x + dx, middle.y}); };
            return windows.contents(window) == tile && alike(at(0), colour) && alike(at(reach - kMargin), colour) &&
                   alike(at(-reach + kMargin), colour) && !alike(at(reach + kMargin), colour) &&
                   !alike(at(-reach - kMargin), colour);
        });
    }
    /// Compressed colours run into each other at an edge, and the height that the menu bar takes is not exact.
    static constexpr int kMargin = 12;

    desktop::Tiler tiler{screenAndKeys, kTile};
};

TEST_F(TilingTest, aTiledWindowShowsItsPicturesInTheMiddleOfTheTile)
{
    startTiled("a.jpg");
    EXPECT_TRUE(waitForPictureInTile(kRed, 640, 480)) << situation();
    input.press(key::kLeft);
    EXPECT_TRUE(waitForPictureInTile(kGreen, 300, 200)) << situation();
    input.press(key::kLeft);
    EXPECT_TRUE(waitForPictureInTile(kBlue, 4000, 3000)) << situation();
    input.control('1');
    EXPECT_TRUE(waitForPictureInTile(kBlue, 4000, 3000)) << situation();
}

TEST_F(TilingTest, aTiledWindowIsNotFoughtOver)
{
    startTiled("a.jpg");
    ASSERT_TRUE(waitForPictureInTile(kRed, 640, 480)) << situation();
    const int before = tiler.requests();
    for (int round = 0; round < 2; ++round) {
        input.press(key::kLeft);
        EXPECT_TRUE(waitForPictureInTile(kGreen, 300, 200)) << situation();
        input.press(key::kLeft);
        EXPECT_TRUE(waitForPictureInTile(kBlue, 4000, 3000)) << situation();
        input.press(key::kLeft);
        EXPECT_TRUE(waitForPictureInTile(kRed, 640, 480)) << situation();
    }
    EXPECT_EQ(tiler.requests(), before);
}

TEST_F(TilingTest, aTileOfAnotherSizeIsFilledToo)
{
    startTiled("c.jpg");
    ASSERT_TRUE(waitForPictureInTile(kBlue, 4000, 3000)) << situation();
    constexpr Rectangle kHalf{620, 30, 600, 800};
    tiler.setTile(kHalf);
    EXPECT_TRUE(waitForPictureInTile(kBlue, 4000, 3000, kHalf)) << situation();
    input.press(key::kLeft);
    EXPECT_TRUE(waitForPictureInTile(kRed, 640, 480, kHalf)) << situation();
    input.press(key::kRight);
    EXPECT_TRUE(waitForPictureInTile(kBlue, 4000, 3000, kHalf)) << situation();
}

} // namespace tallowmere
