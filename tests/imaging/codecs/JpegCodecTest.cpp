// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/codecs/JpegCodec.h"

#include "KeepingSink.h"
#include "Pictures.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace tallowmere {

namespace {

constexpr int kNear = 4; // of 255, for what quality 95 loses on even surfaces

std::optional<DecodeFailure> decode(const Bytes &jpeg, KeepingSink &sink, const DecodeLimits &limits = {})
{
    return JpegCodec().decode(jpeg, limits, sink);
}

DecodeLimits limitedTo(std::uint32_t side)
{
    DecodeLimits limits;
    limits.maxSide = side;
    return limits;
}

void expectNear(const std::array<int, 4> &found, const std::array<int, 4> &expected)
{
    for (std::size_t i = 0; i < found.size(); ++i)
        EXPECT_NEAR(found[i], expected[i], kNear) << "BGRA"[i];
}

std::array<std::uint8_t, 4> redAboveBlue(std::uint32_t, std::uint32_t y)
{
    return y < 32 ? std::array<std::uint8_t, 4>{220, 30, 20, 0} : std::array<std::uint8_t, 4>{20, 30, 220, 0};
}

TEST(JpegCodec, deliversOpaqueBgraRows)
{
    KeepingSink sink;
    ASSERT_FALSE(decode(makeJpeg({.size = {64, 64}, .paint = redAboveBlue}), sink));
    EXPECT_EQ(sink.rowCount(), 64U);
    EXPECT_FALSE(sink.layout().hasAlpha);
    expectNear(sink.pixel(10, 8), {20, 30, 220, 255});
    expectNear(sink.pixel(10, 56), {220, 30, 20, 255});
}

TEST(JpegCodec, aProgressiveOneIsTheSamePicture)
{
    KeepingSink baseline;
    KeepingSink progressive;
    ASSERT_FALSE(decode(makeJpeg({.size = {64, 64}, .paint = redAboveBlue}), baseline));
    ASSERT_FALSE(decode(makeJpeg({.size = {64, 64}, .progressive = true, .paint = redAboveBlue}), progressive));
    EXPECT_EQ(progressive.rows(), baseline.rows());
}

TEST(JpegCodec, greyHasEqualChannels)
{
    KeepingSink sink;
    ASSERT_FALSE(
        decode(makeJpeg({.components = 1, .paint = [](auto, auto) { return std::array<std::uint8_t, 4>{77}; }}), sink));
    expectNear(sink.pixel(5, 5), {77, 77, 77, 255});
}

TEST(JpegCodec, shrinksOnTheWayButNeverBelowTheLimit)
{
    const Bytes jpeg = makeJpeg({.size = {800, 600}});
    struct Row
    {
        std::uint32_t limit;
        PixelSize rows;
    };
    for (const Row &row : {Row{800, {800, 600}}, Row{500, {800, 600}}, Row{400, {400, 300}}, Row{399, {400, 300}},
                           Row{200, {200, 150}}, Row{100, {100, 75}}, Row{10, {100, 75}}}) {
        KeepingSink sink;
        ASSERT_FALSE(decode(jpeg, sink, limitedTo(row.limit)));
        EXPECT_EQ(sink.layout().rows, row.rows) << row.limit;
        EXPECT_EQ(sink.layout().storedSize, (PixelSize{800, 600}));
        EXPECT_EQ(sink.rowCount(), row.rows.height);
    }
}

TEST(JpegCodec, aTinyPictureIsNotShrunk)
{
    for (const std::uint32_t side : {1U, 2U, 3U, 7U, 9U}) {
        KeepingSink sink;
        ASSERT_FALSE(decode(makeJpeg({.size = {side, side}}), sink));
        EXPECT_EQ(sink.layout().rows, (PixelSize{side, side}));
    }
}

TEST(JpegCodec, tellsTheOrientationOfExif)
{
    for (unsigned value = 1; value <= 8; ++value) {
        KeepingSink sink;
        ASSERT_FALSE(decode(makeJpeg({.markers = {{1, exifWithOrientation(value, value % 2 == 0)}}}), sink));
        EXPECT_EQ(sink.layout().orientation, static_cast<Orientation>(value));
    }
}

TEST(JpegCodec, anotherApp1BeforeExifDoesNotHideIt)
{
    const Bytes xmp = bytesOf("http://ns.adobe.com/xap/1.0/");
    KeepingSink sink;
    ASSERT_FALSE(decode(makeJpeg({.markers = {{1, xmp}, {1, exifWithOrientation(3)}}}), sink));
    EXPECT_EQ(sink.layout().orientation, Orientation::rotated180);
}

Bytes iccPart(int number, int count, std::string_view content)
{
    const std::array place{static_cast<std::byte>(number), static_cast<std::byte>(count)};
    return joined({bytesOf(std::string_view("ICC_PROFILE\0", 12)), place, bytesOf(content)});
}

std::shared_ptr<const std::vector<std::byte>> profileOf(const Bytes &jpeg)
{
    KeepingSink sink;
    EXPECT_FALSE(decode(jpeg, sink));
    return sink.layout().colour.icc;
}

TEST(JpegCodec, aProfileInPartsIsPutTogetherInTheirOrder)
{
    const auto profile = profileOf(
        makeJpeg({.markers = {{2, iccPart(2, 3, "two")}, {2, iccPart(3, 3, "three")}, {2, iccPart(1, 3, "one")}}}));
    ASSERT_TRUE(profile);
    EXPECT_EQ(*profile, bytesOf("onetwothree"));
}

TEST(JpegCodec, aProfileThatLacksAPartIsNone)
{
    EXPECT_FALSE(profileOf(makeJpeg({.markers = {{2, iccPart(1, 3, "one")}, {2, iccPart(3, 3, "three")}}})));
}

TEST(JpegCodec, aProfileWhosePartsDisagreeIsNone)
{
    EXPECT_FALSE(profileOf(makeJpeg({.markers = {{2, iccPart(1, 2, "one")}, {2, iccPart(2, 3, "two")}}})));
    EXPECT_FALSE(profileOf(makeJpeg({.markers = {{2, iccPart(1, 2, "one")}, {2, iccPart(1, 2, "one")}}})));
    EXPECT_FALSE(profileOf(makeJpeg({.markers = {{2, iccPart(0, 1, "zero")}}})));
}

TEST(JpegCodec, aProfileOfMoreThanFourMegabytesIsNone)
{
    JpegRecipe recipe;
    const std::string part(65'000, 'x');
    for (int i = 1; i <= 65; ++i)
        recipe.markers.emplace_back(2, iccPart(i, 65, part));
    EXPECT_FALSE(profileOf(makeJpeg(recipe)));
}

TEST(JpegCodec, aHeaderThatPromisesMoreThanTheFileHoldsIsRefused)
{
    KeepingSink sink;
    EXPECT_EQ(decode(withJpegSize(makeJpeg({}), {30'000, 30'000}), sink), DecodeFailure::corrupt);
    EXPECT_EQ(decode(withJpegSize(makeJpeg({.progressive = true}), {30'000, 30'000}), sink), DecodeFailure::corrupt);
    EXPECT_EQ(decode(withJpegSize(makeJpeg({}), {60'000, 60'000}), sink), DecodeFailure::tooLarge);
    EXPECT_EQ(sink.rowCount(), 0U);
}

TEST(JpegCodec, anEvenSurfaceIsPlausibleHoweverSmallItsFile)
{
    const Bytes jpeg = makeJpeg({.size = {4096, 4096}, .components = 1, .quality = 10});
    KeepingSink sink;
    EXPECT_FALSE(decode(jpeg, sink, limitedTo(512)));
}

TEST(JpegCodec, sidesAndPixelsAreLimited)
{
    DecodeLimits limits;
    limits.maxSourceSide = 63;
    KeepingSink sink;
    EXPECT_EQ(decode(makeJpeg({}), sink, limits), DecodeFailure::tooLarge);
    limits = {};
    limits.maxSourcePixels = 64 * 48 - 1;
    EXPECT_EQ(decode(makeJpeg({}), sink, limits), DecodeFailure::tooLarge);
}

TEST(JpegCodec, theCoefficientsOfAProgressiveOneCountAsMemory)
{
    // 12000 x 9000 against 512 MB, a hundred times smaller: 4:2:0 fits and 4:4:4 does not.
    DecodeLimits limits = limitedTo(400);
    limits.maxWorkingBytes = (std::size_t{512} << 20) / 100;
    const PixelSize size{1200, 900};
    KeepingSink sink;
    EXPECT_FALSE(decode(makeJpeg({.size = size, .sampling = 2, .progressive = true}), sink, limits));
    EXPECT_EQ(decode(makeJpeg({.size = size, .sampling = 1, .progressive = true}), sink, limits),
              DecodeFailure::tooLarge);
    EXPECT_FALSE(decode(makeJpeg({.size = size, .sampling = 1}), sink, limits));
}

/// Noise, so that the data of each row of blocks has some length.
std::array<std::uint8_t, 4> noise(std::uint32_t x, std::uint32_t y)
{
    const std::uint32_t hash = (x * 73'856'093U) ^ (y * 19'349'663U);
    return {static_cast<std::uint8_t>(hash >> 3), static_cast<std::uint8_t>(hash >> 9),
            static_cast<std::uint8_t>(hash >> 14), 0};
}

TEST(JpegCodec, aTruncatedOneShowsTheRowsThereAre)
{
    const Bytes whole = makeJpeg({.size = {256, 256}, .paint = noise});
    KeepingSink all;
    ASSERT_FALSE(decode(whole, all));
    KeepingSink half;
    ASSERT_FALSE(decode(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(whole.size() / 2)), half));
    EXPECT_GT(half.rowCount(), 64U);
    EXPECT_LT(half.rowCount(), 192U);
    constexpr std::ptrdiff_t kSound = 64 * 256 * 4;
    EXPECT_TRUE(std::equal(all.rows().begin(), all.rows().begin() + kSound, half.rows().begin()));
}

TEST(JpegCodec, aTruncatedProgressiveOneShowsTheWholeCoarsely)
{
    const Bytes whole = makeJpeg({.size = {256, 256}, .progressive = true, .paint = noise});
    KeepingSink sink;
    ASSERT_FALSE(decode(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(whole.size() / 2)), sink));
    EXPECT_EQ(sink.rowCount(), 256U);
}

