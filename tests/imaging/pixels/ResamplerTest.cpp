// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/pixels/Resampler.h"

#include "tests/imaging/pixels/Pictures.h"

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <string>

namespace tallowmere {
namespace {

PixelBuffer reduced(const PixelBuffer &source, PixelSize to)
{
    PixelBuffer result = PixelBuffer::allocate(to);
    Resampler resampler(std::make_shared<const Reduction>(source.size(), to), 0, to.height);
    std::uint32_t done = 0;
    for (std::uint32_t y = resampler.nextDependsFrom(); y < resampler.endSourceRow(); ++y) {
        resampler.push(source.row(y));
        while (done < to.height && resampler.pull(result.row(done)))
            ++done;
    }
    EXPECT_EQ(done, to.height);
    EXPECT_TRUE(resampler.finished());
    return result;
}

struct Sizes
{
    PixelSize from;
    PixelSize to;
};

std::string nameOf(const Sizes &sizes)
{
    std::ostringstream name;
    name << sizes.from.width << "x" << sizes.from.height << "to" << sizes.to.width << "x" << sizes.to.height;
    return name.str();
}

class EverySize : public testing::TestWithParam<Sizes>
{};

TEST_P(EverySize, keepsAPlainColour)
{
    const auto [from, to] = GetParam();
    for (const Pixel &colour : {Pixel{50, 100, 200, 255}, Pixel{255, 255, 255, 255}, Pixel{1, 0, 17, 17}}) {
        const PixelBuffer result = reduced(makePlain(from, colour), to);
        EXPECT_EQ(allPixels(result), std::vector<Pixel>(to.pixels(), colour));
    }
}

INSTANTIATE_TEST_SUITE_P(Resampler, EverySize,
                         testing::Values(Sizes{{1, 1}, {1, 1}}, Sizes{{2, 2}, {1, 1}}, Sizes{{3, 5}, {2, 3}},
                                         Sizes{{17, 1}, {5, 1}}, Sizes{{1, 17}, {1, 5}}, Sizes{{65535, 1}, {4000, 1}},
                                         Sizes{{65535, 2}, {1, 1}}, Sizes{{1, 65535}, {1, 1}},
                                         Sizes{{1, 65535}, {1, 4000}}, Sizes{{101, 67}, {100, 66}},
                                         Sizes{{300, 200}, {299, 200}}, Sizes{{300, 200}, {300, 1}},
                                         Sizes{{300, 200}, {7, 200}}, Sizes{{640, 480}, {427, 320}},
                                         Sizes{{700, 500}, {31, 22}}, Sizes{{97, 89}, {97, 89}},
                                         Sizes{{259, 3}, {129, 3}}),
                         [](const auto &row) { return nameOf(row.param); });

TEST(Resampler, copiesAtItsOwnSize)
{
    const PixelBuffer source = makePixels({61, 43}, distinct);
    EXPECT_EQ(allPixels(reduced(source, source.size())), allPixels(source));
}

TEST(Resampler, turnsACheckerOfSinglePixelsIntoGrey)
{
    const PixelBuffer source = makePixels({400, 300}, [](auto x, auto y) {
        const auto value = static_cast<std::uint8_t>((x + y) % 2 * 255);
        return Pixel{value, value, value, 255};
    });
    for (const PixelSize to : {PixelSize{200, 150}, PixelSize{267, 200}, PixelSize{133, 100}, PixelSize{57, 43}}) {
        const PixelBuffer result = reduced(source, to);
        for (std::uint32_t y = 2; y + 2 < to.height; ++y) {
            for (std::uint32_t x = 2; x + 2 < to.width; ++x)
                ASSERT_NEAR(pixelAt(result, x, y)[0], 127.5, 4.0) << to << " at " << x << ", " << y;
        }
    }
}

TEST(Resampler, keepsTheMeanOfARandomPicture)
{
    std::uint32_t seed = 1;
    const PixelBuffer source = makePixels({513, 257}, [&](auto, auto) {
        seed = seed * 1664525 + 1013904223;
        const auto value = static_cast<std::uint8_t>(64 + (seed >> 25));
        return Pixel{value, value, value, 255};
    });
    const auto mean = [](const PixelBuffer &pixels) {
        double sum = 0;
        for (const Pixel &pixel : allPixels(pixels))
            sum += pixel[0];
        return sum / static_cast<double>(pixels.size().pixels());
    };
    for (const PixelSize to : {PixelSize{300, 150}, PixelSize{100, 50}, PixelSize{11, 5}})
        EXPECT_NEAR(mean(reduced(source, to)), mean(source), 1.0) << to;
}

TEST(Resampler, overshootsNeitherWrapRoundNorPassAlpha)
{
    const PixelBuffer source = makePixels({120, 90}, [](auto x, auto) {
        return x / 20 % 2 == 0 ? Pixel{255, 255, 255, 255} : Pixel{0, 0, 0, 255};
    });
    const PixelBuffer result = reduced(source, {79, 59});
    for (std::uint32_t x = 0; x < 79; ++x) {
        // A wrapped overshoot would be dark in a white bar.
        const double at = (x + 0.5) * 120.0 / 79.0;
        const double inBar = std::fmod(at, 20.0);
        if (inBar > 5.0 && inBar < 15.0) {
            EXPECT_NEAR(pixelAt(result, x, 30)[0], std::fmod(at, 40.0) < 20.0 ? 255 : 0, 8) << x;
        }
        EXPECT_EQ(pixelAt(result, x, 30)[3], 255);
    }
}

TEST(Resampler, leavesColoursAtMostTheirAlpha)
{
    std::uint32_t seed = 7;
    const PixelBuffer source = makePixels({90, 90}, [&](auto, auto) {
        seed = seed * 1664525 + 1013904223;
        const auto alpha = static_cast<std::uint8_t>((seed >> 24) % 3 * 127);
        return Pixel{alpha, alpha, static_cast<std::uint8_t>(alpha / 2), alpha};
    });
    for (const Pixel &pixel : allPixels(reduced(source, {59, 41}))) {
        for (std::size_t c = 0; c < 3; ++c)
            ASSERT_LE(pixel[c], pixel[3]);
    }
}

TEST(Resampler, keepsSymmetry)
{
    const PixelBuffer source = makePixels({101, 55}, [](auto x, auto y) {
        const auto value = static_cast<std::uint8_t>(std::min(x, 100 - x) * 3 + std::min(y, 54 - y));
        return Pixel{value, value, value, 255};
    });
    const PixelBuffer result = reduced(source, {40, 21});
    for (std::uint32_t y = 0; y < 21; ++y) {
        for (std::uint32_t x = 0; x < 40; ++x) {
            EXPECT_NEAR(pixelAt(result, x, y)[0], pixelAt(result, 39 - x, y)[0], 1);
            EXPECT_NEAR(pixelAt(result, x, y)[0], pixelAt(result, x, 20 - y)[0], 1);
        }
    }
}

TEST(Resampler, makesPartsThatJoinWithoutASeam)
{
    const PixelBuffer source = makePixels({200, 180}, distinct);
    const PixelSize to{90, 83};
    const PixelBuffer whole = reduced(source, to);
    const auto reduction = std::make_shared<const Reduction>(source.size(), to);
    for (const auto &[first, end] : {std::pair{0U, 1U}, std::pair{20U, 60U}, std::pair{82U, 83U}}) {
        Resampler part(reduction, first, end);
        PixelBuffer row = PixelBuffer::allocate({to.width, 1});
        std::uint32_t done = first;
        for (std::uint32_t y = part.nextDependsFrom(); y < part.endSourceRow(); ++y) {
            part.push(source.row(y));
            while (part.pull(row.row(0)))
                EXPECT_EQ(std::memcmp(row.row(0), whole.row(done++), row.bytes()), 0);
        }
        EXPECT_EQ(done, end);
    }
}

TEST(Resampler, needsLittleMemoryForTheWidestPicture)
{
    EXPECT_LT(Reduction::workingBytes({65535, 16384}, {4000, 1000}), std::uint64_t{16} << 20);
    EXPECT_LT(Reduction::workingBytes({16384, 65535}, {1000, 4000}), std::uint64_t{16} << 20);
    EXPECT_LT(Reduction::workingBytes({65535, 16384}, {8, 2}), std::uint64_t{16} << 20);
}

TEST(Filter, hasWeightsThatSumToOneExactly)
{
    for (const auto &[from, to] : {std::pair{6000U, 4000U}, std::pair{65535U, 4000U}, std::pair{65535U, 1U},
                                   std::pair{4001U, 4000U}, std::pair{7U, 3U}, std::pair{5U, 5U}}) {
        for (const int bits : {8, 15}) {
            const Filter filter(from, to, bits);
            for (std::uint32_t i = 0; i < to; ++i) {
                std::int64_t sum = 0;
                for (std::uint32_t k = 0; k < filter.taps(); ++k)
                    sum += filter.weights(i)[k];
                ASSERT_EQ(sum, std::int64_t{1} << filter.shift()) << from << " to " << to << " at " << i;
                ASSERT_LE(filter.end(i), from);
                ASSERT_LT(filter.start(i), filter.end(i));
            }
        }
    }
}

} // namespace
} // namespace tallowmere
