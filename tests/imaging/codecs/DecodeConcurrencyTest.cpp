// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/codecs/Decode.h"
#include "Pictures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <thread>

namespace tallowmere {

namespace {

Bytes pixelsOf(const Bytes &file)
{
    DecodeLimits limits;
    limits.maxSide = 150;
    const auto result = decodeImage(file, limits);
    const auto *image = std::get_if<DecodedImage>(&result);
    if (!image)
        return {};
    return {image->pixels.row(0), image->pixels.row(0) + image->pixels.bytes()};
}

TEST(DecodeConcurrency, manyThreadsGetWhatOneGets)
{
    const auto paint = [](std::uint32_t x, std::uint32_t y) {
        return std::array{static_cast<std::uint8_t>(x), static_cast<std::uint8_t>(y), static_cast<std::uint8_t>(x * y),
                          std::uint8_t{0}};
    };
    const auto paintPng = [](std::uint32_t x, std::uint32_t y) {
        return std::array{x & 255U, y & 255U, x * y & 255U, (x + y) & 255U};
    };
    const PixelSize size{400, 300};
    const std::vector<Bytes> files{makeJpeg({.size = size, .paint = paint}),
                                   makeJpeg({.size = size, .progressive = true, .paint = paint}),
                                   makeJpeg({.size = size, .components = 4, .adobe = true, .paint = paint}),
                                   makePng({.size = size, .colourType = 6, .paint = paintPng}),
                                   makePng({.size = size, .interlaced = true, .paint = paintPng})};
    std::vector<Bytes> expected;
    for (const Bytes &file : files)
        expected.push_back(pixelsOf(file));
    ASSERT_TRUE(std::none_of(expected.begin(), expected.end(), [](const Bytes &pixels) { return pixels.empty(); }));

    constexpr std::size_t kThreads = 8;
    std::array<bool, kThreads> equal{};
    {
        std::vector<std::jthread> threads;
        for (std::size_t thread = 0; thread < kThreads; ++thread) {
            threads.emplace_back([&, thread] {
                equal[thread] = true;
                for (std::size_t i = 0; i < files.size(); ++i) {
                    const std::size_t which = (i + thread) % files.size();
                    equal[thread] = equal[thread] && pixelsOf(files[which]) == expected[which];
                }
            });
        }
    }
    EXPECT_EQ(std::count(equal.begin(), equal.end(), true), static_cast<std::ptrdiff_t>(kThreads));
}

} // namespace

} // namespace tallowmere