TEST(JpegCodec, oneThatEndsAfterItsHeadersFails)
{
    for (const bool progressive : {false, true}) {
        const Bytes whole = makeJpeg({.size = {256, 256}, .progressive = progressive, .paint = noise});
        std::size_t scan = jpegFrameOffset(whole);
        while (whole.at(scan) != std::byte{0xFF} || whole.at(scan + 1) != std::byte{0xDA})
            ++scan;
        constexpr std::size_t kScanHeader = 14;
        for (const std::size_t length : {jpegFrameOffset(whole) + 15, scan + kScanHeader, scan + kScanHeader + 4}) {
            KeepingSink sink;
            const Bytes start(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
            EXPECT_EQ(decode(start, sink), DecodeFailure::corrupt) << length;
            EXPECT_EQ(sink.rowCount(), 0U);
        }
    }
}

TEST(JpegCodec, everyTruncationEndsWell)
{
    for (const bool progressive : {false, true}) {
        const Bytes whole = makeJpeg({.size = {40, 40}, .progressive = progressive, .paint = noise});
        for (std::size_t length = 0; length < whole.size(); length += 7) {
            KeepingSink sink;
            const auto failure =
                decode(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length)), sink);
            EXPECT_EQ(failure.has_value(), sink.rowCount() == 0) << length;
        }
    }
}

