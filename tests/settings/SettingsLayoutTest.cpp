// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/settings/SettingsWindowFixture.h"

#include <QLabel>
#include <QLayout>
#include <QTest>

#include <algorithm>
#include <cmath>
#include <tuple>

namespace tallowmere {
namespace {

/// By how much the font is larger than usual, and the direction of the layout.
using LayoutCase = std::tuple<double, Qt::LayoutDirection>;

class SettingsLayout : public test::SettingsWindowFixture, public testing::WithParamInterface<LayoutCase>
{
protected:
    void SetUp() override
    {
        const auto &[factor, direction] = GetParam();
        QFont font = m_font;
        font.setPointSizeF(font.pointSizeF() * factor);
        QApplication::setFont(font);
        QApplication::setLayoutDirection(direction);
        show();
    }
    void TearDown() override
    {
        controller.reset();
        QApplication::setFont(m_font);
        QApplication::setLayoutDirection(Qt::LeftToRight);
    }
    /// The edge where reading begins.
    static int beginning(const QWidget *control)
    {
        return control->isRightToLeft() ? control->geometry().right() : control->x();
    }

private:
    const QFont m_font = QApplication::font();
};

TEST_P(SettingsLayout, isOfItsNaturalSizeOrLarger)
{
    const QSize needed = controller->layout()->minimumSize();
    EXPECT_EQ(controller->size(), QSize(std::max(needed.width(), 500), std::max(needed.height(), 390)));
}

TEST_P(SettingsLayout, cutsNothingAndCoversNothing)
{
    for (const QGroupBox *group : groups()) {
        EXPECT_TRUE(controller->rect().contains(group->geometry()));
        const QList<QWidget *> controls = controlsOf(group);
        for (const QWidget *control : controls) {
            EXPECT_GE(control->width(), control->sizeHint().width()) << control->objectName().toStdString();
            EXPECT_GE(control->height(), control->sizeHint().height()) << control->objectName().toStdString();
            EXPECT_TRUE(group->contentsRect().contains(control->geometry())) << control->objectName().toStdString();
            for (const QWidget *other : controls)
                EXPECT_TRUE(other == control || !other->geometry().intersects(control->geometry()));
        }
    }
}

TEST_P(SettingsLayout, theColumnsOfTheGroupsStandUnderEachOther)
{
    EXPECT_EQ(beginning(checkbox("pngSupportCheckbox")), beginning(checkbox("showFileSizeCheckbox")));
    EXPECT_EQ(beginning(checkbox("pngSupportCheckbox")), beginning(widget<QLabel>("prefetchBeforeLabel")));
    EXPECT_EQ(beginning(checkbox("webpSupportCheckbox")), beginning(checkbox("showCreationDateCheckbox")));
    EXPECT_EQ(beginning(checkbox("webpSupportCheckbox")), beginning(widget<QLabel>("prefetchAfterLabel")));
    EXPECT_EQ(beginning(widget<QLabel>("prefetchInfoLabel")), beginning(checkbox("useXPCServiceCheckbox")));
    EXPECT_EQ(beginning(widget<QLabel>("fileNameDisplayLocationLabel")),
              beginning(widget<QLabel>("transparencyBackgroundLabel")));
    EXPECT_EQ(widget<QWidget>("fileNameDisplayLocationPopup")->width(),
              widget<QWidget>("transparencyBackgroundPopup")->width());
}

std::string nameOf(const testing::TestParamInfo<LayoutCase> &each)
{
    const auto &[factor, direction] = each.param;
    return "font" + std::to_string(std::lround(factor * 100)) + (direction == Qt::RightToLeft ? "mirrored" : "");
}

INSTANTIATE_TEST_SUITE_P(Each, SettingsLayout,
                         testing::Combine(testing::Values(0.8, 1.0, 1.5, 2.5),
                                          testing::Values(Qt::LeftToRight, Qt::RightToLeft)),
                         nameOf);

/// As the Web's accessibility guidelines (WCAG) define it.
double contrast(const QColor &a, const QColor &b)
{
    const auto luminance = [](const QColor &color) {
        const auto linear = [](float c) { return c <= 0.04045F ? c / 12.92F : std::pow((c + 0.055F) / 1.055F, 2.4F); };
        return 0.2126F * linear(color.redF()) + 0.7152F * linear(color.greenF()) + 0.0722F * linear(color.blueF());
    };
    const auto [low, high] = std::minmax({luminance(a), luminance(b)});
    return (high + 0.05F) / (low + 0.05F);
}

class SettingsColors : public test::SettingsWindowFixture
{};

TEST_F(SettingsColors, theQuietTextCanBeReadInLightAndDark)
{
    show();
    for (const auto &[window, text] : {std::pair{QColor(0xf0, 0xf0, 0xf0), QColor(0x1b, 0x1b, 0x1d)},
                                       {QColor(0x2b, 0x2b, 0x2e), QColor(0xf0, 0xf0, 0xf0)}}) {
        QPalette palette(window, window);
        palette.setColor(QPalette::WindowText, text);
        controller->setPalette(palette);
        const QColor seen = widget<QLabel>("prefetchInfoLabel")->palette().color(QPalette::WindowText);
        EXPECT_GT(contrast(seen, window), 4.5);
        EXPECT_LT(contrast(seen, window), contrast(text, window));
    }
}

TEST_F(SettingsColors, anEmptyBoxStandsOutFromADarkWindow)
{
    show();
    const QPalette light = checkbox("pngSupportCheckbox")->palette();
    QPalette dark(QColor(0x38, 0x38, 0x3b), QColor(0x2b, 0x2b, 0x2e));
    dark.setColor(QPalette::WindowText, Qt::white);
    dark.setColor(QPalette::Base, QColor(0x1f, 0x1f, 0x21));
    controller->setPalette(dark);
    EXPECT_GT(checkbox("pngSupportCheckbox")->palette().color(QPalette::Base).lightness(),
              dark.color(QPalette::Window).lightness());
    controller->setPalette({});
    EXPECT_EQ(checkbox("pngSupportCheckbox")->palette().color(QPalette::Base), light.color(QPalette::Base));
}

} // namespace
} // namespace tallowmere
