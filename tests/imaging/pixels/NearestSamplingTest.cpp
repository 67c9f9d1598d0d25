// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/pixels/NearestSampling.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace tallowmere {
namespace {

/// Each pixel tells where it lies: x in blue, y in green.
PixelBuffer chart(std::uint32_t width, std::uint32_t height)
{
    PixelBuffer pixels = PixelBuffer::allocate({width, height});
    for (std::uint32_t y = 0; y < height; ++y) {
        auto *row = reinterpret_cast<std::uint32_t *>(pixels.row(y));
        for (std::uint32_t x = 0; x < width; ++x)
            row[x] = 0xff000000U | (y % 256) << 8 | x % 256;
    }
    return pixels;
}

struct Sampled
{
    std::vector<std::uint32_t> pixels;
    std::size_t width = 0;
    [[nodiscard]] std::uint32_t at(std::size_t x, std::size_t y) const { return pixels[y * width + x]; }
};

Sampled sample(NearestSampling &sampling, std::int64_t top, std::int64_t bottom)
{
    Sampled result;
    result.width = sampling.rowBytes() / 4;
    result.pixels.resize(result.width * static_cast<std::size_t>(bottom - top));
    sampling.rows(top, bottom, reinterpret_cast<std::byte *>(result.pixels.data()));
    return result;
}

TEST(LaidSide, coversThePixelsWhoseCentresItCovers)
{
    const LaidSide side{2.5, 3.0};
    EXPECT_EQ(side.firstCovered(), 2);
    EXPECT_EQ(side.endCovered(), 5);
    const LaidSide shifted{2.6, 3.0};
    EXPECT_EQ(shifted.firstCovered(), 3);
    EXPECT_EQ(shifted.endCovered(), 6);
    const LaidSide outside{-4.0, 3.0};
    EXPECT_EQ(outside.firstCovered(), -4);
    EXPECT_EQ(outside.endCovered(), -1);
}

TEST(LaidSide, staysInsideThePictureWhateverIsAsked)
{
    const LaidSide side{10, 20};
    EXPECT_EQ(side.sourcePixel(-1000, 5), 0U);
    EXPECT_EQ(side.sourcePixel(1000, 5), 4U);
    EXPECT_EQ((LaidSide{0, 0}.sourcePixel(0, 5)), 4U);
    EXPECT_EQ((LaidSide{std::numeric_limits<double>::quiet_NaN(), 1}.sourcePixel(3, 5)), 0U);
}

TEST(NearestSampling, makesSquaresOfThePixelsOfAnEnlargedPicture)
{
    const PixelBuffer source = chart(4, 3);
    NearestSampling sampling(source, {0, 12}, {0, 9}, 0, 12);
    const Sampled screen = sample(sampling, 0, 9);
    for (std::uint32_t y = 0; y < 9; ++y) {
        for (std::uint32_t x = 0; x < 12; ++x)
            ASSERT_EQ(screen.at(x, y), 0xff000000U | (y / 3) << 8 | x / 3) << x << ", " << y;
    }
}

TEST(NearestSampling, takesThePixelUnderTheCentreAtAnyScale)
{
    const PixelBuffer source = chart(200, 150);
    for (const double scale : {0.37, 0.999, 1.0, 1.25, 1.5, 3.3, 10.0}) {
        const LaidSide horizontal{-31.7, 200 * scale};
        const LaidSide vertical{12.3, 150 * scale};
        const std::int64_t left = std::max<std::int64_t>(horizontal.firstCovered(), 0);
        const std::int64_t right = std::min<std::int64_t>(horizontal.endCovered(), 90);
        const std::int64_t bottom = std::min<std::int64_t>(vertical.endCovered(), 70);
        NearestSampling sampling(source, horizontal, vertical, left, right);
        const Sampled screen = sample(sampling, vertical.firstCovered(), bottom);
        for (std::int64_t y = vertical.firstCovered(); y < bottom; ++y) {
            for (std::int64_t x = left; x < right; ++x) {
                const auto expectedX = static_cast<std::uint32_t>((static_cast<double>(x) + 0.5 + 31.7) / scale);
                const auto expectedY = static_cast<std::uint32_t>((static_cast<double>(y) + 0.5 - 12.3) / scale);
                const std::uint32_t seen = screen.at(static_cast<std::size_t>(x - left),
                                                     static_cast<std::size_t>(y - vertical.firstCovered()));
                ASSERT_EQ(seen & 0xff, expectedX) << scale << ": " << x << ", " << y;
                ASSERT_EQ(seen >> 8 & 0xff, expectedY) << scale << ": " << x << ", " << y;
            }
        }
    }
}

TEST(NearestSampling, aPartIsTheSameAsThatPartOfTheWhole)
{
    const PixelBuffer source = chart(60, 40);
    const LaidSide horizontal{-20.3, 60 * 2.7};
    const LaidSide vertical{-7.9, 40 * 2.7};
    NearestSampling whole(source, horizontal, vertical, 0, 100);
    NearestSampling part(source, horizontal, vertical, 31, 57);
    const Sampled all = sample(whole, 0, 80);
    const Sampled some = sample(part, 13, 44);
    for (std::size_t y = 0; y < 31; ++y) {
        for (std::size_t x = 0; x < 26; ++x)
            ASSERT_EQ(some.at(x, y), all.at(x + 31, y + 13)) << x << ", " << y;
    }
}

TEST(NearestSampling, hasNothingToSayAboutNoColumns)
{
    const PixelBuffer source = chart(4, 4);
    NearestSampling sampling(source, {0, 4}, {0, 4}, 3, 3);
    EXPECT_EQ(sampling.rowBytes(), 0U);
}

} // namespace
} // namespace tallowmere
