// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "viewer/WindowGeometry.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
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

QSizeF inWholePoints(QSizeF content)
{
    return content.toSize();
}

TEST(WindowGeometry, stepsOutAndInAgainEndAtTheFittedSize)
{
    for (const QSizeF &fitted : {QSizeF(1000, 719), QSizeF(719, 1000), QSizeF(1333.3, 211.2), QSizeF(211.2, 1333.3)}) {
        QSizeF content = inWholePoints(fitted);
        const auto rounded = content;
        for (int step = 0; step < 12 && content.width() > fitted.width() / 4; ++step) {
            const double ratio = content.width() / rounded.width();
            content = inWholePoints(contentResizedByFactor(content, std::max(ratio / 1.5, 0.25) / ratio, fitted));
        }
        for (int step = 0; step < 12 && content.width() < rounded.width(); ++step) {
            const double ratio = content.width() / rounded.width();
            content = inWholePoints(contentResizedByFactor(content, std::min(ratio * 1.5, 1.0) / ratio, fitted));
        }
        EXPECT_EQ(content.width(), rounded.width());
        if (fitted.width() / 4 > kSmallestContentSide && fitted.height() / 4 > kSmallestContentSide) {
            EXPECT_EQ(content.height(), rounded.height());
        }
    }
}

/// The rule of the two sides, each by itself.
QSizeF sideBySide(QSizeF content, double factor, QSizeF fitted)
{
    return {std::min(std::max(content.width() * factor, kSmallestContentSide), fitted.width()),
            std::min(std::max(content.height() * factor, kSmallestContentSide), fitted.height())};
}

TEST(WindowGeometry, keepingTheShapeChangesNoMoreThanRoundingDoes)
{
    std::mt19937 random(20260103);
    std::uniform_real_distribution<double> side(0.3, 3000);
    std::uniform_int_distribution<int> length(1, 3000);
    std::uniform_real_distribution<double> factors(0.3, 4);
    for (int round = 0; round < 20'000; ++round) {
        const QSizeF fitted(side(random), side(random));
        // Every other one in shape.
        const int width = length(random);
        const double shape = fitted.height() / fitted.width();
        const QSizeF content(width, round % 2 ? std::round(width * shape) : length(random));
        const double factor = factors(random);
        const QSizeF plain = sideBySide(content, factor, fitted);
        const QSizeF kept = contentResizedByFactor(content, factor, fitted);
        EXPECT_EQ(kept.width(), plain.width());
        EXPECT_NEAR(kept.height(), plain.height(), 0.5 * (1 + shape) * factor + kTolerance);
    }
}

TEST(WindowGeometry, steppingOutOfAPictureThatIsNarrowerThanTheSmallestSideGetsToTheSmallestSide)
{
    for (const double width : {0.3, 0.49, 0.6, 3.0, 40.0, 99.0, 101.0, 130.0}) {
        const QSizeF fitted(width, 1200);
        QSizeF content = inWholePoints(fitted).expandedTo({1, 1});
        for (int step = 0; step < 12; ++step)
            content = inWholePoints(contentResizedByFactor(content, 1 / 1.5, fitted)).expandedTo({1, 1});
        EXPECT_EQ(content.height(), 100) << width;
    }
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
