// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/doubles/LeasedFile.h"
#include "tests/e2e/E2ETest.h"

#include <chrono>

namespace tallowmere {

using desktop::Point;
using desktop::waitUntil;
namespace key = desktop::key;

/// A picture that keeps its viewer waiting.
class ProgressTest : public E2ETest
{
protected:
    // In the groove of the sign, left and right of most of what a bar does.
    static constexpr int kBeforeBar = -70;
    static constexpr int kBehindBar = 70;
    static constexpr int kAbove = 12;

    [[nodiscard]] bool signIsThere() const { return !isEven({kBeforeBar, 0}) && !isEven({kBehindBar, 0}); }
    [[nodiscard]] bool allAroundIsEven() const
    {
        return isEven({0, -kAbove}) && isEven({0, kAbove}) && isEven({-100, 0}) && isEven({100, 0});
    }
    /// As what lies above, where no sign reaches.
    [[nodiscard]] bool isEven(const Point &fromMiddle) const
    {
        const Point middle = pictureMiddle();
        const Point above{middle.x + fromMiddle.x, middle.y - 3 * kAbove};
        return alike(screen.at({middle.x + fromMiddle.x, middle.y + fromMiddle.y}), screen.at(above), 3);
    }
    /// The picture's 480 points end where the window ends.
    [[nodiscard]] Point pictureMiddle() const
    {
        const auto contents = windows.contents(window);
        return {contents.centre().x, contents.y + contents.height - 240};
    }
};

TEST_F(ProgressTest, aPictureThatTakesLongShowsASignThatMovesNothingAndGoesWithThePicture)
{
    addPicture("a.jpg", kGreen);
    addPicture("b.jpg", kRed);
    test::LeasedFile slow((folders.pictures() / "a.jpg").c_str());
    if (!slow.held())
        GTEST_SKIP() << "this file system knows no leases";
    start({"b.jpg"});
    ASSERT_TRUE(waitForPicture("b.jpg", kRed)) << situation();
    ASSERT_TRUE(program->waitForOutput("✅ Successfully loaded 2 files from directory\n")) << situation();
    const auto frame = windows.frame(window);
    EXPECT_FALSE(signIsThere());
    input.press(key::kRight);
    EXPECT_TRUE(waitForTitle("Tallowmere • a.jpg")) << situation();
    EXPECT_TRUE(waitUntil([this] { return signIsThere(); })) << situation();
    EXPECT_TRUE(allAroundIsEven()) << situation();
    EXPECT_EQ(windows.frame(window), frame);
    slow.release();
    EXPECT_TRUE(waitForPicture("a.jpg", kGreen)) << situation();
    EXPECT_TRUE(waitUntil([this] { return !signIsThere(); })) << situation();
    EXPECT_TRUE(allAroundIsEven()) << situation();
    EXPECT_EQ(windows.frame(window), frame);
}

TEST_F(ProgressTest, theProgramEndsWhileAPictureIsStillAwaited)
{
    addPicture("a.jpg", kGreen);
    const test::LeasedFile slow((folders.pictures() / "a.jpg").c_str());
    if (!slow.held())
        GTEST_SKIP() << "this file system knows no leases";
    start({"a.jpg"});
    ASSERT_TRUE(waitForTitle("Tallowmere • a.jpg")) << situation();
    input.control('q');
    // Sooner than the lease ends by itself.
    EXPECT_EQ(program->waitForExit(std::chrono::seconds(25)), 0) << situation();
}

} // namespace tallowmere
