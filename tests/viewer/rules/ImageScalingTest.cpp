// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "viewer/rules/ImageScaling.h"

#include "viewer/rules/ImageTransform.h"
#include "viewer/rules/PanDrag.h"

#include <gtest/gtest.h>

namespace tallowmere {
namespace {

using enum ImageScaling;

TEST(ImageScaling, anImageSmallerThanTheViewAtZoomOneIsNotEnlarged)
{
    EXPECT_EQ(imageScalingFor({100, 80}, {500, 400}, 1.0), proportionallyDown);
}

TEST(ImageScaling, anImageLargerOnOneSideIsMadeToFit)
{
    EXPECT_EQ(imageScalingFor({1000, 400}, {500, 400}, 1.0), proportionallyUpOrDown);
}

TEST(ImageScaling, anImageOfTheViewsSizeWithinAPointIsOnlyReduced)
{
    EXPECT_EQ(imageScalingFor({500.9, 399.1}, {500, 400}, 1.0), proportionallyDown);
    EXPECT_EQ(imageScalingFor({501, 400}, {500, 400}, 1.0), proportionallyUpOrDown);
}

TEST(ImageScaling, aZoomedImageIsOnlyReduced)
{
    EXPECT_EQ(imageScalingFor({1000, 800}, {500, 400}, 1.5), proportionallyDown);
    EXPECT_EQ(imageScalingFor({1000, 800}, {500, 400}, 0.5), proportionallyDown);
}

TEST(ImageScaling, inAViewWithoutRoomTheZoomDoesNotCount)
{
    EXPECT_EQ(imageScalingFor({10, 10}, {0, 400}, 2.0), proportionallyUpOrDown);
    EXPECT_EQ(imageScalingFor({10, 10}, {500, 0}, 0.5), proportionallyUpOrDown);
}

TEST(ImageTransform, atZoomOneIsNoneAndIgnoresTheOffset)
{
    const auto transform = ImageTransform::of(1.0, {30, 40});
    EXPECT_EQ(transform.mapped({10, 20, 30, 40}, {100, 100}), QRectF(10, 20, 30, 40));
    EXPECT_EQ(transform.sampling, ImageTransform::Sampling::linear);
}

TEST(ImageTransform, keepsPixelsSharpOnlyWhenMagnified)
{
    EXPECT_EQ(ImageTransform::of(1.01, {}).sampling, ImageTransform::Sampling::nearest);
    EXPECT_EQ(ImageTransform::of(0.99, {}).sampling, ImageTransform::Sampling::linear);
}

TEST(ImageTransform, scalesAboutTheCentreOfTheView)
{
    const auto transform = ImageTransform::of(2.0, {});
    EXPECT_EQ(transform.mapped({50, 50, 100, 100}, {100, 100}), QRectF(0, 0, 200, 200));
}

TEST(ImageTransform, shiftsByTheOffsetInTheScaledImageWithTheYAxisTurned)
{
    EXPECT_EQ(ImageTransform::of(2.0, {10, 20}).shift, QPointF(20, -40));
    EXPECT_EQ(ImageTransform::of(0.5, {10, -20}).shift, QPointF(5, 10));
}

TEST(ImageTransform, aDragDownwardsMovesTheImageDownwards)
{
    const PanDrag drag{.startLocation = yUpwards({0, 0}), .startOffset = {}};
    EXPECT_GT(ImageTransform::of(3.0, drag.offsetAt(yUpwards({0, 10}))).shift.y(), 0);
}

TEST(ImageTransform, shiftsWhatItHasScaled)
{
    const auto transform = ImageTransform::of(2.5, {10, 20});
    EXPECT_EQ(transform.mapped({30, 40, 2, 4}, {250, 200}), QRectF(250 - 550 + 25, 200 - 400 - 50, 5, 10));
}

} // namespace
} // namespace tallowmere
