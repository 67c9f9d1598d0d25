// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/codecs/WebpCodec.h"

#include "Corners.h"
#include "tests/imaging/codecs/KeepingSink.h"
#include "WebpPictures.h"

#include <gtest/gtest.h>

namespace tallowmere {
namespace {

constexpr PixelSize kSize{64, 48};

/// Red, green over blue, white; a quarter each.
std::array<std::uint8_t, 4> quarters(std::uint32_t x, std::uint32_t y)
{
    const bool right = x >= kSize.width / 2;
    const bool below = y >= kSize.height / 2;
    const auto level = [](bool on) { return static_cast<std::uint8_t>(on ? 255 : 0); };
    return {level(right == below), level(right), level(below), 255};
}

PaintFunction plain(std::array<std::uint8_t, 4> colour)
{
    return [=](std::uint32_t, std::uint32_t) { return colour; };
}

KeepingSink rowsOf(std::span<const std::byte> file, const DecodeLimits &limits = {})
{
    KeepingSink sink;
    EXPECT_FALSE(WebpCodec().decode(file, limits, sink));
    return sink;
}

TEST(WebpCodec, readsLossyAndLosslessPictures)
{
    for (const bool lossless : {false, true}) {
        const Bytes file = makeWebp(kSize, lossless, quarters);
        ASSERT_TRUE(WebpCodec().recognises(file));
        EXPECT_EQ(WebpCodec().storedSize(file), kSize);
        const auto result = decodeImage(file, {});
        EXPECT_EQ(cornersOf(result), "RGBW");
        EXPECT_FALSE(std::get<DecodedImage>(result).hasAlpha);
    }
}

TEST(WebpCodec, keepsStraightColoursUnderAlpha)
{
    for (const bool lossless : {false, true}) {
        const auto sink = rowsOf(makeWebp(kSize, lossless, plain({200, 100, 40, 128})));
        EXPECT_TRUE(sink.layout().hasAlpha);
        const auto pixel = sink.pixel(20, 20);
        EXPECT_NEAR(pixel[0], 40, 6);
        EXPECT_NEAR(pixel[1], 100, 6);
        EXPECT_NEAR(pixel[2], 200, 6);
        EXPECT_EQ(pixel[3], 128);
    }
}

TEST(WebpCodec, aFlagThatPromisesAlphaIsNotBelievedOverTheBitstream)
{
    const Bytes still = webpBitstream(makeWebp(kSize, true, quarters));
    const auto sink = rowsOf(riffFile({extendedHeader(kWebpAlpha, kSize), still}));
    EXPECT_FALSE(sink.layout().hasAlpha);
    EXPECT_EQ(sink.pixel(3, 3)[3], 255);
}

TEST(WebpCodec, anExifChunkTurnsThePictureWithAndWithoutItsPrefix)
{
    const Bytes still = webpBitstream(makeWebp(kSize, true, quarters));
    const char *const corners[] = {"RGBW", "GRWB", "WBGR", "BWRG", "RBGW", "BRWG", "WGBR", "GWRB"};
    for (unsigned orientation = 1; orientation <= 8; ++orientation) {
        for (const Bytes &exif : {exifWithOrientation(orientation), tiffWithOrientation(orientation)}) {
            const Bytes file = riffFile({extendedHeader(kWebpExif, kSize), still, riffChunk("EXIF", exif)});
            EXPECT_EQ(cornersOf(decodeImage(file, {})), corners[orientation - 1]) << orientation;
        }
    }
}

TEST(WebpCodec, theProfileIsHandedOnUnlessItIsAbsurd)
{
    const Bytes still = webpBitstream(makeWebp(kSize, true, quarters));
    const auto profileOf = [&](std::size_t bytes) {
        const Bytes profile(bytes, std::byte{9});
        return rowsOf(riffFile({extendedHeader(kWebpProfile, kSize), riffChunk("ICCP", profile), still}))
            .layout()
            .colour.icc;
    };
    const auto small = profileOf(3000);
    ASSERT_TRUE(small);
    EXPECT_EQ(small->size(), 3000U);
    EXPECT_FALSE(profileOf(std::size_t{5} << 20));
}

TEST(WebpCodec, anAnimatedWebPLoadsItsFirstFrame)
{
    const Bytes red = webpBitstream(makeWebp(kSize, true, plain({255, 0, 0, 255})));
    const Bytes green = webpBitstream(makeWebp(kSize, false, plain({0, 255, 0, 255})));
    const Bytes file = riffFile({extendedHeader(kWebpAnimation, kSize), animationHeader(),
                                 animationFrame(0, 0, kSize, red), animationFrame(0, 0, kSize, green)});
    const auto result = decodeImage(file, {});
    EXPECT_EQ(cornersOf(result), "RRRR");
    EXPECT_FALSE(std::get<DecodedImage>(result).hasAlpha);
    EXPECT_EQ(storedSize(file), kSize);
}

TEST(WebpCodec, aFirstFrameSmallerThanItsCanvasLeavesTheRestTransparent)
{
    constexpr PixelSize kFrame{20, 10};
    const Bytes red = webpBitstream(makeWebp(kFrame, true, plain({255, 0, 0, 255})));
    const Bytes file = riffFile(
        {extendedHeader(kWebpAnimation | kWebpAlpha, kSize), animationHeader(), animationFrame(6, 8, kFrame, red)});
    const auto sink = rowsOf(file);
    EXPECT_TRUE(sink.layout().hasAlpha);
    EXPECT_EQ(sink.layout().rows, kSize);
    ASSERT_EQ(sink.rowCount(), kSize.height);
    const std::array nothing{0, 0, 0, 0};
    const std::array opaqueRed{0, 0, 255, 255};
    EXPECT_EQ(sink.pixel(6, 7), nothing);
    EXPECT_EQ(sink.pixel(5, 8), nothing);
    EXPECT_EQ(sink.pixel(6, 8), opaqueRed);
    EXPECT_EQ(sink.pixel(25, 17), opaqueRed);
    EXPECT_EQ(sink.pixel(26, 17), nothing);
    EXPECT_EQ(sink.pixel(25, 18), nothing);
}

TEST(WebpCodec, aTruncatedFileGivesTheRowsThereAre)
{
    // Noise, so that the data is spread over the rows.
    const PaintFunction noise = [](std::uint32_t x, std::uint32_t y) {
        const std::uint32_t value = (x * 7919 + y * 104'729) * 2'654'435'761U;
        return std::array{static_cast<std::uint8_t>(value >> 8), static_cast<std::uint8_t>(value >> 16),
                          static_cast<std::uint8_t>(value >> 24), std::uint8_t{255}};
    };
    for (const bool lossless : {false, true}) {
        const Bytes whole = makeWebp({200, 200}, lossless, noise);
        const auto sink = rowsOf(std::span<const std::byte>(whole).first(whole.size() * 6 / 10));
        EXPECT_GT(sink.rowCount(), 20U);
        EXPECT_LT(sink.rowCount(), 200U);
    }
}

TEST(WebpCodec, everyLengthOfATruncatedFileEndsCleanly)
{
    const Bytes still = webpBitstream(makeWebp({24, 24}, false, plain({10, 200, 30, 120})));
    const Bytes whole =
        riffFile({extendedHeader(kWebpAlpha | kWebpExif, {24, 24}), still, riffChunk("EXIF", exifWithOrientation(6))});
    for (std::size_t length = 0; length < whole.size(); ++length) {
        KeepingSink sink;
        const auto part = std::span<const std::byte>(whole).first(length);
        static_cast<void>(WebpCodec().storedSize(part));
        const auto failure = WebpCodec().decode(part, {}, sink);
        EXPECT_EQ(failure.has_value(), sink.rowCount() == 0) << length;
    }
}

TEST(WebpCodec, aCanvasThatNoLimitAllowsIsRefused)
{
    const Bytes red = webpBitstream(makeWebp({2, 2}, true, plain({255, 0, 0, 255})));
    const Bytes file = riffFile(
        {extendedHeader(kWebpAnimation, {16'000'000, 200}), animationHeader(), animationFrame(0, 0, {2, 2}, red)});
    KeepingSink sink;
    EXPECT_EQ(WebpCodec().decode(file, {}, sink), DecodeFailure::tooLarge);
    EXPECT_EQ(sink.rowCount(), 0U);
}

TEST(WebpCodec, whatDoesNotFitInMemoryIsShrunkOnTheWay)
{
    const Bytes file = makeWebp({1200, 1000}, false, [](std::uint32_t x, std::uint32_t y) {
        return std::array<std::uint8_t, 4>{static_cast<std::uint8_t>(x < 600 ? 255 : 0),
                                           static_cast<std::uint8_t>(y < 500 ? 255 : 0), 0, 255};
    });
    DecodeLimits limits;
    limits.maxSide = 100;
    limits.maxWorkingBytes = std::size_t{4} << 20; // the whole picture would take 4.8 million
    const auto sink = rowsOf(file, limits);
    EXPECT_EQ(sink.layout().rows, (PixelSize{100, 83}));
    EXPECT_EQ(sink.layout().storedSize, (PixelSize{1200, 1000}));
    EXPECT_NEAR(sink.pixel(10, 10)[2], 255, 4);
    EXPECT_NEAR(sink.pixel(90, 70)[2], 0, 4);
    limits.maxWorkingBytes = std::size_t{1} << 20;
    KeepingSink none;
    EXPECT_EQ(WebpCodec().decode(file, limits, none), DecodeFailure::tooLarge);
}

TEST(WebpCodec, aCancelledDecodeSaysSo)
{
    DecodeLimits limits;
    limits.cancelled = [] { return true; };
    KeepingSink sink;
    EXPECT_EQ(WebpCodec().decode(makeWebp(kSize, true, quarters), limits, sink), DecodeFailure::cancelled);
}

TEST(WebpCodec, otherRiffFilesAreNotItsBusiness)
{
    EXPECT_FALSE(WebpCodec().recognises(riffChunk("RIFF", bytesOf("WAVEfmt "))));
    EXPECT_FALSE(WebpCodec().recognises(bytesOf("RIFF")));
}

} // namespace
} // namespace tallowmere
