// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/pixels/DisplayCopy.h"
#include "imaging/pixels/RowPipe.h"
#include "imaging/pixels/ScreenColours.h"
#include "tests/imaging/pixels/Assembling.h"
#include "tests/imaging/pixels/Profiles.h"

#include <gtest/gtest.h>

#include <thread>

namespace tallowmere {
namespace {

constexpr int kThreads = 4;

template <typename Work>
void runAtOnce(Work work)
{
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i)
        threads.emplace_back([&work, i] { work(i); });
    for (std::thread &thread : threads)
        thread.join();
}

TEST(PixelsConcurrency, assemblersDoNotDisturbEachOther)
{
    const PixelSize size{900, 700}; // each has a second thread of its own
    std::array<std::vector<Pixel>, kThreads> results;
    runAtOnce([&](int i) {
        const auto image =
            assemble(limitsOf(300), layoutOf(size, orientationFromExif(unsigned(i) % 2 * 5 + 1)), [&](auto, auto) {
                return Pixel{std::uint8_t(i * 10), 100, 200, 255};
            });
        if (image)
            results[std::size_t(i)] = allPixels(image->pixels);
    });
    for (int i = 0; i < kThreads; ++i)
        EXPECT_EQ(results[std::size_t(i)], std::vector<Pixel>(300 * 233, Pixel{std::uint8_t(i * 10), 100, 200, 255}));
}

TEST(PixelsConcurrency, displayCopiesOfOneImageAreTheSame)
{
    const PixelBuffer image = makePixels({800, 600}, [](auto x, auto y) { return distinct(x % 256, y % 256); });
    const std::vector<Pixel> expected = allPixels(makeDisplayCopy(image, {400, 300}));
    std::array<std::vector<Pixel>, kThreads> results;
    runAtOnce([&](int i) { results[std::size_t(i)] = allPixels(makeDisplayCopy(image, {400, 300})); });
    for (const auto &result : results)
        EXPECT_EQ(result, expected);
}

TEST(PixelsConcurrency, picturesOfOneProfileAreConvertedSideBySide)
{
    std::array<std::vector<Pixel>, kThreads> results;
    runAtOnce([&](int i) {
        DecodedImage image;
        image.pixels = makePixels({800, 600}, [](auto x, auto y) { return distinct(x % 256, y % 256); });
        image.colour.icc = displayP3Profile();
        EXPECT_TRUE(convertToScreenColours(image));
        results[std::size_t(i)] = allPixels(image.pixels);
    });
    for (const auto &result : results)
        EXPECT_EQ(result, results[0]);
}

TEST(PixelsConcurrency, conversionsAreMadeAndForgottenByManyThreads)
{
    runAtOnce([&](int i) {
        for (int k = 0; k < 12; ++k) { // more than are remembered
            DecodedImage own;
            own.pixels = makePlain({16, 16}, {60, 120, 180, 255});
            own.colour.gamma = GammaAndPrimaries{0.5 + 0.02 * ((i + k) % 12), {}};
            EXPECT_TRUE(convertToScreenColours(own));
        }
    });
}

TEST(PixelsConcurrency, aCancelledCopyEndsBothItsThreads)
{
    const PixelBuffer image = makePlain({1200, 900}, {1, 2, 3, 255});
    for (int stopAt = 1; stopAt < 20; stopAt += 6) {
        int asked = 0;
        const PixelBuffer copy = makeDisplayCopy(image, {600, 450}, [&] { return ++asked >= stopAt; });
        // On a loaded machine the other thread may have done all the work before this one is asked that often.
        EXPECT_TRUE(copy.isNull() || asked < stopAt);
    }
}

TEST(RowPipe, usesEveryRowInOrder)
{
    for (const std::size_t rowBytes : {std::size_t{4}, std::size_t{1000}, std::size_t{300'000}}) {
        std::vector<std::uint32_t> seen;
        RowPipe pipe(rowBytes, [&](std::byte *row) {
            std::uint32_t value;
            std::memcpy(&value, row, 4);
            seen.push_back(value);
        });
        for (std::uint32_t i = 0; i < 1500; ++i) {
            std::memcpy(pipe.nextRow(), &i, 4);
            pipe.rowDone();
        }
        pipe.finish();
        ASSERT_EQ(seen.size(), 1500U);
        for (std::uint32_t i = 0; i < 1500; ++i)
            ASSERT_EQ(seen[i], i);
    }
}

TEST(RowPipe, mayBeDroppedAtAnyTime)
{
    for (const int rows : {0, 1, 100, 5000}) {
        std::uint64_t sum = 0;
        RowPipe pipe(4096, [&](std::byte *row) { sum += static_cast<std::uint64_t>(row[0]); });
        for (int i = 0; i < rows; ++i) {
            pipe.nextRow()[0] = std::byte{1};
            pipe.rowDone();
        }
    }
}

TEST(RowPipe, ofNoRowsFinishes)
{
    RowPipe pipe(4096, [](std::byte *) { FAIL(); });
    pipe.finish();
}

} // namespace
} // namespace tallowmere
