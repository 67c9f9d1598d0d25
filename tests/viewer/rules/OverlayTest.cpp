// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "viewer/rules/CheckerPattern.h"
#include "viewer/rules/OverlayVisibility.h"
#include "viewer/rules/PillLayout.h"
#include "viewer/rules/TransparencyRule.h"

#include <gtest/gtest.h>

namespace tallowmere {
namespace {

using Pill = OverlayVisibility::Pill;
using Situation = OverlayVisibility::Situation;

struct Row
{
    const char *name;
    Situation situation;
    OverlayVisibility expected;
};

Situation situation(double width, bool showsName, bool showsInfo)
{
    return {.viewWidth = width,
            .hasCurrentFile = true,
            .showsName = showsName,
            .showsInformation = showsInfo,
            .namePillWidth = 150,
            .infoPillWidth = 200};
}

class OverlayVisibilityTable : public testing::TestWithParam<Row>
{};

TEST_P(OverlayVisibilityTable, holds)
{
    EXPECT_EQ(OverlayVisibility::of(GetParam().situation), GetParam().expected);
}

const Row kRows[] = {
    {"BothFitExactly", situation(432, true, true), {Pill::shown, Pill::shown}},
    {"NameGivesWayFirst", situation(431.9, true, true), {Pill::hidden, Pill::shown}},
    {"NameHiddenInfoStaysAt300", situation(300, true, true), {Pill::hidden, Pill::shown}},
    {"InfoAloneFitsExactlyInCornerMode", situation(232, true, true), {Pill::hidden, Pill::shown}},
    {"NothingFitsInCornerMode", situation(231.9, true, true), {Pill::hidden, Pill::hidden}},
    {"NameAloneFitsExactly", situation(232, true, false), {Pill::shown, Pill::hidden}},
    {"NameAloneTooWide", situation(231.9, true, false), {Pill::hidden, Pill::hidden}},
    {"InfoWithRoom", situation(282, false, true), {Pill::hidden, Pill::shown}},
    {"InfoWithLittleRoomLeavesTheNameAlone", situation(281.9, false, true), {Pill::unchanged, Pill::shown}},
    {"InfoFitsExactly", situation(232, false, true), {Pill::unchanged, Pill::shown}},
    {"InfoTooWide", situation(231.9, false, true), {Pill::unchanged, Pill::hidden}},
    {"NeitherWanted", situation(1000, false, false), {Pill::hidden, Pill::hidden}},
    {"NoWidthYet", situation(0, true, true), {Pill::unchanged, Pill::unchanged}},
    {"NegativeWidth", situation(-1, true, true), {Pill::unchanged, Pill::unchanged}},
    {"NoFile", {.viewWidth = 1000, .showsName = true, .showsInformation = true}, {Pill::hidden, Pill::hidden}},
};

INSTANTIATE_TEST_SUITE_P(Rules, OverlayVisibilityTable, testing::ValuesIn(kRows),
                         [](const auto &row) { return std::string(row.param.name); });

TEST(OverlayVisibility, aWindow300WideWithAnInfoPillOf200InCornerModeHidesTheNameAndKeepsTheInfo)
{
    EXPECT_EQ(OverlayVisibility::of(situation(300, true, true)), (OverlayVisibility{Pill::hidden, Pill::shown}));
}

TEST(OverlayVisibility, aWiderWindowNeverShowsLess)
{
    for (const bool showsName : {false, true}) {
        for (const bool showsInfo : {false, true}) {
            OverlayVisibility before = OverlayVisibility::of(situation(1, showsName, showsInfo));
            for (double width = 2; width < 1000; ++width) {
                const auto now = OverlayVisibility::of(situation(width, showsName, showsInfo));
                ASSERT_FALSE(before.info == Pill::shown && now.info == Pill::hidden) << width;
                ASSERT_FALSE(before.name == Pill::shown && now.name == Pill::hidden) << width;
                before = now;
            }
        }
    }
}

TEST(PillLayout, aShortNameGivesAPillOf150AndAVeryLongOne300)
{
    EXPECT_EQ(PillLayout::namePillWidth(70), 150); // about ten characters
    EXPECT_EQ(PillLayout::namePillWidth(120), 150);
    EXPECT_EQ(PillLayout::namePillWidth(170.25), 200.25);
    EXPECT_EQ(PillLayout::namePillWidth(270), 300);
    EXPECT_EQ(PillLayout::namePillWidth(5000), 300);
}

TEST(PillLayout, theInfoPillMakesRoomForTheTagCircle)
{
    EXPECT_EQ(PillLayout::infoPillWidth(100.5, false), 130.5);
    EXPECT_EQ(PillLayout::infoPillWidth(100.5, true), 141.5);
    EXPECT_EQ(PillLayout::infoTextLeading(false), 15);
    EXPECT_EQ(PillLayout::infoTextLeading(true), 26);
}

TEST(CheckerPattern, hasItsOwnGreysForLightAndDark)
{
    EXPECT_EQ(CheckerPattern::forAppearance(false), (CheckerPattern{0.88, 0.82}));
    EXPECT_EQ(CheckerPattern::forAppearance(true), (CheckerPattern{0.32, 0.27}));
}

ImagePtr imageOf(bool hasAlpha)
{
    DecodedImage decoded;
    decoded.pixels = PixelBuffer::allocate({2, 2});
    decoded.hasAlpha = hasAlpha;
    return std::make_shared<const Image>(std::move(decoded));
}

TEST(Transparency, anOpaqueImageShowsNoCheckers)
{
    EXPECT_FALSE(showsCheckers(TransparencyBackground::checkers, imageOf(false)));
}

TEST(Transparency, anImageWithAlphaShowsCheckersOnlyWhenTheUserWantsThem)
{
    EXPECT_TRUE(showsCheckers(TransparencyBackground::checkers, imageOf(true)));
    EXPECT_FALSE(showsCheckers(TransparencyBackground::solidColor, imageOf(true)));
}

TEST(Transparency, withoutAnImageOrABitmapShowsNoCheckers)
{
    EXPECT_FALSE(showsCheckers(TransparencyBackground::checkers, nullptr));
    EXPECT_FALSE(showsCheckers(TransparencyBackground::checkers, std::make_shared<const Image>(QSizeF(10, 10))));
}

} // namespace
} // namespace tallowmere
