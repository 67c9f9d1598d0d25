// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "viewer/WindowGeometry.h"

#include <gtest/gtest.h>

#include <random>

namespace tallowmere {
namespace {

using namespace WindowGeometry;

constexpr double kTolerance = 1e-9;

TEST(WindowGeometry, fitsALargeImageToTheScreenOfTwoPixelsAPoint)
{
    const ScreenArea screen{{0, 25, 1440, 875}, 2.0};
    const QSizeF content = fittedImageSize({4000, 3000}, screen, {0, 28});
    EXPECT_NEAR(content.width(), 1129.333, 0.001);
    EXPECT_NEAR(content.height(), 847, kTolerance);
    const QRectF frame = centredFrame(content + QSizeF(0, 28), screen.visibleFrame);
    EXPECT_NEAR(frame.height(), 875, kTolerance);
    EXPECT_NEAR(frame.center().x(), 720, kTolerance);
    EXPECT_NEAR(frame.center().y(), 25 + 875 / 2.0, kTolerance);
}

TEST(WindowGeometry, doesNotEnlargeASmallImage)
{
    EXPECT_EQ(fittedImageSize({100, 100}, {{0, 0, 1440, 875}, 2.0}, {0, 28}), QSizeF(50, 50));
}

TEST(WindowGeometry, keepsTheCentreEvenPastTheEdgeOfTheScreen)
{
    const QRectF frame = resizedAboutCentre({0, 0, 200, 100}, kSmallFrame);
    EXPECT_EQ(frame, QRectF(-200, -150, 600, 400));
}

TEST(WindowGeometry, insetsTheLargeWindowBy40OnEverySide)
{
    EXPECT_EQ(largeFrame({10, 20, 1000, 800}), QRectF(50, 60, 920, 720));
}

TEST(WindowGeometry, leavesALargeWindowOnATinyScreenASize)
{
    EXPECT_EQ(largeFrame({0, 0, 70, 60}).size(), QSizeF(1, 1));
}

TEST(WindowGeometry, growsByAFactorNoFurtherThanTheFittedSize)
{
    EXPECT_EQ(contentResizedByFactor({800, 600}, 1.5, {1000, 700}), QSizeF(1000, 700));
}

TEST(WindowGeometry, shrinksByAFactorNoFurtherThan100)
{
    EXPECT_EQ(contentResizedByFactor({120, 300}, 0.5, {1000, 700}), QSizeF(100, 150));
}

TEST(WindowGeometry, aFittedSizeUnder100GoesBeforeTheSmallestSide)
{
    EXPECT_EQ(contentResizedByFactor({50, 50}, 0.5, {50, 50}), QSizeF(50, 50));
}

TEST(WindowGeometry, neverLeavesTheScreenAndNeverEnlargesWhateverTheImage)
{
    std::mt19937 random(20260101);
    std::uniform_int_distribution<std::uint32_t> side(1, 5000);
    std::uniform_real_distribution<double> length(200, 4000);
    std::uniform_real_distribution<double> extra(0, 100);
    std::uniform_real_distribution<double> scale(1, 3);
    for (int round = 0; round < 2000; ++round) {
        const PixelSize image{side(random), side(random)};
        const ScreenArea screen{{length(random), length(random), length(random), length(random)}, scale(random)};
        const QSizeF around(extra(random), extra(random));
        const QSizeF content = fittedImageSize(image, screen, around);
        const QSizeF natural = QSizeF(image.width, image.height) / screen.backingScaleFactor;
        EXPECT_LE(content.width(), natural.width() + kTolerance);
        EXPECT_LE(content.height(), natural.height() + kTolerance);
        EXPECT_NEAR(content.width() * natural.height(), content.height() * natural.width(), 1e-3) << "same shape";

        const QRectF frame = centredFrame(content + around, screen.visibleFrame);
        EXPECT_TRUE(screen.visibleFrame.adjusted(-0.001, -0.001, 0.001, 0.001).contains(frame));
        const bool reduced = content.width() < natural.width() - kTolerance;
        const bool touches = frame.width() > screen.visibleFrame.width() - 0.001 ||
                             frame.height() > screen.visibleFrame.height() - 0.001;
        EXPECT_TRUE(!reduced || touches) << "no more reduced than needed";
    }
}

TEST(WindowGeometry, resizingAboutTheCentreIsUndoneByResizingBack)
{
    const QRectF frame(123, 45, 678, 401);
    const QRectF back = resizedAboutCentre(resizedAboutCentre(frame, kMediumFrame), frame.size());
    EXPECT_EQ(back, frame);
}

} // namespace
} // namespace tallowmere
