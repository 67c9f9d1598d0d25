// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/pixels/PixelKernels.h"

#include "imaging/pixels/DisplayCopy.h"
#include "imaging/pixels/PixelKernelSets.h"
#include "imaging/pixels/ScreenColours.h"
#include "tests/imaging/pixels/Pictures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

namespace tallowmere {
namespace {

PixelBuffer everyColourAndAlpha()
{
    return makePixels({256, 256}, [](auto x, auto y) {
        return Pixel{static_cast<std::uint8_t>(x), static_cast<std::uint8_t>(255 - x), static_cast<std::uint8_t>(x / 3),
                     static_cast<std::uint8_t>(y)};
    });
}

TEST(PixelKernels, premultiplyRoundsEveryProductToNearest)
{
    PixelBuffer pixels = everyColourAndAlpha();
    const std::vector<Pixel> straight = allPixels(pixels);
    premultiply(pixels.row(0), straight.size());
    const std::vector<Pixel> multiplied = allPixels(pixels);
    for (std::size_t i = 0; i < straight.size(); ++i) {
        for (std::size_t c = 0; c < 3; ++c)
            ASSERT_EQ(multiplied[i][c], (2U * straight[i][c] * straight[i][3] + 255) / 510);
        ASSERT_EQ(multiplied[i][3], straight[i][3]);
    }
}

TEST(PixelKernels, premultiplyTouchesNothingBehindTheLastPixel)
{
    for (std::size_t count = 0; count < 40; ++count) {
        std::vector<Pixel> pixels(41, Pixel{200, 200, 200, 100});
        premultiply(reinterpret_cast<std::byte *>(pixels.data()), count);
        for (std::size_t i = 0; i < pixels.size(); ++i)
            ASSERT_EQ(pixels[i], i < count ? (Pixel{78, 78, 78, 100}) : (Pixel{200, 200, 200, 100}));
    }
}

TEST(PixelKernels, unpremultiplyTakesBackWhatPremultiplyDid)
{
    PixelBuffer pixels = everyColourAndAlpha();
    const std::size_t count = pixels.size().pixels();
    premultiply(pixels.row(0), count);
    const std::vector<Pixel> multiplied = allPixels(pixels);
    unpremultiply(pixels.row(0), count);
    premultiply(pixels.row(0), count);
    EXPECT_EQ(allPixels(pixels), multiplied);
}

/// Whatever processor the suite runs on, it tries the code for all lesser ones too.
class EveryProcessor : public testing::Test
{
protected:
    ~EveryProcessor() override { useKernelSet(*runnableKernelSets().front()); }
};

TEST_F(EveryProcessor, getsTheSamePixels)
{
    const auto work = [] {
        DecodedImage image;
        image.pixels = makePixels({203, 149}, [](auto x, auto y) {
            const auto alpha = static_cast<std::uint8_t>(x + y > 255 ? 255 : x + y);
            return Pixel{static_cast<std::uint8_t>(alpha / 2), static_cast<std::uint8_t>(alpha * (x % 5) / 5), alpha,
                         alpha};
        });
        image.hasAlpha = true;
        image.colour.cicp = Cicp{9, 13, 0, true};
        EXPECT_TRUE(convertToScreenColours(image));
        std::vector<Pixel> result;
        for (const PixelSize size : {PixelSize{203, 149}, PixelSize{140, 100}, PixelSize{77, 31}, PixelSize{9, 5}}) {
            const PixelBuffer copy = makeDisplayCopy(image.pixels, size);
            const auto pixels = allPixels(copy);
            result.insert(result.end(), pixels.begin(), pixels.end());
        }
        result.push_back(image.storedAverage.value());
        return result;
    };
    const auto expected = work();
    ASSERT_GE(runnableKernelSets().size(), 2U);
    for (const KernelSet *set : runnableKernelSets()) {
        useKernelSet(*set);
        EXPECT_EQ(work(), expected) << set->instructionSet;
    }
}

/// By the textbook, one pixel at a time: from the cell's near corner to its far one, along the channels in the order in
/// which the colour lies far into the cell.
Pixel interpolated(const ColourGrid &grid, const Pixel &pixel)
{
    constexpr int kCells = ColourGrid::kSide - 1;
    constexpr std::array<std::size_t, 3> kSteps{1, ColourGrid::kSide, ColourGrid::kSide * ColourGrid::kSide};
    std::array<int, 3> into{};
    std::size_t node = 0;
    for (std::size_t c = 0; c < 3; ++c) {
        const int cell = std::min(pixel[c] * kCells / 255, kCells - 1);
        into[c] = pixel[c] * kCells - cell * 255;
        node += static_cast<std::size_t>(cell) * kSteps[c];
    }
    std::array<std::size_t, 3> order{0, 1, 2};
    std::sort(order.begin(), order.end(), [&](auto a, auto b) { return into[a] > into[b]; });
    std::array<int, 3> sum{};
    int before = 255;
    for (std::size_t i = 0; i <= 3; ++i) {
        const int after = i < 3 ? into[order[i]] : 0;
        for (std::size_t c = 0; c < 3; ++c)
            sum[c] += (before - after) * grid.nodes[node][c];
        before = after;
        node += i < 3 ? kSteps[order[i]] : 0;
    }
    Pixel result = pixel;
    for (std::size_t c = 0; c < 3; ++c)
        result[c] =
            static_cast<std::uint8_t>(std::clamp(std::floor(sum[c] / double{ColourGrid::kOne} + 0.5), 0.0, 255.0));
    return result;
}

TEST_F(EveryProcessor, interpolatesAllColoursOfAGridAlike)
{
    std::mt19937 random(11);
    ColourGrid grid;
    for (auto &node : grid.nodes) {
        for (std::size_t c = 0; c < 3; ++c) // beyond what a byte holds on either side
            node[c] = static_cast<std::int16_t>(static_cast<int>(random() % 24'000) - 4'000);
    }
    std::vector<Pixel> colours;
    for (unsigned i = 0; i < 256; ++i) {
        const auto value = static_cast<std::uint8_t>(i);
        colours.push_back({value, value, value, 7}); // ties
        colours.push_back({value, value, 0, 255});
        colours.push_back({255, value, value, 0});
        colours.push_back({value, 255, value, 128});
    }
    for (int i = 0; i < 20'003; ++i) { // no multiple of any vector's length
        const auto bits = random();
        colours.push_back(
            {std::uint8_t(bits), std::uint8_t(bits >> 8U), std::uint8_t(bits >> 16U), std::uint8_t(bits >> 24U)});
    }
    std::vector<Pixel> expected;
    for (const Pixel &colour : colours)
        expected.push_back(interpolated(grid, colour));
    for (const KernelSet *set : runnableKernelSets()) {
        useKernelSet(*set);
        std::vector<Pixel> found = colours;
        interpolateColours(reinterpret_cast<std::byte *>(found.data()), found.size(), grid);
        EXPECT_EQ(found, expected) << set->instructionSet;
    }
}

TEST_F(EveryProcessor, picksTheColumnsNamedAtAnySpacing)
{
    constexpr std::uint32_t kWidth = 50;
    std::vector<std::uint32_t> row(kWidth);
    for (std::uint32_t x = 0; x < kWidth; ++x)
        row[x] = 1000 + x;
    for (const KernelSet *set : runnableKernelSets()) {
        useKernelSet(*set);
        for (const double spacing : {0.1, 0.3, 0.9, 1.0, 1.1, 2.5, 9.0}) {
            std::vector<std::uint32_t> columns;
            for (double x = 0; x < kWidth; x += spacing)
                columns.push_back(static_cast<std::uint32_t>(x));
            std::vector<std::uint32_t> picked(columns.size() + 1, 7);
            pickPixels(row.data(), kWidth, columns.data(), columns.size(), picked.data());
            for (std::size_t i = 0; i < columns.size(); ++i)
                ASSERT_EQ(picked[i], 1000 + columns[i]) << spacing << ", " << i;
            ASSERT_EQ(picked.back(), 7U) << "nothing is written behind the last";
        }
    }
}

} // namespace
} // namespace tallowmere
