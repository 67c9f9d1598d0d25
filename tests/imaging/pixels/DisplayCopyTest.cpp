// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/pixels/DisplayCopy.h"

#include "tests/imaging/pixels/Pictures.h"

#include <gtest/gtest.h>

namespace tallowmere {
namespace {

TEST(DisplayCopy, hasExactlyTheSizeAskedFor)
{
    const PixelBuffer image = makePlain({120, 80}, {1, 2, 3, 255});
    for (const PixelSize size : {PixelSize{120, 80}, PixelSize{119, 79}, PixelSize{60, 40}, PixelSize{1, 1},
                                 PixelSize{120, 1}, PixelSize{1, 80}, PixelSize{33, 71}}) {
        const PixelBuffer copy = makeDisplayCopy(image, size);
        EXPECT_EQ(copy.size(), size);
        EXPECT_EQ(allPixels(copy), std::vector<Pixel>(size.pixels(), Pixel{1, 2, 3, 255}));
    }
}

TEST(DisplayCopy, isNeverLargerThanItsImage)
{
    const PixelBuffer image = makePlain({12, 8}, {1, 2, 3, 255});
    EXPECT_TRUE(makeDisplayCopy(image, {13, 8}).isNull());
    EXPECT_TRUE(makeDisplayCopy(image, {12, 9}).isNull());
    EXPECT_TRUE(makeDisplayCopy(image, {0, 8}).isNull());
    EXPECT_TRUE(makeDisplayCopy(PixelBuffer(), {1, 1}).isNull());
}

TEST(DisplayCopy, atTheImagesOwnSizeIsTheImage)
{
    const PixelBuffer image = makePixels({57, 31}, distinct);
    EXPECT_EQ(allPixels(makeDisplayCopy(image, {57, 31})), allPixels(image));
}

TEST(DisplayCopy, isTheSameOnOneThreadAndTwo)
{
    // The right half alone is small enough for one thread; far from the cut both must agree.
    const auto colour = [](auto x, auto y) { return distinct(x % 251, y % 241); };
    const PixelBuffer large = makePixels({1000, 600}, colour);
    const PixelBuffer small = makePixels({500, 600}, [&](auto x, auto y) { return colour(x + 500, y); });
    const PixelBuffer wide = makeDisplayCopy(large, {500, 300});
    const PixelBuffer narrow = makeDisplayCopy(small, {250, 300});
    for (std::uint32_t y = 0; y < 300; ++y) {
        for (std::uint32_t x = 10; x < 250; ++x)
            ASSERT_EQ(pixelAt(wide, 250 + x, y), pixelAt(narrow, x, y));
    }
}

TEST(DisplayCopy, stopsWhenCancelled)
{
    const PixelBuffer small = makePlain({200, 200}, {1, 2, 3, 255});
    const PixelBuffer large = makePlain({1000, 1000}, {1, 2, 3, 255});
    EXPECT_TRUE(makeDisplayCopy(small, {100, 100}, [] { return true; }).isNull());
    EXPECT_TRUE(makeDisplayCopy(small, {200, 200}, [] { return true; }).isNull());
    EXPECT_FALSE(makeDisplayCopy(small, {100, 100}, [] { return false; }).isNull());
    EXPECT_FALSE(makeDisplayCopy(large, {100, 100}, [] { return false; }).isNull());
}

} // namespace
} // namespace tallowmere
