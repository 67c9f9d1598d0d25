// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "app/ColourSchemePalette.h"
#include "tests/app/ApplicationFixture.h"
#include "viewer/Appearance.h"

#include <QApplication>

namespace tallowmere {

namespace {

using namespace tallowmere::test;

class ColourSchemes : public ApplicationFixture
{
protected:
    ~ColourSchemes() override { QApplication::setPalette({}); }

    void choose(ColourScheme scheme)
    {
        applyColourScheme(scheme);
        settle();
    }
};

} // namespace

TEST_F(ColourSchemes, darkAndLightReachWindowsAndViewerAtOnce)
{
    launch();
    ASSERT_FALSE(isDark(QApplication::palette())) << "the plain desktop's palette is light";
    const QColor light = background();
    choose(ColourScheme::dark);
    EXPECT_TRUE(isDark(window()->palette()));
    EXPECT_TRUE(isDark(view()->palette()));
    EXPECT_EQ(background(), delegate->viewController()->windowBackgroundColor());
    EXPECT_LT(background().lightness(), 100);
    choose(ColourScheme::light);
    EXPECT_FALSE(isDark(view()->palette()));
    EXPECT_EQ(background(), light);
}

TEST_F(ColourSchemes, aPaletteThatAlreadyFitsIsLeftAlone)
{
    launch();
    const QPalette before = QApplication::palette();
    choose(ColourScheme::light);
    EXPECT_EQ(QApplication::palette(), before);
    choose(ColourScheme::noPreference);
    EXPECT_EQ(QApplication::palette(), before);
}

TEST_F(ColourSchemes, withoutAPreferenceTheDesktopsOwnPaletteComesBack)
{
    launch();
    const QPalette before = QApplication::palette();
    choose(ColourScheme::dark);
    choose(ColourScheme::noPreference);
    EXPECT_EQ(QApplication::palette(), before);
}

TEST_F(ColourSchemes, textStandsOutInTheDarkPalette)
{
    choose(ColourScheme::dark);
    const QPalette palette = QApplication::palette();
    using Pair = std::pair<QPalette::ColorRole, QPalette::ColorRole>;
    for (const auto &[text, ground] :
         {Pair{QPalette::WindowText, QPalette::Window}, Pair{QPalette::Text, QPalette::Base},
          Pair{QPalette::ButtonText, QPalette::Button}, Pair{QPalette::ToolTipText, QPalette::ToolTipBase}})
        EXPECT_GT(palette.color(text).lightness() - palette.color(ground).lightness(), 120) << text;
    EXPECT_NE(palette.color(QPalette::Disabled, QPalette::Text), palette.color(QPalette::Active, QPalette::Text));
}

} // namespace tallowmere
