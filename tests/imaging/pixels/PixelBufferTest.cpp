// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/imaging/pixels/Pictures.h"

#include <gtest/gtest.h>

#include <utility>

namespace tallowmere {
namespace {

TEST(PixelBuffer, isZeroUntilWritten)
{
    const PixelBuffer pixels = PixelBuffer::allocate({33, 7});
    ASSERT_FALSE(pixels.isNull());
    EXPECT_EQ(pixels.rowBytes(), 132U);
    EXPECT_EQ(pixels.bytes(), 924U);
    EXPECT_EQ(allPixels(pixels), std::vector<Pixel>(33 * 7, Pixel{0, 0, 0, 0}));
}

TEST(PixelBuffer, hasNoRowsOfAnEmptySize)
{
    EXPECT_TRUE(PixelBuffer::allocate({0, 5}).isNull());
    EXPECT_TRUE(PixelBuffer::allocate({5, 0}).isNull());
}

TEST(PixelBuffer, isNullWhenTheKernelHasNoRoom)
{
    EXPECT_TRUE(PixelBuffer::allocate({0xffffffff, 0xffffffff}).isNull());
    EXPECT_TRUE(PixelBuffer::allocate({0x7fffffff, 0x3fffffff}).isNull());
}

TEST(PixelBuffer, movesItsPixels)
{
    PixelBuffer first = makePlain({4, 4}, {1, 2, 3, 4});
    PixelBuffer second = std::move(first);
    EXPECT_TRUE(first.isNull()); // NOLINT(bugprone-use-after-move): a moved-from buffer is promised to be null
    EXPECT_EQ(first.size(), PixelSize{});
    EXPECT_EQ(pixelAt(second, 3, 3), (Pixel{1, 2, 3, 4}));
    PixelBuffer third = makePlain({2, 2}, {9, 9, 9, 9});
    third = std::move(second);
    EXPECT_EQ(third.size(), (PixelSize{4, 4}));
    EXPECT_EQ(pixelAt(third, 0, 0), (Pixel{1, 2, 3, 4}));
}

} // namespace
} // namespace tallowmere
