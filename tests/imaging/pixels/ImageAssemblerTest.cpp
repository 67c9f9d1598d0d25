// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/codecs/ImageAssembler.h"

#include "tests/imaging/pixels/Assembling.h"

#include <gtest/gtest.h>

#include <map>

namespace tallowmere {
namespace {

constexpr Pixel kBlack{0, 0, 0, 255};

TEST(ImageAssembler, writesOpaqueUprightRowsWhereTheyStay)
{
    const DecodeLimits limits;
    ImageAssembler assembler(limits);
    ASSERT_TRUE(assembler.begin(layoutOf({5, 3})));
    const std::byte *first = assembler.nextRow();
    deliver(assembler, {5, 3}, 3, distinct);
    const auto image = assembler.take();
    ASSERT_TRUE(image);
    EXPECT_EQ(image->pixels.row(0), first);
    EXPECT_EQ(allPixels(image->pixels), allPixels(makePixels({5, 3}, distinct)));
}

TEST(ImageAssembler, handsOnWhatTheLayoutSays)
{
    RowLayout layout = layoutOf({30, 20}, Orientation::upright, true);
    layout.storedSize = {60, 40};
    layout.colour.cicp = Cicp{12, 13, 0, true};
    const auto image = assemble(DecodeLimits{}, layout, distinct);
    ASSERT_TRUE(image);
    EXPECT_TRUE(image->hasAlpha);
    EXPECT_EQ(image->storedSize, (PixelSize{60, 40}));
    EXPECT_EQ(image->colour.cicp, (Cicp{12, 13, 0, true}));
}

TEST(ImageAssembler, turnsAllEightOrientationsUpright)
{
    // Stored: 1 2 3
    //         4 5 6
    const std::map<Orientation, std::vector<int>> expected{
        {Orientation::upright, {1, 2, 3, 4, 5, 6}},     {Orientation::mirroredHorizontally, {3, 2, 1, 6, 5, 4}},
        {Orientation::rotated180, {6, 5, 4, 3, 2, 1}},  {Orientation::mirroredVertically, {4, 5, 6, 1, 2, 3}},
        {Orientation::transposed, {1, 4, 2, 5, 3, 6}},  {Orientation::rotated90Clockwise, {4, 1, 5, 2, 6, 3}},
        {Orientation::transversed, {6, 3, 5, 2, 4, 1}}, {Orientation::rotated270Clockwise, {3, 6, 2, 5, 1, 4}},
    };
    for (const auto &[orientation, order] : expected) {
        const auto image = assemble(DecodeLimits{}, layoutOf({3, 2}, orientation), [](auto x, auto y) {
            return Pixel{static_cast<std::uint8_t>(y * 3 + x + 1), 0, 0, 255};
        });
        ASSERT_TRUE(image);
        EXPECT_EQ(image->pixels.size(), swapsSides(orientation) ? (PixelSize{2, 3}) : (PixelSize{3, 2}));
        std::vector<int> found;
        for (const Pixel &pixel : allPixels(image->pixels))
            found.push_back(pixel[0]);
        EXPECT_EQ(found, order) << int(orientation);
        EXPECT_EQ(image->storedSize, (PixelSize{3, 2}));
    }
}

/// Where a stored pixel of a picture of @p size ends up.
std::pair<std::uint32_t, std::uint32_t> placeOf(Orientation o, PixelSize size, std::uint32_t x, std::uint32_t y)
{
    const std::uint32_t right = size.width - 1 - x;
    const std::uint32_t bottom = size.height - 1 - y;
    switch (o) {
    case Orientation::upright:
        return {x, y};
    case Orientation::mirroredHorizontally:
        return {right, y};
    case Orientation::rotated180:
        return {right, bottom};
    case Orientation::mirroredVertically:
        return {x, bottom};
    case Orientation::transposed:
        return {y, x};
    case Orientation::rotated90Clockwise:
        return {bottom, x};
    case Orientation::transversed:
        return {bottom, right};
    case Orientation::rotated270Clockwise:
        return {y, right};
    }
    return {0, 0};
}

TEST(ImageAssembler, placesEveryPixelOfPicturesWiderAndHigherThanAGatheredBlock)
{
    for (const PixelSize size : {PixelSize{97, 71}, PixelSize{64, 64}, PixelSize{1, 130}, PixelSize{130, 1}}) {
        for (unsigned o = 1; o <= 8; ++o) {
            const Orientation orientation = orientationFromExif(o);
            const auto image = assemble(DecodeLimits{}, layoutOf(size, orientation), distinct);
            ASSERT_TRUE(image);
            for (std::uint32_t y = 0; y < size.height; ++y) {
                for (std::uint32_t x = 0; x < size.width; ++x) {
                    const auto [toX, toY] = placeOf(orientation, size, x, y);
                    ASSERT_EQ(pixelAt(image->pixels, toX, toY), distinct(x, y)) << size << " as " << o;
                }
            }
        }
    }
}

TEST(ImageAssembler, turnsShrunkPicturesAsItTurnsWholeOnes)
{
    const PixelSize size{90, 60};
    const auto upright = assemble(limitsOf(45), layoutOf(size), distinct);
    ASSERT_TRUE(upright);
    ASSERT_EQ(upright->pixels.size(), (PixelSize{45, 30}));
    for (unsigned o = 2; o <= 8; ++o) {
        const Orientation orientation = orientationFromExif(o);
        const auto turned = assemble(limitsOf(45), layoutOf(size, orientation), distinct);
        ASSERT_TRUE(turned);
        for (std::uint32_t y = 0; y < 30; ++y) {
            for (std::uint32_t x = 0; x < 45; ++x) {
                const auto [toX, toY] = placeOf(orientation, {45, 30}, x, y);
                ASSERT_EQ(pixelAt(turned->pixels, toX, toY), pixelAt(upright->pixels, x, y)) << o;
            }
        }
    }
}

TEST(ImageAssembler, premultipliesAlpha)
{
    const auto image = assemble(DecodeLimits{}, layoutOf({2, 1}, Orientation::upright, true), [](auto x, auto) {
        return x == 0 ? Pixel{200, 100, 50, 128} : Pixel{255, 255, 255, 0};
    });
    ASSERT_TRUE(image);
    EXPECT_EQ(pixelAt(image->pixels, 0, 0), (Pixel{100, 50, 25, 128}));
    EXPECT_EQ(pixelAt(image->pixels, 1, 0), (Pixel{0, 0, 0, 0}));
}

TEST(ImageAssembler, letsNoColourOfClearPixelsBleedIntoTheirNeighbours)
{
    // Blue next to clear red: no reduced pixel may be any red.
    const auto image = assemble(limitsOf(40), layoutOf({100, 60}, Orientation::upright, true), [](auto x, auto) {
        return x / 10 % 2 == 0 ? Pixel{255, 0, 0, 255} : Pixel{0, 0, 255, 0};
    });
    ASSERT_TRUE(image);
    for (const Pixel &pixel : allPixels(image->pixels)) {
        ASSERT_EQ(pixel[2], 0);
        ASSERT_EQ(pixel[0], pixel[3]);
    }
}

struct Fit
{
    PixelSize stored;
    Orientation orientation;
    std::uint32_t maxSide;
    PixelSize expected;
};

TEST(ImageAssembler, fitsTheLongerSideToTheLimitAndNeverEnlarges)
{
    const std::vector<Fit> table{
        {{600, 400}, Orientation::upright, 400, {400, 267}},
        {{400, 600}, Orientation::upright, 400, {267, 400}},
        {{600, 400}, Orientation::rotated90Clockwise, 400, {267, 400}},
        {{600, 400}, Orientation::upright, 600, {600, 400}},
        {{600, 400}, Orientation::upright, 4000, {600, 400}},
        {{3000, 1}, Orientation::upright, 100, {100, 1}},
        {{1, 3000}, Orientation::upright, 100, {1, 100}},
        {{1, 3000}, Orientation::transposed, 100, {100, 1}},
        {{65535, 1}, Orientation::upright, 4000, {4000, 1}},
        {{1, 65535}, Orientation::upright, 4000, {1, 4000}},
        {{65535, 3}, Orientation::rotated270Clockwise, 4000, {1, 4000}},
        {{7, 5}, Orientation::upright, 1, {1, 1}},
        {{1, 1}, Orientation::upright, 4000, {1, 1}},
    };
    for (const Fit &fit : table) {
        const auto image = assemble(limitsOf(fit.maxSide), layoutOf(fit.stored, fit.orientation), [](auto, auto) {
            return Pixel{50, 100, 200, 255};
        });
        ASSERT_TRUE(image) << fit.stored;
        EXPECT_EQ(image->pixels.size(), fit.expected);
        EXPECT_EQ(allPixels(image->pixels), std::vector<Pixel>(fit.expected.pixels(), Pixel{50, 100, 200, 255}));
    }
}

TEST(ImageAssembler, fitsTheStoredShapeWhenTheCodecShrankIt)
{
    // 6001 x 4003 fits as 400 x 267; from the codec's quarter, rounded up to 1501 x 1001, it must be no other.
    RowLayout layout = layoutOf({1501, 1001});
    layout.storedSize = {6001, 4003};
    const auto image = assemble(limitsOf(400), layout, distinct);
    ASSERT_TRUE(image);
    EXPECT_EQ(image->pixels.size(), (PixelSize{6001, 4003}).fittedTo(400));
}

TEST(ImageAssembler, takesRowsThatTheCodecHasShrunkToTheLimitAsTheyAre)
{
    RowLayout layout = layoutOf({400, 267});
    layout.storedSize = {800, 533};
    const auto image = assemble(limitsOf(400), layout, [](auto x, auto y) { return distinct(x % 256, y % 256); });
    ASSERT_TRUE(image);
    EXPECT_EQ(image->pixels.size(), (PixelSize{400, 267}));
    EXPECT_EQ(pixelAt(image->pixels, 399, 266), distinct(399 % 256, 266 % 256));
}

TEST(ImageAssembler, fitsCroppedOrTurnedRowsByTheirOwnShape)
{
    RowLayout turned = layoutOf({400, 600});
    turned.storedSize = {600, 400};
    EXPECT_EQ(assemble(limitsOf(300), turned, distinct)->pixels.size(), (PixelSize{200, 300}));
    RowLayout cropped = layoutOf({200, 200});
    cropped.storedSize = {600, 400};
    EXPECT_EQ(assemble(limitsOf(100), cropped, distinct)->pixels.size(), (PixelSize{100, 100}));
    EXPECT_EQ(assemble(limitsOf(300), cropped, distinct)->pixels.size(), (PixelSize{200, 200}));
}

TEST(ImageAssembler, refusesWhatExceedsALimit)
{
    const auto failureOf = [](const DecodeLimits &limits, const RowLayout &layout) -> std::optional<DecodeFailure> {
        ImageAssembler assembler(limits);
        if (assembler.begin(layout))
            return std::nullopt;
        EXPECT_FALSE(assembler.take());
        return assembler.failure();
    };
    DecodeLimits sides;
    sides.maxSourceSide = 100;
    EXPECT_EQ(failureOf(sides, layoutOf({101, 1})), DecodeFailure::tooLarge);
    EXPECT_EQ(failureOf(sides, layoutOf({1, 101})), DecodeFailure::tooLarge);
    EXPECT_EQ(failureOf(sides, layoutOf({100, 100})), std::nullopt);
    DecodeLimits count;
    count.maxSourcePixels = 1000;
    EXPECT_EQ(failureOf(count, layoutOf({101, 10})), DecodeFailure::tooLarge);
    EXPECT_EQ(failureOf(count, layoutOf({100, 10})), std::nullopt);
    DecodeLimits bytes;
    bytes.maxWorkingBytes = 4000;
    EXPECT_EQ(failureOf(bytes, layoutOf({1001, 1})), DecodeFailure::tooLarge);
    EXPECT_EQ(failureOf(bytes, layoutOf({1000, 1})), std::nullopt);
    EXPECT_EQ(failureOf(DecodeLimits{}, layoutOf({65536, 1})), DecodeFailure::tooLarge);
    EXPECT_EQ(failureOf(DecodeLimits{}, layoutOf({65535, 65535})), DecodeFailure::tooLarge);
    EXPECT_EQ(failureOf(DecodeLimits{}, layoutOf({0, 10})), DecodeFailure::corrupt);
}

TEST(ImageAssembler, countsWhatShrinkingAndTurningTakeAgainstTheLimit)
{
    DecodeLimits limits = limitsOf(1000);
    limits.maxWorkingBytes = 1000 * 667 * 4 + 1000;
    ImageAssembler shrinking(limits);
    EXPECT_FALSE(shrinking.begin(layoutOf({3000, 2000})));
    EXPECT_EQ(shrinking.failure(), DecodeFailure::tooLarge);
    ImageAssembler turning(limits);
    EXPECT_FALSE(turning.begin(layoutOf({1000, 667}, Orientation::transposed)));
    ImageAssembler whole(limits);
    EXPECT_TRUE(whole.begin(layoutOf({1000, 667})));
}

TEST(ImageAssembler, holdsTheLargestPicturesWithinTheDefaultLimit)
{
    const DecodeLimits limits;
    for (const PixelSize size : {PixelSize{30000, 30000}, PixelSize{65535, 16384}, PixelSize{16384, 65535}}) {
        ImageAssembler assembler(limits);
        EXPECT_TRUE(assembler.begin(layoutOf(size, Orientation::rotated90Clockwise, true))) << size;
    }
}

TEST(ImageAssembler, refusesMoreThanTheMachineHasAsOutOfMemory)
{
    DecodeLimits limits;
    limits.maxSide = limits.maxSourceSide = 0xffffffff;
    limits.maxSourcePixels = ~std::uint64_t{0};
    limits.maxWorkingBytes = ~std::size_t{0};
    ImageAssembler assembler(limits);
    EXPECT_FALSE(assembler.begin(layoutOf({0x7fffffff, 0x3fffffff})));
    EXPECT_EQ(assembler.failure(), DecodeFailure::outOfMemory);
}

TEST(ImageAssembler, leavesOpaqueMissingRowsBlack)
{
    const DecodeLimits limits;
    for (const Orientation orientation : {Orientation::upright, Orientation::rotated180}) {
        ImageAssembler assembler(limits);
        ASSERT_TRUE(assembler.begin(layoutOf({4, 50}, orientation)));
        deliver(assembler, {4, 50}, 20, [](auto, auto) { return Pixel{9, 9, 9, 255}; });
        const auto image = assembler.take();
        ASSERT_TRUE(image);
        for (std::uint32_t y = 0; y < 50; ++y) {
            const bool came = orientation == Orientation::upright ? y < 20 : y >= 30;
            EXPECT_EQ(pixelAt(image->pixels, 1, y), came ? (Pixel{9, 9, 9, 255}) : kBlack) << y;
        }
    }
}

TEST(ImageAssembler, leavesMissingColumnsOfATurnedPictureBlack)
{
    const DecodeLimits limits;
    ImageAssembler assembler(limits);
    ASSERT_TRUE(assembler.begin(layoutOf({4, 50}, Orientation::rotated90Clockwise)));
    deliver(assembler, {4, 50}, 35, [](auto, auto) { return Pixel{9, 9, 9, 255}; });
    const auto image = assembler.take();
    ASSERT_TRUE(image);
    for (std::uint32_t x = 0; x < 50; ++x)
        EXPECT_EQ(pixelAt(image->pixels, x, 2), x >= 15 ? (Pixel{9, 9, 9, 255}) : kBlack) << x;
}

TEST(ImageAssembler, leavesMissingRowsOfAPictureWithAlphaTransparent)
{
    const DecodeLimits limits;
    for (const std::uint32_t maxSide : {100U, 40U}) {
        const DecodeLimits own = limitsOf(maxSide);
        for (const Orientation orientation : {Orientation::upright, Orientation::transposed}) {
            ImageAssembler assembler(own);
            ASSERT_TRUE(assembler.begin(layoutOf({100, 100}, orientation, true)));
            deliver(assembler, {100, 100}, 50, [](auto, auto) { return Pixel{9, 9, 9, 255}; });
            const auto image = assembler.take();
            ASSERT_TRUE(image);
            EXPECT_EQ(pixelAt(image->pixels, 0, 0), (Pixel{9, 9, 9, 255}));
            EXPECT_EQ(pixelAt(image->pixels, maxSide - 1, maxSide - 1), (Pixel{0, 0, 0, 0}));
        }
    }
}

TEST(ImageAssembler, shrinksATruncatedPictureDownToItsLastRow)
{
    for (const PixelSize size : {PixelSize{300, 200}, PixelSize{1500, 1000}}) { // one thread, and two
        const DecodeLimits limits = limitsOf(size.width / 3);
        ImageAssembler assembler(limits);
        ASSERT_TRUE(assembler.begin(layoutOf(size)));
        deliver(assembler, size, size.height / 2, [](auto, auto) { return Pixel{200, 200, 200, 255}; });
        const auto image = assembler.take();
        ASSERT_TRUE(image);
        const std::uint32_t edge = image->pixels.size().height / 2;
        EXPECT_EQ(pixelAt(image->pixels, 5, edge - 5), (Pixel{200, 200, 200, 255}));
        EXPECT_GE(pixelAt(image->pixels, 5, edge - 2)[0], 180);
        EXPECT_EQ(pixelAt(image->pixels, 5, edge + 5), kBlack);
        for (const Pixel &pixel : allPixels(image->pixels))
            ASSERT_EQ(pixel[3], 255);
    }
}

TEST(ImageAssembler, hasNoPictureWithoutARow)
{
    const DecodeLimits limits;
    ImageAssembler unused(limits);
    EXPECT_FALSE(unused.take());
    ImageAssembler begun(limits);
    ASSERT_TRUE(begun.begin(layoutOf({10, 10})));
    EXPECT_FALSE(begun.take());
}

TEST(ImageAssembler, stopsWhenCancelled)
{
    for (const PixelSize size : {PixelSize{20, 500}, PixelSize{1000, 1000}}) {
        DecodeLimits limits = limitsOf(500);
        int asked = 0;
        limits.cancelled = [&] { return ++asked == 3; };
        ImageAssembler assembler(limits);
        ASSERT_TRUE(assembler.begin(layoutOf(size)));
        std::uint32_t rows = 0;
        do {
            std::memset(assembler.nextRow(), 255, std::size_t{size.width} * 4);
        } while (++rows < size.height && assembler.rowDone());
        EXPECT_LT(rows, size.height);
        EXPECT_EQ(assembler.failure(), DecodeFailure::cancelled);
        EXPECT_FALSE(assembler.take());
    }
}

TEST(ImageAssembler, mayBeDroppedWhileItsSecondThreadWorks)
{
    const DecodeLimits limits = limitsOf(100);
    for (const std::uint32_t rows : {0U, 1U, 100U, 999U}) {
        ImageAssembler assembler(limits);
        ASSERT_TRUE(assembler.begin(layoutOf({1000, 1000})));
        deliver(assembler, {1000, 1000}, rows, distinct);
    }
}

TEST(ImageAssembler, shrinksOnTwoThreadsAsOnOne)
{
    // The same columns, once in a picture large enough for a second thread, once in a narrow one.
    const auto striped = [](auto, auto y) { return Pixel{static_cast<std::uint8_t>(y * 5), 0, 0, 255}; };
    RowLayout wide = layoutOf({1000, 900});
    RowLayout narrow = layoutOf({10, 900});
    const auto large = assemble(limitsOf(500), wide, striped);
    const auto small = assemble(limitsOf(450), narrow, striped);
    ASSERT_TRUE(large && small);
    ASSERT_EQ(large->pixels.size().height, small->pixels.size().height);
    for (std::uint32_t y = 0; y < 450; ++y)
        ASSERT_EQ(pixelAt(large->pixels, 300, y), pixelAt(small->pixels, 2, y)) << y;
}

} // namespace
} // namespace tallowmere
