// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "viewer/rules/LabelColour.h"

#include <gtest/gtest.h>

#include <cmath>

namespace tallowmere {
namespace {

constexpr int kRed = 6;

std::uint8_t byteOf(double component)
{
    return static_cast<std::uint8_t>(std::lround(component * 255));
}

FileLabel::Rgb shifted(const Color &colour, double green)
{
    return {byteOf(colour.red), byteOf(colour.green + green), byteOf(colour.blue)};
}

const Color &standardOf(int number)
{
    return standardLabelColours()[static_cast<std::size_t>(number - 1)];
}

TEST(LabelColour, isTheStandardOneOfTheNumber)
{
    for (int number = 1; number <= 7; ++number)
        EXPECT_EQ(labelColour({.number = number, .colour = {}}), standardOf(number)) << number;
}

TEST(LabelColour, farFromTheStandardIsShownAsCustomisedAndASlightlyDifferentOneInTheStandardColour)
{
    const Color &red = standardOf(kRed);
    const FileLabel far{kRed, shifted(red, 0.35)};
    const auto shown = labelColour(far);
    ASSERT_TRUE(shown);
    EXPECT_NEAR(shown->green, red.green + 0.35, 0.005);
    EXPECT_EQ(labelColour({kRed, shifted(red, 0.25)}), red);
}

TEST(LabelColour, addsTheDifferencesOfAllThreeComponents)
{
    const std::array<Color, 7> black{};
    const auto shows = [&](FileLabel::Rgb own) { return labelColour({1, own}, black)->red > 0; };
    EXPECT_FALSE(shows({25, 25, 26})); // 0.298
    EXPECT_TRUE(shows({26, 26, 25}));  // 0.302
}

TEST(LabelColour, withoutANumberIsTheFilesOwn)
{
    const FileLabel::Rgb own{255, 0, 51};
    const Color expected{1.0, 0.0, 0.2, 1.0};
    for (const int number : {0, -1, 8, 1000})
        EXPECT_EQ(labelColour({number, own}), expected) << number;
}

TEST(LabelColour, ofAFileWithoutALabelIsNone)
{
    EXPECT_EQ(labelColour({}), std::nullopt);
    EXPECT_EQ(labelColour({8, {}}), std::nullopt);
}

TEST(LabelColour, withFewerThanSevenStandardColoursOnlyTheFilesOwnCounts)
{
    const std::array<Color, 6> tooFew{};
    EXPECT_EQ(labelColour({1, {}}, tooFew), std::nullopt);
    EXPECT_EQ(labelColour({1, FileLabel::Rgb{0, 0, 0}}, tooFew), (Color{0, 0, 0, 1}));
}

TEST(LabelName, isThatOfTheNumberWhateverItsColour)
{
    EXPECT_EQ(labelName({1, {}}), QStringLiteral("Gray"));
    EXPECT_EQ(labelName({7, {}}), QStringLiteral("Orange"));
    EXPECT_EQ(labelName({kRed, FileLabel::Rgb{0, 0xc8, 0xff}}), QStringLiteral("Red"));
}

TEST(LabelName, ofAMereColourIsItsCode)
{
    EXPECT_EQ(labelName({0, FileLabel::Rgb{0, 0x0c, 0xff}}), QStringLiteral("#000cff"));
}

TEST(LabelName, ofAFileWithoutALabelIsEmpty)
{
    EXPECT_EQ(labelName({}), QString());
    EXPECT_EQ(labelName({8, {}}), QString());
}

TEST(LabelColour, standardColoursCanBeToldApart)
{
    for (int a = 1; a <= 7; ++a) {
        for (int b = a + 1; b <= 7; ++b) {
            const Color &x = standardOf(a);
            const Color &y = standardOf(b);
            const double difference = std::abs(x.red - y.red) + std::abs(x.green - y.green) + std::abs(x.blue - y.blue);
            EXPECT_GT(difference, 0.25) << a << " and " << b;
        }
    }
}

} // namespace
} // namespace tallowmere