TEST(JpegCodec, theMissingEndMarkerOfATinyPictureIsForgiven)
{
    Bytes jpeg = makeJpeg({.size = {8, 8}, .sampling = 1});
    jpeg.resize(jpeg.size() - 2);
    KeepingSink sink;
    EXPECT_FALSE(decode(jpeg, sink));
    EXPECT_EQ(sink.rowCount(), 8U);
}

TEST(JpegCodec, twelveBitsAreUnsupported)
{
    Bytes jpeg = makeJpeg({});
    jpeg[jpegFrameOffset(jpeg)] = std::byte{12};
    KeepingSink sink;
    EXPECT_EQ(decode(jpeg, sink), DecodeFailure::unsupported);
}

TEST(JpegCodec, motionJpegWithoutHuffmanTablesIsRead)
{
    const Bytes whole = makeJpeg({.size = {64, 64}, .paint = redAboveBlue});
    Bytes bare;
    for (std::size_t i = 2; i < whole.size();) { // from marker to marker up to the scan
        const std::size_t length =
            2 + (std::to_integer<std::size_t>(whole[i + 2]) << 8 | std::to_integer<std::size_t>(whole[i + 3]));
        const bool tables = whole[i + 1] == std::byte{0xC4};
        const bool scan = whole[i + 1] == std::byte{0xDA};
        const auto part = std::span(whole).subspan(i, scan ? whole.size() - i : length);
        if (!tables)
            bare = joined({bare, part});
        i += part.size();
    }
    bare = joined({std::span(whole).first(2), bare});
    ASSERT_LT(bare.size(), whole.size());
    KeepingSink expected;
    KeepingSink found;
    ASSERT_FALSE(decode(whole, expected));
    ASSERT_FALSE(decode(bare, found));
    EXPECT_EQ(found.rows(), expected.rows());
}

