// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "viewer/rules/ZoomRule.h"

#include "viewer/rules/PinchGesture.h"
#include "viewer/WindowGeometry.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace tallowmere {
namespace {

using ZoomRule::Change;

Change zoomTo(double zoom)
{
    return {.zoom = zoom, .windowFactor = {}};
}

TEST(ZoomRule, zoomInFromEightGivesTenAndAFurtherZoomInChangesNothing)
{
    EXPECT_EQ(ZoomRule::zoomIn(8.0), zoomTo(10.0));
    EXPECT_EQ(ZoomRule::zoomIn(10.0), Change{});
}

TEST(ZoomRule, zoomOutFromThreeTenthsGivesAQuarterAndAFurtherZoomOutChangesNothing)
{
    EXPECT_EQ(ZoomRule::zoomOut(0.3), zoomTo(0.25));
    EXPECT_EQ(ZoomRule::zoomOut(0.25), Change{});
}

TEST(ZoomRule, oneStepIsAFactorOfOneAndAHalf)
{
    EXPECT_EQ(ZoomRule::zoomIn(1.0), zoomTo(1.5));
    EXPECT_EQ(ZoomRule::zoomOut(3.0), zoomTo(2.0));
}

TEST(ZoomRule, pinchWithMagnificationOfMinusNineTenthsAtZoomOneGivesAQuarter)
{
    EXPECT_EQ(ZoomRule::pinched(1.0, -0.9), 0.25);
}

TEST(ZoomRule, pinchMultipliesByOnePlusTheMagnificationUpToTen)
{
    EXPECT_EQ(ZoomRule::pinched(2.0, 0.5), 3.0);
    EXPECT_EQ(ZoomRule::pinched(8.0, 0.5), 10.0);
    EXPECT_EQ(ZoomRule::pinched(0.5, -3.0), 0.25);
}

TEST(ZoomRule, pinchThatChangesNothingIsNoChange)
{
    EXPECT_EQ(ZoomRule::pinched(10.0, 0.5), std::nullopt);
    EXPECT_EQ(ZoomRule::pinched(0.25, -0.5), std::nullopt);
    EXPECT_EQ(ZoomRule::pinched(2.0, 0.0), std::nullopt);
}

TEST(ZoomRule, pinchWithANumberThatIsNoneIsNoChange)
{
    EXPECT_EQ(ZoomRule::pinched(1.0, std::nan("")), std::nullopt);
    EXPECT_EQ(ZoomRule::pinched(1.0, std::numeric_limits<double>::infinity()), std::nullopt);
}

TEST(ZoomRule, shouldStartPanningAnswersFalseAtZoomOneAndBelowAndTrueAbove)
{
    EXPECT_FALSE(ZoomRule::shouldStartPanning(0.5));
    EXPECT_FALSE(ZoomRule::shouldStartPanning(1.0));
    EXPECT_TRUE(ZoomRule::shouldStartPanning(1.0001));
}

TEST(ZoomRule, noCommandAndNoPinchLeavesTheLimits)
{
    std::mt19937 random(1);
    std::uniform_real_distribution<double> zooms(ZoomRule::kMinZoom, ZoomRule::kMaxZoom);
    std::uniform_real_distribution<double> magnifications(-2, 5);
    for (int i = 0; i < 2000; ++i) {
        const double zoom = zooms(random);
        for (const auto &changed : {ZoomRule::zoomIn(zoom).zoom, ZoomRule::zoomOut(zoom).zoom,
                                    ZoomRule::pinched(zoom, magnifications(random))}) {
            ASSERT_GE(changed.value_or(1.0), ZoomRule::kMinZoom);
            ASSERT_LE(changed.value_or(1.0), ZoomRule::kMaxZoom);
        }
    }
}

TEST(ZoomRule, zoomingInAndOutAgainReturns)
{
    std::mt19937 random(2);
    std::uniform_real_distribution<double> zooms(ZoomRule::kMinZoom, ZoomRule::kMaxZoom / ZoomRule::kZoomStep);
    for (int i = 0; i < 500; ++i) {
        const double zoom = zooms(random);
        const double there = ZoomRule::zoomIn(zoom).zoom.value_or(zoom);
        ASSERT_NEAR(ZoomRule::zoomOut(there).zoom.value_or(there), zoom, 1e-12);
    }
}

TEST(ZoomRule, theWindowsRatioNeedsTwoWidthsThatMeanSomething)
{
    EXPECT_EQ(ZoomRule::windowRatio(600, 1200), 0.5);
    EXPECT_EQ(ZoomRule::windowRatio(600, 0), std::nullopt);
    EXPECT_EQ(ZoomRule::windowRatio(0, 1200), std::nullopt);
}

TEST(ZoomInGrowingWindow, growsTheWindowInsteadOfZoomingUntilItHasTheFittedSize)
{
    EXPECT_EQ(ZoomRule::zoomInGrowingWindow(1.0, 0.5), (Change{.zoom = {}, .windowFactor = 1.5}));
    EXPECT_EQ(ZoomRule::zoomInGrowingWindow(1.0, 0.8), (Change{.zoom = {}, .windowFactor = 1.25}));
    EXPECT_EQ(ZoomRule::zoomInGrowingWindow(4.0, 0.998).zoom, std::nullopt);
}

TEST(ZoomInGrowingWindow, zoomsOnceTheWindowHasTheFittedSizeOrNoneIsKnown)
{
    EXPECT_EQ(ZoomRule::zoomInGrowingWindow(1.0, 0.999), zoomTo(1.5));
    EXPECT_EQ(ZoomRule::zoomInGrowingWindow(1.0, 1.0), zoomTo(1.5));
    EXPECT_EQ(ZoomRule::zoomInGrowingWindow(1.0, 2.0), zoomTo(1.5));
    EXPECT_EQ(ZoomRule::zoomInGrowingWindow(8.0, std::nullopt), zoomTo(10.0));
    EXPECT_EQ(ZoomRule::zoomInGrowingWindow(10.0, 1.0), Change{});
}

TEST(ZoomOutShrinkingWindow, bringsAMagnifiedImageBackToOneBeforeTheWindowShrinks)
{
    EXPECT_EQ(ZoomRule::zoomOutShrinkingWindow(3.0, 1.0), zoomTo(2.0));
    EXPECT_EQ(ZoomRule::zoomOutShrinkingWindow(1.2, 0.5), zoomTo(1.0));
}

TEST(ZoomOutShrinkingWindow, shrinksTheWindowByOneStepDownToAQuarterOfTheFittedSize)
{
    EXPECT_EQ(ZoomRule::zoomOutShrinkingWindow(1.0, 0.75), (Change{.zoom = {}, .windowFactor = 0.5 / 0.75}));
    EXPECT_EQ(ZoomRule::zoomOutShrinkingWindow(1.0, 0.3), (Change{.zoom = {}, .windowFactor = 0.25 / 0.3}));
    EXPECT_EQ(ZoomRule::zoomOutShrinkingWindow(1.0, 0.25), Change{});
    EXPECT_EQ(ZoomRule::zoomOutShrinkingWindow(0.5, 0.2), Change{});
}

TEST(ZoomOutShrinkingWindow, roundsAZoomJustAboveOneOffOnTheWay)
{
    EXPECT_EQ(ZoomRule::zoomOutShrinkingWindow(1.0005, 0.2), zoomTo(1.0));
    EXPECT_EQ(ZoomRule::zoomOutShrinkingWindow(1.0005, 0.75), (Change{.zoom = 1.0, .windowFactor = 0.5 / 0.75}));
}

TEST(ZoomOutShrinkingWindow, takesTheWindowForFullyGrownWhenNoFittedSizeIsKnown)
{
    EXPECT_EQ(ZoomRule::zoomOutShrinkingWindow(1.0, std::nullopt),
              (Change{.zoom = {}, .windowFactor = 1.0 / ZoomRule::kZoomStep}));
}

TEST(ZoomWithTheWindow, outToTheSmallestWindowAndInAgainEndsAtTheFittedSize)
{
    const QSizeF fitted(1200, 800);
    QSizeF content = fitted;
    const auto ratio = [&] { return ZoomRule::windowRatio(content.width(), fitted.width()); };
    const auto apply = [&](const Change &change) {
        content = WindowGeometry::contentResizedByFactor(content, change.windowFactor.value_or(1.0), fitted);
    };
    for (int i = 0; i < 20; ++i)
        apply(ZoomRule::zoomOutShrinkingWindow(1.0, ratio()));
    EXPECT_NEAR(content.width(), 300, 1e-9);
    EXPECT_NEAR(content.height(), 200, 1e-9);
    for (int i = 0; i < 20; ++i)
        apply(ZoomRule::zoomInGrowingWindow(1.0, ratio()));
    EXPECT_NEAR(content.width(), fitted.width(), 1e-9);
    EXPECT_NEAR(content.height(), fitted.height(), 1e-9);
}

TEST(ZoomWithTheWindow, neverLeavesAHundredPointsAndTheFittedSize)
{
    std::mt19937 random(3);
    std::uniform_real_distribution<double> sides(20, 3000);
    std::bernoulli_distribution zoomsIn(0.5);
    for (int run = 0; run < 200; ++run) {
        const QSizeF fitted(sides(random), sides(random));
        QSizeF content(sides(random), sides(random));
        for (int step = 0; step < 20; ++step) {
            const auto ratio = ZoomRule::windowRatio(content.width(), fitted.width());
            const Change change = zoomsIn(random) ? ZoomRule::zoomInGrowingWindow(1.0, ratio)
                                                  : ZoomRule::zoomOutShrinkingWindow(1.0, ratio);
            if (!change.windowFactor)
                continue;
            content = WindowGeometry::contentResizedByFactor(content, *change.windowFactor, fitted);
            ASSERT_GE(content.width(), std::min(WindowGeometry::kSmallestContentSide, fitted.width()));
            ASSERT_GE(content.height(), std::min(WindowGeometry::kSmallestContentSide, fitted.height()));
            ASSERT_LE(content.width(), fitted.width());
            ASSERT_LE(content.height(), fitted.height());
        }
    }
}

TEST(PinchGesture, toTwiceTheSizeDoublesTheZoomInHoweverManyStepsItComes)
{
    for (const int steps : {1, 2, 10, 100}) {
        PinchGesture gesture;
        gesture.begin();
        double zoom = 1.0;
        for (int i = 0; i < steps; ++i)
            zoom = ZoomRule::pinched(zoom, gesture.magnificationOf(1.0 / steps)).value_or(zoom);
        EXPECT_NEAR(zoom, 2.0, 1e-9) << steps << " steps";
    }
}

TEST(PinchGesture, apartAndTogetherAgainReturns)
{
    PinchGesture gesture;
    double zoom = 1.5;
    for (const double value : {0.3, 0.4, 0.2, -0.4, -0.3, -0.2})
        zoom = ZoomRule::pinched(zoom, gesture.magnificationOf(value)).value_or(zoom);
    EXPECT_NEAR(zoom, 1.5, 1e-9);
}

TEST(PinchGesture, eachBeginsAnew)
{
    PinchGesture gesture;
    EXPECT_EQ(gesture.magnificationOf(1.0), 1.0);
    EXPECT_EQ(gesture.magnificationOf(1.0), 0.5);
    gesture.begin();
    EXPECT_EQ(gesture.magnificationOf(1.0), 1.0);
}

TEST(PinchGesture, ofFingersThatMeetStaysFinite)
{
    PinchGesture gesture;
    EXPECT_EQ(gesture.magnificationOf(-1.0), -1.0);
    EXPECT_TRUE(std::isfinite(gesture.magnificationOf(-5.0)));
    EXPECT_TRUE(std::isfinite(gesture.magnificationOf(0.5)));
}

} // namespace
} // namespace tallowmere
