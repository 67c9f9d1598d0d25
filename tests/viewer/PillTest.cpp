// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "viewer/Pill.h"

#include "tests/viewer/ApplicationFont.h"
#include "viewer/InterfaceFont.h"
#include "viewer/rules/PillLayout.h"

#include <QFontMetricsF>
#include <QImage>
#include <QTest>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace tallowmere::test {
namespace {

using namespace Qt::Literals::StringLiterals;

class PillTest : public ::testing::Test
{
protected:
    /// As it looks on a picture of this colour.
    [[nodiscard]] static QImage painted(Pill &pill, QColor picture = Qt::white)
    {
        pill.placeAtLeft({600, 400});
        QImage pixels(pill.size(), QImage::Format_RGB32);
        pixels.fill(picture);
        pill.render(&pixels, {}, {}, QWidget::RenderFlags());
        return pixels;
    }
    static void fitToText(Pill &pill) { pill.setPillWidth(PillLayout::infoPillWidth(pill.textWidth(), false)); }
};

TEST_F(PillTest, aDateInArabicTurnsNeitherTheResolutionNorTheOrderRound)
{
    const QString resolution = u"600×400"_s;
    for (const QString &before : {u"٢٢ ص • "_s, u"2 MB • ٢٢ ص • "_s, u"٢ م.ب. • ٢٢ ص • "_s}) {
        Pill whole(Pill::Content::facts, 0, nullptr);
        whole.setText(before + resolution);
        fitToText(whole);
        const double begin =
            15 + whole.textWidth() - QFontMetricsF(interfaceFont(11, QFont::Medium)).horizontalAdvance(resolution);

        Pill alone(Pill::Content::facts, whole.pillWidth(), nullptr);
        alone.setText(resolution);
        alone.setTextLeading(begin);

        const QImage seen = painted(whole);
        const int left = static_cast<int>(begin);
        const QRect place(left, 0, seen.width() - left, seen.height());
        EXPECT_EQ(seen.copy(place), painted(alone).copy(place)) << before.toStdString();
    }
}

TEST_F(PillTest, aNameRunsInTheDirectionOfItsOwnScript)
{
    Pill arabic(Pill::Content::name, 150, nullptr);
    arabic.setText(u"ص 12.png"_s);
    Pill mirrored(Pill::Content::name, 150, nullptr);
    mirrored.setText(arabic.text());
    mirrored.setLayoutDirection(Qt::RightToLeft);
    EXPECT_EQ(painted(arabic), painted(mirrored)) << "whatever the window's is";
    Pill leftToRight(Pill::Content::name, 150, nullptr);
    leftToRight.setText(QChar(0x200e) + arabic.text());
    EXPECT_NE(painted(arabic), painted(leftToRight));
}

TEST_F(PillTest, withoutTextOnlyWhatCarriesTheTagCircleIsPainted)
{
    Pill pill(Pill::Content::facts, 200, nullptr);
    QImage nothing = painted(pill);
    nothing.fill(Qt::white);
    EXPECT_EQ(painted(pill), nothing);

    pill.setTextLeading(PillLayout::infoTextLeading(true));
    const QImage seen = painted(pill);
    const QRgb white = QColor(Qt::white).rgb();
    EXPECT_NE(seen.pixel(1, 12), white);
    EXPECT_NE(seen.pixel(14, 12), white);
    EXPECT_NE(seen.pixel(26, 12), white) << "as far behind the circle as before it";
    EXPECT_EQ(seen.pixel(28, 12), white);
    EXPECT_EQ(seen.pixel(100, 12), white);
}

/// How well the text of a pill can be read: the contrast of the lightest and the darkest pixel.
double contrastOf(const QImage &pixels)
{
    const auto luminance = [](QRgb pixel) {
        const auto linear = [](int value) {
            const double part = value / 255.0;
            return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
        };
        return 0.2126 * linear(qRed(pixel)) + 0.7152 * linear(qGreen(pixel)) + 0.0722 * linear(qBlue(pixel));
    };
    double lightest = 0;
    double darkest = 1;
    for (int x = 14; x < pixels.width() - 14; ++x) {
        for (int y = 2; y < pixels.height() - 2; ++y) {
            lightest = std::max(lightest, luminance(pixels.pixel(x, y)));
            darkest = std::min(darkest, luminance(pixels.pixel(x, y)));
        }
    }
    return (lightest + 0.05) / (darkest + 0.05);
}

TEST_F(PillTest, theTextIsLegibleOnWhiteAndBlackInBothAppearances)
{
    Pill pill(Pill::Content::facts, 0, nullptr);
    pill.setText(u"MMMMMMMM HHHHHHH"_s);
    fitToText(pill);
    for (const QColor &ground : {QColor(30, 30, 30), QColor(239, 239, 239)}) {
        QPalette palette;
        palette.setColor(QPalette::Window, ground);
        pill.setPalette(palette);
        for (const QColor &picture : {QColor(Qt::white), QColor(Qt::black), QColor(128, 128, 128)})
            EXPECT_GE(contrastOf(painted(pill, picture)), 4.5)
                << ground.name().toStdString() << " on " << picture.name().toStdString();
    }
}

TEST_F(PillTest, aLargerFontOfTheUsersEnlargesTheTextAndASmallerOneDoesNotShrinkIt)
{
    const ApplicationFont font;
    const auto pixelsAt = [&](double points) {
        font.setPointSize(points);
        return interfaceFont(11).pixelSize();
    };
    EXPECT_EQ(pixelsAt(10), 11);
    EXPECT_EQ(pixelsAt(9), 11) << "what Qt takes where the desktop says nothing";
    EXPECT_EQ(pixelsAt(4), 11);
    EXPECT_EQ(pixelsAt(15), 17);
    EXPECT_EQ(pixelsAt(20), 22);
}

TEST_F(PillTest, itsTextFollowsAChangeOfTheUsersFont)
{
    const ApplicationFont font;
    font.setPointSize(10);
    QWidget window;
    Pill pill(Pill::Content::facts, 200, &window);
    pill.setText(u"2 MB"_s);
    window.show();
    const double before = pill.textWidth();
    bool told = false;
    QObject::connect(&pill, &Pill::fontChanged, &pill, [&] {
        told = true;
        EXPECT_GT(pill.textWidth(), 1.8 * before);
    });
    font.setPointSize(20);
    EXPECT_TRUE(QTest::qWaitFor([&] { return told; }, 30'000));
}

} // namespace
} // namespace tallowmere::test