/// A progressive picture with its first scan @p times over.
Bytes withFirstScanRepeated(const Bytes &jpeg, int times)
{
    const auto isScanStart = [&](std::size_t i) {
        return jpeg[i] == std::byte{0xFF} && jpeg[i + 1] == std::byte{0xDA};
    };
    std::size_t start = jpegFrameOffset(jpeg);
    while (!isScanStart(start))
        ++start;
    std::size_t end = start + 2;
    while (jpeg[end] != std::byte{0xFF} || jpeg[end + 1] == std::byte{0})
        ++end;
    const auto scan = std::span(jpeg).subspan(start, end - start);
    Bytes longer(jpeg.begin(), jpeg.begin() + static_cast<std::ptrdiff_t>(start));
    for (int i = 0; i < times; ++i)
        longer.insert(longer.end(), scan.begin(), scan.end());
    longer.insert(longer.end(), jpeg.begin() + static_cast<std::ptrdiff_t>(end), jpeg.end());
    return longer;
}

TEST(JpegCodec, scansWithoutEndAreCutOff)
{
    const Bytes jpeg = makeJpeg({.size = {64, 256}, .components = 1, .progressive = true});
    const auto questionsAskedFor = [&](int scans) {
        int questions = 0;
        DecodeLimits limits;
        limits.cancelled = [&] {
            ++questions;
            return false;
        };
        KeepingSink sink;
        EXPECT_FALSE(decode(withFirstScanRepeated(jpeg, scans), sink, limits));
        return questions;
    };
    EXPECT_LT(questionsAskedFor(10), questionsAskedFor(50));
    EXPECT_EQ(questionsAskedFor(200), questionsAskedFor(2000));
}

TEST(JpegCodec, stopsWhenCancelled)
{
    DecodeLimits limits;
    limits.cancelled = [] { return true; };
    for (const bool progressive : {false, true}) {
        KeepingSink sink;
        EXPECT_EQ(decode(makeJpeg({.progressive = progressive}), sink, limits), DecodeFailure::cancelled);
        EXPECT_EQ(sink.rowCount(), 0U);
    }
}

TEST(JpegCodec, stopsWhereTheSinkSaysNo)
{
    KeepingSink sink;
    sink.stopAfter = 5;
    EXPECT_EQ(decode(makeJpeg({}), sink), DecodeFailure::outOfMemory);
    EXPECT_EQ(sink.rowCount(), 5U);
}

TEST(JpegCodec, theStoredSizeComesFromTheHeaderAlone)
{
    const Bytes jpeg = makeJpeg({.size = {123, 45}, .markers = {{1, exifWithOrientation(6)}}});
    EXPECT_EQ(JpegCodec().storedSize(jpeg), (PixelSize{123, 45}));
    EXPECT_FALSE(JpegCodec().storedSize(bytesOf("\xFF\xD8\xFF nothing of the kind")));
}

} // namespace

} // namespace tallowmere
