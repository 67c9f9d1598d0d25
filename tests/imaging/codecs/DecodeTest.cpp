// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/codecs/Decode.h"

#include "Pictures.h"

#include <gtest/gtest.h>

#include <new>

namespace tallowmere {

namespace {

PixelSize decodedSize(const Bytes &file, const DecodeLimits &limits = {})
{
    const auto result = decodeImage(file, limits);
    const auto *image = std::get_if<DecodedImage>(&result);
    return image ? image->pixels.size() : PixelSize{};
}

std::optional<DecodeFailure> failureOf(const Bytes &file, const DecodeLimits &limits = {})
{
    const auto result = decodeImage(file, limits);
    const auto *failure = std::get_if<DecodeFailure>(&result);
    return failure ? std::optional(*failure) : std::nullopt;
}

TEST(DecodeImage, anEightThousandBySixThousandJpegIsShrunkToFourByThreeThousand)
{
    EXPECT_EQ(decodedSize(makeJpeg({.size = {8000, 6000}})), (PixelSize{4000, 3000}));
}

TEST(DecodeImage, anEightHundredBySixHundredPngStaysAsItIs)
{
    EXPECT_EQ(decodedSize(makePng({.size = {800, 600}})), (PixelSize{800, 600}));
}

TEST(DecodeImage, aJpegOfOrientationSixComesUpright)
{
    const Bytes jpeg = makeJpeg({.size = {6000, 4000}, .markers = {{1, exifWithOrientation(6)}}});
    const auto result = decodeImage(jpeg, {});
    const auto *image = std::get_if<DecodedImage>(&result);
    ASSERT_TRUE(image);
    EXPECT_EQ(image->pixels.size(), (PixelSize{2667, 4000}));
    EXPECT_EQ(image->storedSize, (PixelSize{6000, 4000}));
}

TEST(DecodeImage, orientationSixTurnsClockwise)
{
    // White on the left, black on the right; upright, white is on top.
    const Bytes jpeg =
        makeJpeg({.size = {64, 32}, .markers = {{1, exifWithOrientation(6)}}, .paint = [](std::uint32_t x, auto) {
                      const std::uint8_t grey = x < 32 ? 255 : 0;
                      return std::array{grey, grey, grey, grey};
                  }});
    const auto result = decodeImage(jpeg, {});
    const auto *image = std::get_if<DecodedImage>(&result);
    ASSERT_TRUE(image);
    EXPECT_EQ(image->pixels.size(), (PixelSize{32, 64}));
    EXPECT_GT(std::to_integer<int>(image->pixels.row(5)[40]), 240);
    EXPECT_LT(std::to_integer<int>(image->pixels.row(60)[40]), 15);
}

TEST(DecodeImage, textFailsWhateverItsName)
{
    EXPECT_EQ(failureOf(bytesOf("just some text")), DecodeFailure::unrecognised);
    EXPECT_EQ(failureOf({}), DecodeFailure::unrecognised);
}

TEST(DecodeImage, theLimitIsTheCallers)
{
    DecodeLimits limits;
    limits.maxSide = 100;
    EXPECT_EQ(decodedSize(makePng({.size = {300, 200}}), limits), (PixelSize{100, 67}));
    EXPECT_EQ(decodedSize(makeJpeg({.size = {200, 300}}), limits), (PixelSize{67, 100}));
}

TEST(DecodeImage, hasAlphaAndColourOfTheFile)
{
    const Bytes png =
        withChunkBefore(makePng({.colourType = 6}), "IDAT",
                        pngChunk("gAMA", Bytes{std::byte{0}, std::byte{1}, std::byte{0x86}, std::byte{0xA0}}));
    const auto result = decodeImage(png, {});
    const auto *image = std::get_if<DecodedImage>(&result);
    ASSERT_TRUE(image);
    EXPECT_TRUE(image->hasAlpha);
    EXPECT_TRUE(image->colour.gamma);
}

TEST(DecodeImage, cancellingEndsIt)
{
    DecodeLimits limits;
    limits.cancelled = [] { return true; };
    EXPECT_EQ(failureOf(makeJpeg({}), limits), DecodeFailure::cancelled);
    EXPECT_EQ(failureOf(makePng({}), limits), DecodeFailure::cancelled);
}

TEST(DecodeImage, anExceptionIsLackOfMemory)
{
    DecodeLimits limits;
    limits.cancelled = []() -> bool { throw std::bad_alloc(); };
    EXPECT_EQ(failureOf(makeJpeg({}), limits), DecodeFailure::outOfMemory);
    EXPECT_EQ(failureOf(makePng({}), limits), DecodeFailure::outOfMemory);
}

TEST(StoredSize, isBeforeOrientationAndLimit)
{
    EXPECT_EQ(storedSize(makeJpeg({.size = {600, 400}, .markers = {{1, exifWithOrientation(6)}}})),
              (PixelSize{600, 400}));
    EXPECT_EQ(storedSize(makePng({.size = {6000, 40}})), (PixelSize{6000, 40}));
    EXPECT_FALSE(storedSize(bytesOf("just some text")));
}

TEST(SizeOfScalable, isUprightAndOfTheOneKindThatGainsByIt)
{
    EXPECT_EQ(sizeOfScalable(makeJpeg({.size = {600, 400}})), (PixelSize{600, 400}));
    EXPECT_EQ(sizeOfScalable(makeJpeg({.size = {600, 400}, .markers = {{1, exifWithOrientation(6)}}})),
              (PixelSize{400, 600}));
    EXPECT_FALSE(sizeOfScalable(makeJpeg({.size = {600, 400}, .progressive = true})));
    EXPECT_FALSE(sizeOfScalable(makePng({.size = {6000, 40}})));
    EXPECT_FALSE(sizeOfScalable(bytesOf("just some text")));
    EXPECT_FALSE(sizeOfScalable(bytesOf("\xFF\xD8\xFF nothing of the kind")));
}

TEST(Codecs, eachKindIsRecognisedByOneAlone)
{
    for (const Bytes &file : {makeJpeg({}), makePng({})}) {
        int count = 0;
        for (const Codec *codec : codecs())
            count += codec->recognises(file) ? 1 : 0;
        EXPECT_EQ(count, 1);
        EXPECT_TRUE(codecFor(file));
    }
    EXPECT_FALSE(codecFor(bytesOf("just some text")));
}

} // namespace

} // namespace tallowmere
