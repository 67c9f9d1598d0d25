// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/codecs/PngCodec.h"

#include "KeepingSink.h"
#include "Pictures.h"

#include <gtest/gtest.h>

#include <zlib.h>

#include <algorithm>
#include <string>

namespace tallowmere {

namespace {

std::optional<DecodeFailure> decode(const Bytes &png, KeepingSink &sink, const DecodeLimits &limits = {})
{
    return PngCodec().decode(png, limits, sink);
}

unsigned noise(std::uint32_t x, std::uint32_t y, unsigned channel)
{
    return ((x * 73'856'093U) ^ (y * 19'349'663U) ^ (channel * 83'492'791U)) >> 4;
}

PngRecipe noisy(int colourType, int depth, bool interlaced = false)
{
    const unsigned mask = (1U << depth) - 1;
    PngRecipe recipe{.size = {37, 29}, .depth = depth, .colourType = colourType, .interlaced = interlaced};
    recipe.paint = [mask](std::uint32_t x, std::uint32_t y) {
        return std::array{noise(x, y, 0) & mask, noise(x, y, 1) & mask, noise(x, y, 2) & mask, noise(x, y, 3) & mask};
    };
    for (unsigned i = 0; colourType == 3 && i <= mask; ++i)
        recipe.palette.push_back({static_cast<std::uint8_t>(i * 7), static_cast<std::uint8_t>(i * 5 + 1),
                                  static_cast<std::uint8_t>(255 - i)});
    return recipe;
}

/// What the picture of @p recipe shows at x, y: B, G, R, A of 8 bits.
std::array<int, 4> expectedPixel(const PngRecipe &recipe, std::uint32_t x, std::uint32_t y)
{
    const auto stored = recipe.paint(x, y);
    const unsigned most = (1U << recipe.depth) - 1;
    const auto channel = [&](std::size_t k) { return static_cast<int>((stored[k] * 255 + most / 2) / most); };
    switch (recipe.colourType) {
    case 0:
        return {channel(0), channel(0), channel(0), 255};
    case 2:
        return {channel(2), channel(1), channel(0), 255};
    case 3: {
        const auto &entry = recipe.palette.at(stored[0]);
        const int alpha = stored[0] < recipe.paletteAlpha.size() ? recipe.paletteAlpha[stored[0]] : 255;
        return {entry[2], entry[1], entry[0], alpha};
    }
    case 4:
        return {channel(0), channel(0), channel(0), channel(1)};
    default:
        return {channel(2), channel(1), channel(0), channel(3)};
    }
}

void expectPicture(const PngRecipe &recipe, const DecodeLimits &limits = {})
{
    KeepingSink sink;
    ASSERT_FALSE(decode(makePng(recipe), sink, limits));
    ASSERT_EQ(sink.rowCount(), recipe.size.height);
    for (std::uint32_t y = 0; y < recipe.size.height; ++y) {
        for (std::uint32_t x = 0; x < recipe.size.width; ++x)
            ASSERT_EQ(sink.pixel(x, y), expectedPixel(recipe, x, y)) << x << ", " << y;
    }
}

struct Kind
{
    const char *name;
    int colourType;
    int depth;
};

class PngKinds : public testing::TestWithParam<Kind>
{};

TEST_P(PngKinds, areReadExactly)
{
    expectPicture(noisy(GetParam().colourType, GetParam().depth));
}

TEST_P(PngKinds, areReadExactlyWhenInterlaced)
{
    expectPicture(noisy(GetParam().colourType, GetParam().depth, true));
}

TEST_P(PngKinds, areReadExactlyRowByRow)
{
    DecodeLimits limits; // room for the picture and libpng's rows, but not to inflate all of it at once
    limits.maxWorkingBytes = 37 * 29 * 4 + (1 << 22) + 64;
    expectPicture(noisy(GetParam().colourType, GetParam().depth), limits);
}

INSTANTIATE_TEST_SUITE_P(All, PngKinds,
                         testing::Values(Kind{"grey1", 0, 1}, Kind{"grey2", 0, 2}, Kind{"grey4", 0, 4},
                                         Kind{"grey8", 0, 8}, Kind{"grey16", 0, 16}, Kind{"rgb8", 2, 8},
                                         Kind{"rgb16", 2, 16}, Kind{"palette1", 3, 1}, Kind{"palette2", 3, 2},
                                         Kind{"palette4", 3, 4}, Kind{"palette8", 3, 8}, Kind{"greyAlpha8", 4, 8},
                                         Kind{"greyAlpha16", 4, 16}, Kind{"rgba8", 6, 8}, Kind{"rgba16", 6, 16}),
                         [](const auto &kind) { return std::string(kind.param.name); });

TEST(PngCodec, alphaIsThatOfTheColourTypeOrOfTrns)
{
    const auto hasAlpha = [](const Bytes &png) {
        KeepingSink sink;
        EXPECT_FALSE(decode(png, sink));
        return sink.layout().hasAlpha;
    };
    EXPECT_FALSE(hasAlpha(makePng(noisy(2, 8))));
    EXPECT_TRUE(hasAlpha(makePng(noisy(6, 8))));
    EXPECT_TRUE(hasAlpha(makePng(noisy(4, 8))));
    EXPECT_FALSE(hasAlpha(makePng(noisy(3, 8))));
    PngRecipe palette = noisy(3, 8);
    palette.paletteAlpha = {0, 100, 200};
    EXPECT_TRUE(hasAlpha(makePng(palette)));
    expectPicture(palette);
}

TEST(PngCodec, aColourNamedByTrnsIsTransparent)
{
    PngRecipe recipe{.size = {2, 1}};
    recipe.paint = [](std::uint32_t x, std::uint32_t) { return std::array{10U, 20U, 30U + x, 0U}; };
    const std::array<std::byte, 6> key{{{}, std::byte{10}, {}, std::byte{20}, {}, std::byte{30}}};
    KeepingSink sink;
    ASSERT_FALSE(decode(withChunkBefore(makePng(recipe), "IDAT", pngChunk("tRNS", key)), sink));
    EXPECT_TRUE(sink.layout().hasAlpha);
    EXPECT_EQ(sink.pixel(0, 0), (std::array{30, 20, 10, 0}));
    EXPECT_EQ(sink.pixel(1, 0), (std::array{31, 20, 10, 255}));
}

TEST(PngCodec, aPaletteIndexPastTheEndIsBlack)
{
    for (const bool interlaced : {false, true}) {
        PngRecipe recipe{.size = {1, 1}, .colourType = 3, .interlaced = interlaced, .palette = {{9, 9, 9}}};
        recipe.paint = [](auto, auto) { return std::array{0U, 0U, 0U, 0U}; };
        Bytes png = makePng(recipe);
        recipe.palette = {{9, 9, 9}, {8, 8, 8}};
        recipe.paint = [](auto, auto) { return std::array{1U, 0U, 0U, 0U}; };
        const Bytes other = makePng(recipe); // its pixel points at an entry that the first doesn't have
        const auto pixels = std::span(other).subspan(pngDataOffset(other, "IDAT") - 8);
        png = joined({std::span(png).first(pngDataOffset(png, "IDAT") - 8), pixels});
        KeepingSink sink;
        ASSERT_FALSE(decode(png, sink));
        EXPECT_EQ(sink.pixel(0, 0), (std::array{0, 0, 0, 255}));
    }
}

TEST(PngCodec, orientationIsFoundBeforeAndBehindThePixels)
{
    const Bytes exif = pngChunk("eXIf", tiffWithOrientation(6));
    for (const char *before : {"IDAT", "IEND"}) {
        KeepingSink sink;
        ASSERT_FALSE(decode(withChunkBefore(makePng(noisy(2, 8)), before, exif), sink));
        EXPECT_EQ(sink.layout().orientation, Orientation::rotated90Clockwise) << before;
    }
}

Bytes damaged(Bytes png, std::size_t offset)
{
    png.at(offset) ^= std::byte{0x55};
    return png;
}

TEST(PngCodec, aWrongChecksumIsForgiven)
{
    for (const bool interlaced : {false, true}) {
        const Bytes png = makePng(noisy(2, 8, interlaced));
        const std::size_t end = pngDataOffset(png, "IEND") - 8;
        KeepingSink sink;
        EXPECT_FALSE(decode(damaged(png, end - 1), sink)); // of the chunk
        EXPECT_FALSE(decode(damaged(png, end - 5), sink)); // of the stream
        EXPECT_EQ(sink.rowCount(), 2 * 29U);
    }
}

TEST(PngCodec, aTruncatedOneShowsTheRowsThereAre)
{
    const Bytes png = makePng(noisy(2, 8));
    KeepingSink all;
    ASSERT_FALSE(decode(png, all));
    KeepingSink half;
    ASSERT_FALSE(decode(Bytes(png.begin(), png.begin() + static_cast<std::ptrdiff_t>(png.size() / 2)), half));
    EXPECT_GT(half.rowCount(), 4U);
    EXPECT_LT(half.rowCount(), 25U);
    EXPECT_TRUE(std::equal(half.rows().begin(), half.rows().end(), all.rows().begin()));
}

TEST(PngCodec, aTruncatedInterlacedOneShowsTheWholeCoarsely)
{
    PngRecipe recipe = noisy(2, 8, true);
    recipe.size = {64, 64};
    recipe.paint = [](std::uint32_t x, std::uint32_t y) { return std::array{noise(x, y, 0) & 127U, 200U, 100U, 0U}; };
    const Bytes png = makePng(recipe);
    KeepingSink sink;
    ASSERT_FALSE(decode(Bytes(png.begin(), png.begin() + static_cast<std::ptrdiff_t>(png.size() / 2)), sink));
    EXPECT_EQ(sink.rowCount(), 64U);
    EXPECT_EQ(sink.pixel(63, 63)[1], 200);
}

TEST(PngCodec, everyTruncationEndsWell)
{
    for (const bool interlaced : {false, true}) {
        const Bytes png = makePng(noisy(6, 8, interlaced));
        for (std::size_t length = 8; length < png.size(); length += 11) {
            KeepingSink sink;
            const auto failure = decode(Bytes(png.begin(), png.begin() + static_cast<std::ptrdiff_t>(length)), sink);
            EXPECT_EQ(failure.has_value(), sink.rowCount() == 0) << length;
        }
    }
}

/// A grey picture of 4 x 3 whose rows are as given, each with its filter byte before it.
Bytes pngOfRows(std::initializer_list<std::array<std::uint8_t, 5>> rows)
{
    std::vector<Bytef> filtered;
    for (const auto &row : rows)
        filtered.insert(filtered.end(), row.begin(), row.end());
    uLongf length = ::compressBound(filtered.size());
    Bytes deflated(length);
    ::compress(reinterpret_cast<Bytef *>(deflated.data()), &length, filtered.data(), filtered.size());
    deflated.resize(length);
    const Bytes frame = makePng({.size = {4, 3}, .colourType = 0});
    const std::size_t pixels = pngDataOffset(frame, "IDAT") - 8;
    return joined({std::span(frame).first(pixels), pngChunk("IDAT", deflated), pngChunk("IEND", {})});
}

TEST(PngCodec, anUnknownFilterEndsThePicture)
{
    KeepingSink sink;
    EXPECT_FALSE(decode(pngOfRows({{0, 1, 2, 3, 4}, {2, 1, 1, 1, 1}, {5, 0, 0, 0, 0}}), sink));
    EXPECT_EQ(sink.rowCount(), 2U);
    EXPECT_EQ(sink.pixel(3, 1), (std::array{5, 5, 5, 255}));
    KeepingSink none;
    EXPECT_EQ(decode(pngOfRows({{5, 1, 2, 3, 4}, {0, 1, 1, 1, 1}, {0, 0, 0, 0, 0}}), none), DecodeFailure::corrupt);
}

TEST(PngCodec, theFirstRowsNeighbourAboveIsZero)
{
    KeepingSink sink;
    ASSERT_FALSE(decode(pngOfRows({{4, 10, 1, 1, 1}, {3, 20, 0, 0, 0}, {1, 1, 1, 1, 255}}), sink));
    EXPECT_EQ(sink.pixel(3, 0)[0], 13);
    EXPECT_EQ(sink.pixel(0, 1)[0], 25);
    EXPECT_EQ(sink.pixel(1, 1)[0], 18);
    EXPECT_EQ(sink.pixel(3, 2)[0], 2);
}

TEST(PngCodec, aWholeStreamThatIsTooShortFails)
{
    for (const bool interlaced : {false, true}) {
        const PngRecipe recipe = noisy(2, 8, interlaced);
        KeepingSink sink;
        EXPECT_EQ(decode(withPngSize(makePng(recipe), {37, 40}), sink), DecodeFailure::corrupt);
    }
}

TEST(PngCodec, aHeaderThatPromisesMoreThanTheFileHoldsIsRefused)
{
    for (const bool interlaced : {false, true}) {
        KeepingSink sink;
        const Bytes png = makePng({.interlaced = interlaced});
        EXPECT_EQ(decode(withPngSize(png, {20'000, 20'000}), sink), DecodeFailure::corrupt);
        EXPECT_EQ(decode(withPngSize(png, {60'000, 60'000}), sink), DecodeFailure::tooLarge);
        EXPECT_EQ(decode(withPngSize(png, {0x8000'0000U, 1}), sink), DecodeFailure::tooLarge);
        EXPECT_EQ(decode(withPngSize(png, {0, 30}), sink), DecodeFailure::corrupt);
    }
}

TEST(PngCodec, anInterlacedPictureMustFitTheWorkingMemory)
{
    DecodeLimits limits;
    limits.maxSide = 100;
    limits.maxWorkingBytes = 5 << 20;
    const PixelSize size{1000, 1000};
    KeepingSink sink;
    EXPECT_EQ(decode(makePng({.size = size, .interlaced = true}), sink, limits), DecodeFailure::tooLarge);
    EXPECT_FALSE(decode(makePng({.size = size}), sink, limits));
}

TEST(PngCodec, aHugeTextCostsNothing)
{
    const Bytes text(20 << 20, std::byte{'x'});
    KeepingSink sink;
    EXPECT_FALSE(decode(withChunkBefore(makePng(noisy(2, 8)), "IDAT", pngChunk("tEXt", text)), sink));
}

TEST(PngCodec, anAnimationShowsItsDefaultImage)
{
    const Bytes png = makePng(noisy(2, 8));
    const Bytes animated =
        withChunkBefore(withChunkBefore(png, "IDAT", pngChunk("acTL", Bytes(8, std::byte{1}))), "IEND",
                        joined({pngChunk("fcTL", Bytes(26)), pngChunk("fdAT", Bytes(40, std::byte{7}))}));
    KeepingSink still;
    KeepingSink sink;
    ASSERT_FALSE(decode(png, still));
    ASSERT_FALSE(decode(animated, sink));
    EXPECT_EQ(sink.rows(), still.rows());
}

TEST(PngCodec, stopsWhenCancelled)
{
    DecodeLimits limits;
    limits.cancelled = [] { return true; };
    for (const bool interlaced : {false, true}) {
        KeepingSink sink;
        EXPECT_EQ(decode(makePng({.interlaced = interlaced}), sink, limits), DecodeFailure::cancelled);
    }
}

TEST(PngCodec, stopsWhereTheSinkSaysNo)
{
    for (const bool interlaced : {false, true}) {
        KeepingSink sink;
        sink.stopAfter = 5;
        EXPECT_EQ(decode(makePng({.interlaced = interlaced}), sink), DecodeFailure::outOfMemory);
        EXPECT_EQ(sink.rowCount(), 5U);
    }
}

TEST(PngCodec, theStoredSizeComesFromTheHeaderAlone)
{
    const Bytes png = makePng({.size = {123, 45}});
    EXPECT_EQ(PngCodec().storedSize(std::span(png).first(33)), (PixelSize{123, 45}));
    EXPECT_FALSE(PngCodec().storedSize(std::span(png).first(20)));
}

} // namespace

} // namespace tallowmere
