// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "viewer/rules/HandCursor.h"
#include "viewer/rules/PanDrag.h"
#include "viewer/rules/PanLimits.h"
#include "viewer/rules/ScrollDelta.h"

#include <gtest/gtest.h>

#include <random>

namespace tallowmere {
namespace {

TEST(PanLimits, ofA1000x800ImageIn500x400AtZoomTwoAreHalfTheView)
{
    const auto limits = PanLimits::of({1000, 800}, {500, 400}, 2.0);
    EXPECT_EQ(limits.clamp({9999, -9999}), QPointF(250, -200));
    EXPECT_EQ(limits.clamp({-9999, 9999}), QPointF(-250, 200));
    EXPECT_EQ(limits.clamp({10, -20}), QPointF(10, -20));
}

TEST(PanLimits, areHalfOfWhatSticksOutPerAxis)
{
    const auto limits = PanLimits::of({300, 100}, {500, 400}, 2.0);
    EXPECT_EQ(limits.horizontal, 50);
    EXPECT_EQ(limits.vertical, 0);
}

TEST(PanLimits, goByTheImagesOwnSizeNotByTheSizeItIsFittedTo)
{
    // Fitted to 500 wide it would have no room at zoom 1.
    EXPECT_EQ(PanLimits::of({800, 400}, {500, 400}, 1.0).horizontal, 150);
}

TEST(PanLimits, withoutAnImageOrAViewLeaveTheOffsetAsItIs)
{
    EXPECT_EQ(PanLimits::of({}, {500, 400}, 2.0).clamp({9999, -9999}), QPointF(9999, -9999));
    EXPECT_EQ(PanLimits::of({100, 100}, {0, 400}, 2.0).clamp({9999, -9999}), QPointF(9999, -9999));
    EXPECT_EQ(PanLimits::of({100, 100}, {500, -1}, 2.0).clamp({9999, -9999}), QPointF(9999, -9999));
}

TEST(PanLimits, areNeverLeftAndNeverExceedHalfTheView)
{
    std::mt19937 random(4);
    std::uniform_real_distribution<double> sides(1, 5000);
    std::uniform_real_distribution<double> zooms(0.25, 10);
    std::uniform_real_distribution<double> offsets(-20000, 20000);
    for (int i = 0; i < 2000; ++i) {
        const QSizeF view(sides(random), sides(random));
        const auto limits = PanLimits::of({sides(random), sides(random)}, view, zooms(random));
        const QPointF clamped = limits.clamp({offsets(random), offsets(random)});
        ASSERT_LE(std::abs(clamped.x()), limits.horizontal);
        ASSERT_LE(std::abs(clamped.y()), limits.vertical);
        ASSERT_LE(limits.horizontal, view.width() / 2);
        ASSERT_LE(limits.vertical, view.height() / 2);
        ASSERT_EQ(limits.clamp(clamped), clamped);
    }
}

TEST(PanDrag, addsThePointersWayToTheOffsetAtTheStart)
{
    const PanDrag drag{.startLocation = yUpwards({100, 100}), .startOffset = {5, 6}};
    EXPECT_EQ(drag.offsetAt(yUpwards({100, 100})), QPointF(5, 6));
    EXPECT_EQ(drag.offsetAt(yUpwards({130, 100})), QPointF(35, 6));
}

TEST(PanDrag, downwardsOnTheScreenLowersTheOffset)
{
    const PanDrag drag{.startLocation = yUpwards({0, 0}), .startOffset = {}};
    EXPECT_EQ(drag.offsetAt(yUpwards({0, 40})), QPointF(0, -40));
}

TEST(Scroll, withPositiveDeltaYLowersTheOffsetsYByThatAmountAndPositiveDeltaXRaisesX)
{
    EXPECT_EQ(offsetScrolledBy({10, 20}, {0, 7}), QPointF(10, 13));
    EXPECT_EQ(offsetScrolledBy({10, 20}, {7, 0}), QPointF(17, 20));
}

TEST(Scroll, takesThePixelsOfADeviceThatCountsInPixels)
{
    EXPECT_EQ(scrollPoints({3, -4}, {120, 120}, 3), QPointF(3, -4));
    EXPECT_EQ(scrollPoints({0, -4}, {120, 120}, 3), QPointF(0, -4));
}

TEST(Scroll, turnsNotchesIntoLinesAsScrollAreasDo)
{
    EXPECT_EQ(scrollPoints({}, {0, 120}, 3), QPointF(0, 60));
    EXPECT_EQ(scrollPoints({}, {-240, 0}, 1), QPointF(-40, 0));
    EXPECT_EQ(scrollPoints({}, {0, 8}, 3), QPointF(0, 4)); // a wheel of high resolution
    EXPECT_EQ(scrollPoints({}, {}, 3), QPointF());
}

TEST(HandCursor, isTheOpenHandOverAnyImageAndNoHandWithoutOne)
{
    HandCursor cursor;
    EXPECT_EQ(cursor.currentCursorType(), CursorType::normal);
    cursor.update(true);
    EXPECT_EQ(cursor.currentCursorType(), CursorType::openHand);
    cursor.update(false);
    EXPECT_EQ(cursor.currentCursorType(), CursorType::normal);
}

TEST(HandCursor, closesForTheLengthOfADrag)
{
    HandCursor cursor;
    cursor.update(true);
    cursor.panStarted();
    EXPECT_TRUE(cursor.isPanning());
    EXPECT_EQ(cursor.currentCursorType(), CursorType::closedHand);
    cursor.update(true);
    cursor.update(false);
    EXPECT_EQ(cursor.currentCursorType(), CursorType::closedHand);
    cursor.panEnded(true);
    EXPECT_FALSE(cursor.isPanning());
    EXPECT_EQ(cursor.currentCursorType(), CursorType::openHand);
}

TEST(HandCursor, aDragThatEndsWithoutAnImageLeavesNoHand)
{
    HandCursor cursor;
    cursor.panStarted();
    cursor.panEnded(false);
    EXPECT_EQ(cursor.currentCursorType(), CursorType::normal);
}

TEST(HandCursor, anotherImageEndsTheDrag)
{
    HandCursor cursor;
    cursor.panStarted();
    cursor.reset();
    EXPECT_FALSE(cursor.isPanning());
    EXPECT_EQ(cursor.currentCursorType(), CursorType::normal);
}

TEST(HandCursor, aButtonLetGoWithoutADragShowsTheOpenHandOverAnImage)
{
    HandCursor cursor;
    cursor.panEnded(true);
    EXPECT_EQ(cursor.currentCursorType(), CursorType::openHand);
    cursor.panEnded(true);
    cursor.update(false);
    EXPECT_EQ(cursor.currentCursorType(), CursorType::normal);
}

} // namespace
} // namespace tallowmere
