// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/pixels/ScreenColours.h"

#include "tests/imaging/pixels/Pictures.h"
#include "tests/imaging/pixels/Profiles.h"

#include <gtest/gtest.h>

namespace tallowmere {
namespace {

DecodedImage imageOf(PixelBuffer pixels, bool hasAlpha = false)
{
    DecodedImage image;
    image.storedSize = pixels.size();
    image.pixels = std::move(pixels);
    image.hasAlpha = hasAlpha;
    image.colour.icc = displayP3Profile();
    return image;
}

TEST(ScreenColours, areThoseOfTheProfile)
{
    DecodedImage image = imageOf(makePlain({40, 30}, {60, 60, 200, 255}));
    ASSERT_TRUE(convertToScreenColours(image));
    const std::vector<Pixel> converted = allPixels(image.pixels);
    EXPECT_GT(converted[0][2], 205); // the same red needs more of sRGB's
    EXPECT_LT(converted[0][1], 55);
    EXPECT_EQ(converted, std::vector<Pixel>(40 * 30, converted[0]));
}

TEST(ScreenColours, areReachedOnce)
{
    DecodedImage image = imageOf(makePlain({4, 4}, {60, 60, 200, 255}));
    ASSERT_TRUE(convertToScreenColours(image));
    const std::vector<Pixel> once = allPixels(image.pixels);
    ASSERT_TRUE(convertToScreenColours(image));
    EXPECT_EQ(allPixels(image.pixels), once);
}

TEST(ScreenColours, keepTheAverageOfTheStoredPixels)
{
    DecodedImage image = imageOf(makePixels({901, 733}, [](auto x, auto y) { return distinct(x % 251, y % 241); }));
    const AverageColour stored = averageColour(image.pixels);
    ASSERT_TRUE(convertToScreenColours(image));
    EXPECT_EQ(image.storedAverage, stored);
    EXPECT_NE(averageColour(image.pixels), stored);
}

TEST(ScreenColours, ofAPictureThatHasThemAlreadyTouchNothing)
{
    DecodedImage image = imageOf(makePixels({57, 31}, distinct));
    for (const ColourDescription &colour :
         {ColourDescription(), ColourDescription{.icc = {}, .cicp = Cicp{1, 13, 0, true}, .gamma = {}}}) {
        image.colour = colour;
        const std::vector<Pixel> before = allPixels(image.pixels);
        EXPECT_TRUE(convertToScreenColours(image));
        EXPECT_EQ(allPixels(image.pixels), before);
        EXPECT_FALSE(image.storedAverage);
        EXPECT_TRUE(image.colour.unknown()) << "a profile that is of no use any more is not kept";
    }
}

TEST(ScreenColours, ofTranslucentPixelsGoByTheirStraightColour)
{
    const auto convertedWith = [](std::uint8_t alpha) {
        DecodedImage image = imageOf(makePlain({8, 8}, {static_cast<std::uint8_t>(60 * alpha / 255),
                                                        static_cast<std::uint8_t>(120 * alpha / 255),
                                                        static_cast<std::uint8_t>(180 * alpha / 255), alpha}),
                                     true);
        EXPECT_TRUE(convertToScreenColours(image));
        return pixelAt(image.pixels, 1, 1);
    };
    const Pixel opaque = convertedWith(255);
    const Pixel half = convertedWith(128);
    EXPECT_EQ(half[3], 128);
    for (std::size_t c = 0; c < 3; ++c)
        EXPECT_NEAR(half[c], opaque[c] * 128 / 255, 2);
    EXPECT_EQ(convertedWith(0), (Pixel{0, 0, 0, 0}));
}

TEST(ScreenColours, areTheSameOnOneThreadAndTwo)
{
    const auto colour = [](auto x, auto y) { return distinct(x % 251, y % 241); };
    DecodedImage large = imageOf(makePixels({1000, 600}, colour));
    DecodedImage small = imageOf(makePixels({1000, 60}, [&](auto x, auto y) { return colour(x, y + 540); }));
    ASSERT_TRUE(convertToScreenColours(large));
    ASSERT_TRUE(convertToScreenColours(small));
    for (std::uint32_t y = 0; y < 60; ++y) {
        for (std::uint32_t x = 0; x < 1000; ++x)
            ASSERT_EQ(pixelAt(large.pixels, x, y + 540), pixelAt(small.pixels, x, y)) << x << ", " << y;
    }
}

TEST(ScreenColours, areGivenUpWhenCancelled)
{
    DecodedImage image = imageOf(makePlain({200, 200}, {1, 2, 3, 255}));
    EXPECT_FALSE(convertToScreenColours(image, [] { return true; }));
    DecodedImage wanted = imageOf(makePlain({200, 200}, {1, 2, 3, 255}));
    EXPECT_TRUE(convertToScreenColours(wanted, [] { return false; }));
}

TEST(ScreenColours, ofNoPixelsAreNone)
{
    DecodedImage image = imageOf(PixelBuffer());
    EXPECT_TRUE(convertToScreenColours(image));
    EXPECT_TRUE(image.pixels.isNull());
}

} // namespace
} // namespace tallowmere
