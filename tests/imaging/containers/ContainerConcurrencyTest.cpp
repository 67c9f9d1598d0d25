// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "Corners.h"
#include "IsoFile.h"
#include "WebpPictures.h"

#include <gtest/gtest.h>

#include <thread>

namespace tallowmere {
namespace {

TEST(ContainerConcurrency, picturesOfAllFamiliesDecodeAtOnceFromTheFirstOn)
{
    // The module is loaded by whichever thread comes first, while the others already ask for it.
    const Bytes files[] = {fileOf(Coding::av1, {quadrants(Coding::av1)}).bytes(),
                           fileOf(Coding::hevc, {quadrants(Coding::hevc), halfAlpha(Coding::hevc)}).bytes(),
                           makeWebp({64, 64}, false,
                                    [](std::uint32_t x, std::uint32_t y) {
        const auto level = [](bool on) { return static_cast<std::uint8_t>(on ? 255 : 0); };
        return std::array{level((x >= 32) == (y >= 32)), level(x >= 32), level(y >= 32), std::uint8_t{255}};
                           })};
    constexpr std::size_t kThreads = 6;
    std::array<std::string, kThreads> found;
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < kThreads; ++i) {
        threads.emplace_back([&, i] {
            for (int round = 0; round < 4; ++round)
                found[i] += cornersOf(decodeImage(files[i % std::size(files)], {}));
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    for (std::size_t i = 0; i < kThreads; ++i) {
        // Premultiplied, the lower half of the HEIC picture is half as bright.
        EXPECT_EQ(found[i].substr(0, 2), "RG") << i;
        EXPECT_EQ(found[i],
                  found[i].substr(0, 4) + found[i].substr(0, 4) + found[i].substr(0, 4) + found[i].substr(0, 4));
    }
}

} // namespace
} // namespace tallowmere
