// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/pixels/AverageColour.h"

#include "tests/imaging/pixels/Pictures.h"

#include <gtest/gtest.h>

namespace tallowmere {
namespace {

using Average = std::array<std::uint8_t, 4>;

TEST(AverageColour, ofAnOpaqueImageOfOneSolidColourIsThatColour)
{
    const PixelBuffer pixels = makePlain({333, 77}, {50, 100, 200, 255});
    EXPECT_EQ(averageColour(pixels), (Average{200, 100, 50, 255}));
}

TEST(AverageColour, ofOnePixelIsThatPixel)
{
    EXPECT_EQ(averageColour(makePlain({1, 1}, {3, 2, 1, 4})), (Average{1, 2, 3, 4}));
}

TEST(AverageColour, roundsHalvesUp)
{
    const PixelBuffer pixels = makePixels({2, 1}, [](auto x, auto) {
        return x == 0 ? Pixel{0, 10, 254, 255} : Pixel{1, 12, 255, 255};
    });
    EXPECT_EQ(averageColour(pixels), (Average{255, 11, 1, 255}));
}

TEST(AverageColour, roundsDownUnderAHalf)
{
    const PixelBuffer pixels = makePixels({3, 1}, [](auto x, auto) {
        const auto value = static_cast<std::uint8_t>(x == 0);
        return Pixel{value, value, value, 255};
    });
    EXPECT_EQ(averageColour(pixels), (Average{0, 0, 0, 255}));
}

TEST(AverageColour, countsPremultipliedValuesAsTheyStand)
{
    const PixelBuffer pixels = makePixels({1, 2}, [](auto, auto y) {
        return y == 0 ? Pixel{0, 0, 0, 0} : Pixel{0, 0, 100, 100};
    });
    EXPECT_EQ(averageColour(pixels), (Average{50, 0, 0, 50}));
}

TEST(AverageColour, isExactAtEverySizeRoundAVector)
{
    for (std::uint32_t width = 1; width <= 80; ++width) {
        const PixelBuffer pixels = makePixels({width, 1}, distinct);
        std::array<std::uint64_t, 4> sums{};
        for (const Pixel &pixel : allPixels(pixels)) {
            for (std::size_t c = 0; c < 4; ++c)
                sums[c] += pixel[c];
        }
        const auto mean = [&](std::uint64_t sum) { return static_cast<std::uint8_t>((2 * sum + width) / (2 * width)); };
        EXPECT_EQ(averageColour(pixels), (Average{mean(sums[2]), mean(sums[1]), mean(sums[0]), mean(sums[3])}))
            << width;
    }
}

TEST(AverageColour, doesNotOverflowOnALargeWhiteImage)
{
    EXPECT_EQ(averageColour(makePlain({3000, 1500}, {255, 255, 255, 255})), (Average{255, 255, 255, 255}));
}

TEST(AverageColour, ofNothingIsTransparent)
{
    EXPECT_EQ(averageColour(PixelBuffer()), Average{});
}

} // namespace
} // namespace tallowmere
