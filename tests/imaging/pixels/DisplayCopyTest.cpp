// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/pixels/DisplayCopy.h"

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
    return image;
}

TEST(DisplayCopy, hasExactlyTheSizeAskedFor)
{
    const DecodedImage image = imageOf(makePlain({120, 80}, {1, 2, 3, 255}));
    for (const PixelSize size : {PixelSize{120, 80}, PixelSize{119, 79}, PixelSize{60, 40}, PixelSize{1, 1},
                                 PixelSize{120, 1}, PixelSize{1, 80}, PixelSize{33, 71}}) {
        const PixelBuffer copy = makeDisplayCopy(image, size);
        EXPECT_EQ(copy.size(), size);
        EXPECT_EQ(allPixels(copy), std::vector<Pixel>(size.pixels(), Pixel{1, 2, 3, 255}));
    }
}

TEST(DisplayCopy, isNeverLargerThanItsImage)
{
    const DecodedImage image = imageOf(makePlain({12, 8}, {1, 2, 3, 255}));
    EXPECT_TRUE(makeDisplayCopy(image, {13, 8}).isNull());
    EXPECT_TRUE(makeDisplayCopy(image, {12, 9}).isNull());
    EXPECT_TRUE(makeDisplayCopy(image, {0, 8}).isNull());
    EXPECT_TRUE(makeDisplayCopy(imageOf(PixelBuffer()), {1, 1}).isNull());
}

TEST(DisplayCopy, ofAnImageWithoutProfileAtItsOwnSizeIsTheImage)
{
    const DecodedImage image = imageOf(makePixels({57, 31}, distinct));
    EXPECT_EQ(allPixels(makeDisplayCopy(image, {57, 31})), allPixels(image.pixels));
}

TEST(DisplayCopy, isTheSameOnOneThreadAndTwo)
{
    // The right half alone is small enough for one thread; far from the cut both must agree.
    const auto colour = [](auto x, auto y) { return distinct(x % 251, y % 241); };
    const DecodedImage large = imageOf(makePixels({1000, 600}, colour));
    const DecodedImage small = imageOf(makePixels({500, 600}, [&](auto x, auto y) { return colour(x + 500, y); }));
    const PixelBuffer wide = makeDisplayCopy(large, {500, 300});
    const PixelBuffer narrow = makeDisplayCopy(small, {250, 300});
    for (std::uint32_t y = 0; y < 300; ++y) {
        for (std::uint32_t x = 10; x < 250; ++x)
            ASSERT_EQ(pixelAt(wide, 250 + x, y), pixelAt(narrow, x, y));
    }
}

TEST(DisplayCopy, stopsWhenCancelled)
{
    const DecodedImage small = imageOf(makePlain({200, 200}, {1, 2, 3, 255}));
    const DecodedImage large = imageOf(makePlain({1000, 1000}, {1, 2, 3, 255}));
    EXPECT_TRUE(makeDisplayCopy(small, {100, 100}, [] { return true; }).isNull());
    EXPECT_TRUE(makeDisplayCopy(small, {200, 200}, [] { return true; }).isNull());
    EXPECT_FALSE(makeDisplayCopy(small, {100, 100}, [] { return false; }).isNull());
    EXPECT_FALSE(makeDisplayCopy(large, {100, 100}, [] { return false; }).isNull());
}

TEST(DisplayCopy, convertsTheColoursOfTheProfile)
{
    DecodedImage image = imageOf(makePlain({40, 40}, {60, 60, 200, 255}));
    image.colour.icc = displayP3Profile();
    const Pixel converted = pixelAt(makeDisplayCopy(image, {20, 20}), 7, 7);
    EXPECT_GT(converted[2], 205); // the same red needs more of sRGB's
    EXPECT_LT(converted[1], 55);
    EXPECT_EQ(converted[3], 255);
}

TEST(DisplayCopy, convertsTranslucentPixelsByTheirStraightColour)
{
    const auto convertedWith = [](std::uint8_t alpha) {
        DecodedImage image = imageOf(makePlain({8, 8}, {static_cast<std::uint8_t>(60 * alpha / 255),
                                                        static_cast<std::uint8_t>(120 * alpha / 255),
                                                        static_cast<std::uint8_t>(180 * alpha / 255), alpha}),
                                     true);
        image.colour.icc = displayP3Profile();
        return pixelAt(makeDisplayCopy(image, {4, 4}), 1, 1);
    };
    const Pixel opaque = convertedWith(255);
    const Pixel half = convertedWith(128);
    EXPECT_EQ(half[3], 128);
    for (std::size_t c = 0; c < 3; ++c)
        EXPECT_NEAR(half[c], opaque[c] * 128 / 255, 2);
    EXPECT_EQ(convertedWith(0), (Pixel{0, 0, 0, 0}));
}

} // namespace
} // namespace tallowmere
