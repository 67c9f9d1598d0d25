// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "viewer/ImagePlacement.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace tallowmere {
namespace {

TEST(ImagePlacement, doesNotEnlargeAnImageSmallerThanTheView)
{
    const auto placement = ImagePlacement::of({100, 50}, {600, 400}, 1.0);
    EXPECT_EQ(placement.deviceSize, QSize(100, 50));
    EXPECT_EQ(placement.deviceOrigin, QPoint(250, 175));
    EXPECT_EQ(placement.copySize(), (PixelSize{100, 50}));
}

TEST(ImagePlacement, reducesALargerImageUntilItFits)
{
    const auto placement = ImagePlacement::of({4000, 2000}, {600, 400}, 1.0);
    EXPECT_EQ(placement.deviceSize, QSize(600, 300));
    EXPECT_EQ(placement.deviceOrigin, QPoint(0, 50));
    EXPECT_EQ(placement.copySize(), (PixelSize{600, 300}));
}

TEST(ImagePlacement, givesAPixelAPointOnADenserScreen)
{
    const auto placement = ImagePlacement::of({100, 50}, {600, 400}, 2.0);
    EXPECT_EQ(placement.deviceSize, QSize(200, 100));
    EXPECT_EQ(placement.copySize(), (PixelSize{200, 100}));
}

TEST(ImagePlacement, showsPixelForPixelInAWindowOfHalfTheSizeOnADenserScreen)
{
    const auto placement = ImagePlacement::of({1000, 800}, {500, 400}, 2.0);
    EXPECT_EQ(placement.deviceSize, QSize(1000, 800));
    EXPECT_EQ(placement.deviceOrigin, QPoint(0, 0));
    EXPECT_EQ(placement.copySize(), (PixelSize{1000, 800}));
}

TEST(ImagePlacement, leavesNoSliverOfBackgroundInAWindowRoundedToWholePoints)
{
    // 4000 x 3000 fitted to a height of 847 points wants 1129.33 points of width.
    const auto placement = ImagePlacement::of({4000, 3000}, {1129, 847}, 2.0);
    EXPECT_EQ(placement.deviceSize, QSize(2258, 1694));
    EXPECT_EQ(placement.deviceOrigin, QPoint(0, 0));
}

TEST(ImagePlacement, isEmptyForAnEmptyViewOrImage)
{
    EXPECT_TRUE(ImagePlacement::of({100, 100}, {0, 400}, 1.0).deviceSize.isEmpty());
    EXPECT_TRUE(ImagePlacement::of({}, {600, 400}, 1.0).deviceSize.isEmpty());
}

TEST(ImagePlacement, keepsAThreadOfAnExtremelyLongImage)
{
    EXPECT_EQ(ImagePlacement::of({4000, 1}, {100, 100}, 1.0).deviceSize, QSize(100, 1));
}

TEST(ImagePlacement, staysInTheViewAndInShapeWhateverTheSizes)
{
    std::mt19937 random(20260102);
    std::uniform_int_distribution<std::uint32_t> side(1, 4000);
    std::uniform_int_distribution<int> viewSide(1, 3000);
    std::uniform_real_distribution<double> anyScale(1, 3);
    for (int round = 0; round < 2000; ++round) {
        const PixelSize image{side(random), side(random)};
        const QSizeF view(viewSide(random), viewSide(random));
        const double scale = anyScale(random);
        const auto placement = ImagePlacement::of(image, view, scale);
        const QSize viewPixels((view * scale).toSize());
        const bool reduced = image.width > view.width() || image.height > view.height();
        if (reduced) {
            EXPECT_GE(placement.deviceOrigin.x(), 0);
            EXPECT_GE(placement.deviceOrigin.y(), 0);
            EXPECT_LE(placement.deviceSize.width(), viewPixels.width());
            EXPECT_LE(placement.deviceSize.height(), viewPixels.height());
        }
        const double factor = std::min({1.0, view.width() / image.width, view.height() / image.height}) * scale;
        EXPECT_NEAR(placement.deviceSize.width(), image.width * factor, 1.01);
        EXPECT_NEAR(placement.deviceSize.height(), image.height * factor, 1.01);
    }
}

TEST(ImagePlacement, enlargesASmallImageWhereItIsAskedTo)
{
    const auto placement = ImagePlacement::of({100, 50}, {600, 400}, 1.0, ImageScaling::proportionallyUpOrDown);
    EXPECT_EQ(placement.deviceSize, QSize(600, 300));
    EXPECT_EQ(placement.deviceOrigin, QPoint(0, 50));
    EXPECT_EQ(placement.copySize(), (PixelSize{600, 300}));
}

TEST(ImagePlacement, enlargesNothingAtZoomOneWhateverTheSizes)
{
    std::mt19937 random(5);
    std::uniform_int_distribution<std::uint32_t> sides(1, 40);
    for (int i = 0; i < 5000; ++i) {
        const PixelSize image{sides(random), sides(random)};
        const QSize imageSize(static_cast<int>(image.width), static_cast<int>(image.height));
        const QSize view(static_cast<int>(sides(random)), static_cast<int>(sides(random)));
        const auto scaling = imageScalingFor(imageSize, view, 1.0);
        const QSize shown = ImagePlacement::of(image, view, 1.0, scaling).deviceSize;
        ASSERT_EQ(shown, shown.boundedTo(imageSize).boundedTo(view));
    }
}

TEST(ImagePlacement, isScaledAboutTheMiddleOfTheViewAndShiftedInDevicePixels)
{
    const auto placement = ImagePlacement::of({100, 50}, {600, 400}, 2.0);
    const auto transform = ImageTransform::of(3.0, {10, 20}); // y upwards
    EXPECT_EQ(placement.transformed(transform, {600, 400}, 2.0), QRectF(600 - 300 + 60, 400 - 150 - 120, 600, 300));
}

TEST(ImagePlacement, anOddMarginDoesNotMoveTheMagnifiedImageOffTheMiddle)
{
    const QSizeF view(800, 600);
    const auto placement = ImagePlacement::of({301, 201}, view, 1.0);
    EXPECT_EQ(placement.transformed(ImageTransform::of(10, {}), view, 1.0).center(), QPointF(400, 300));
    const QSizeF odd(801, 601);
    EXPECT_EQ(placement.of({300, 200}, odd, 1.0).transformed(ImageTransform::of(10, {}), odd, 1.0).center(),
              QPointF(400.5, 300.5));
}

TEST(ImagePlacement, liesOnWholePixelsWhenItIsReduced)
{
    const auto placement = ImagePlacement::of({1000, 700}, {501, 333}, 1.5);
    const auto reduced = placement.reduced(ImageTransform::of(1 / 1.5, {3.3, 0}), {501, 333}, 1.5);
    EXPECT_NEAR(reduced.deviceSize.width(), placement.deviceSize.width() / 1.5, 0.5);
    EXPECT_NEAR(reduced.deviceSize.height(), placement.deviceSize.height() / 1.5, 0.5);
    EXPECT_EQ(placement.reduced({}, {501, 333}, 1.5), placement);
}

TEST(ImagePlacement, isNeverReducedToNothing)
{
    const auto placement = ImagePlacement::of({4000, 1}, {600, 400}, 1.0);
    const auto reduced = placement.reduced(ImageTransform::of(0.25, {}), {600, 400}, 1.0);
    EXPECT_EQ(reduced.deviceSize, QSize(150, 1));
    EXPECT_EQ(reduced.copySize(), (PixelSize{150, 1}));
}

} // namespace
} // namespace tallowmere
