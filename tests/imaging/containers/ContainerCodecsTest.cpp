// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "Corners.h"
#include "imaging/codecs/containers/AvifCodec.h"
#include "imaging/codecs/containers/HeifCodec.h"
#include "IsoFile.h"
#include "tests/imaging/codecs/KeepingSink.h"

#include <gtest/gtest.h>

namespace tallowmere {
namespace {

/// What both families have in common is tested for both.
class Containers : public testing::TestWithParam<Coding>
{
protected:
    [[nodiscard]] const Codec &codec() const
    {
        static const AvifCodec avif;
        static const HeifCodec heif;
        return GetParam() == Coding::av1 ? static_cast<const Codec &>(avif) : heif;
    }
    [[nodiscard]] Bytes file(std::vector<TestProperty> more = {}) const
    {
        return fileOf(GetParam(), {quadrants(GetParam(), std::move(more))}).bytes();
    }
    [[nodiscard]] std::optional<DecodeFailure> failureOf(const Bytes &bytes) const
    {
        KeepingSink sink;
        return codec().decode(bytes, {}, sink);
    }
};

INSTANTIATE_TEST_SUITE_P(Family, Containers, testing::Values(Coding::av1, Coding::hevc),
                         [](const auto &row) { return row.param == Coding::av1 ? "avif" : "heif"; });

TEST_P(Containers, aPictureArrivesWithItsColours)
{
    const Bytes bytes = file();
    ASSERT_TRUE(codec().recognises(bytes));
    const auto result = decodeImage(bytes, {});
    EXPECT_EQ(cornersOf(result), "RGBW");
    const auto &image = std::get<DecodedImage>(result);
    EXPECT_EQ(image.storedSize, (PixelSize{64, 64}));
    EXPECT_FALSE(image.hasAlpha);
    EXPECT_EQ(storedSize(bytes), (PixelSize{64, 64}));
}

TEST_P(Containers, aDecodeIsLimitedToTheLongerSide)
{
    DecodeLimits limits;
    limits.maxSide = 20;
    const auto result = decodeImage(file(), limits);
    EXPECT_EQ(cornersOf(result), "RGBW");
    EXPECT_EQ(std::get<DecodedImage>(result).pixels.size(), (PixelSize{20, 20}));
    EXPECT_EQ(std::get<DecodedImage>(result).storedSize, (PixelSize{64, 64}));
}

struct Turned
{
    std::vector<TestProperty> properties;
    std::string corners;
};

TEST_P(Containers, rotationAndMirroringAreAppliedOnce)
{
    const Turned table[] = {
        {{rotation(1)}, "GWRB"},
        {{rotation(2)}, "WBGR"},
        {{rotation(3)}, "BRWG"},
        {{mirror(0)}, "BWRG"},
        {{mirror(1)}, "GRWB"},
        {{rotation(1), mirror(0)}, "RBGW"},
        {{rotation(1), mirror(1)}, "WGBR"},
        {{rotation(2), mirror(1)}, "BWRG"},
        {{rotation(3), mirror(1)}, "RBGW"},
    };
    for (const Turned &row : table)
        EXPECT_EQ(cornersOf(decodeImage(file(row.properties), {})), row.corners);
}

TEST_P(Containers, anExifOrientationThatSaysOtherwiseIsIgnored)
{
    const auto withExif = [&](std::vector<TestProperty> properties) {
        return fileOf(GetParam(), {quadrants(GetParam(), std::move(properties)), exifItem(3)}).bytes();
    };
    EXPECT_EQ(cornersOf(decodeImage(withExif({}), {})), "RGBW");
    EXPECT_EQ(cornersOf(decodeImage(withExif({rotation(3)}), {})), "BRWG");
}

TEST_P(Containers, theCleanApertureIsCutOutBeforeTurning)
{
    // The right half: its centre lies 16 pixels right of the picture's.
    const Bytes bytes = file({cleanAperture({32, 64, 16, 0}), rotation(1)});
    const auto result = decodeImage(bytes, {});
    ASSERT_TRUE(std::holds_alternative<DecodedImage>(result));
    EXPECT_EQ(std::get<DecodedImage>(result).pixels.size(), (PixelSize{64, 32}));
    EXPECT_EQ(cornersOf(result), "GWGW");
    EXPECT_EQ(storedSize(bytes), (PixelSize{64, 64})) << "as coded, not as cut";
}

TEST_P(Containers, alphaComesFromAnItemOfItsOwn)
{
    const Bytes bytes = fileOf(GetParam(), {quadrants(GetParam()), halfAlpha(GetParam())}).bytes();
    KeepingSink sink;
    ASSERT_FALSE(codec().decode(bytes, {}, sink));
    EXPECT_TRUE(sink.layout().hasAlpha);
    EXPECT_NEAR(sink.pixel(48, 10)[3], 255, 3);
    const auto below = sink.pixel(48, 54); // white, straight
    EXPECT_NEAR(below[3], 128, 3);
    EXPECT_NEAR(below[0], 255, 6);
}

TEST_P(Containers, premultipliedColoursAreMadeStraight)
{
    TestItem colour = quadrants(GetParam());
    colour.referenceType = "prem";
    colour.references = {2};
    KeepingSink straight;
    ASSERT_FALSE(
        codec().decode(fileOf(GetParam(), {quadrants(GetParam()), halfAlpha(GetParam())}).bytes(), {}, straight));
    KeepingSink premultiplied;
    ASSERT_FALSE(codec().decode(fileOf(GetParam(), {colour, halfAlpha(GetParam())}).bytes(), {}, premultiplied));
    // Blue in the lower left quarter, whatever is left of red and green there doubles.
    for (int channel = 1; channel < 3; ++channel) {
        const int before = straight.pixel(16, 48)[static_cast<std::size_t>(channel)];
        EXPECT_NEAR(premultiplied.pixel(16, 48)[static_cast<std::size_t>(channel)], before * 2, 2);
    }
    EXPECT_EQ(premultiplied.pixel(16, 48)[3], straight.pixel(16, 48)[3]);
}

/// Two by two tiles, cut to 128 x 100.
Bytes gridFile(Coding coding, std::vector<TestProperty> more = {})
{
    TestItem grid{1, "grid", {spatialExtent(128, 100)}, gridData(2, 2, {128, 100}), "dimg", {2, 3, 4, 5}};
    grid.properties.push_back({"pixi", joined({number(0, 4), number(3, 1), number(0x080808, 3)})});
    for (TestProperty &property : more)
        grid.properties.push_back(std::move(property));
    std::vector<TestItem> items{grid};
    for (std::uint16_t id = 2; id <= 5; ++id) {
        items.push_back(quadrants(coding));
        items.back().id = id;
    }
    return fileOf(coding, items).bytes();
}

TEST_P(Containers, aTruncatedGridShowsTheTilesThereAre)
{
    const Bytes whole = gridFile(GetParam());
    KeepingSink sink;
    ASSERT_FALSE(codec().decode(std::span<const std::byte>(whole).first(whole.size() - 20), {}, sink));
    EXPECT_EQ(sink.layout().rows, (PixelSize{128, 100}));
    ASSERT_EQ(sink.rowCount(), 64U) << "the upper two tiles";
    EXPECT_NEAR(sink.pixel(110, 50)[1], 255, 6) << "white";
    EXPECT_NEAR(sink.pixel(80, 10)[1], 0, 6) << "red";
    EXPECT_EQ(sink.pixel(127, 63)[3], 255);

    const Bytes cut = gridFile(GetParam(), {cleanAperture({60, 80, 20, 0})});
    KeepingSink part;
    ASSERT_FALSE(codec().decode(std::span<const std::byte>(cut).first(cut.size() - 20), {}, part));
    EXPECT_EQ(part.layout().rows, (PixelSize{60, 80}));
    EXPECT_EQ(part.rowCount(), 54U) << "the aperture starts 10 rows down";
    EXPECT_NEAR(part.pixel(20, 5)[2], 255, 6) << "red, at column 74";
}

TEST_P(Containers, aGridIsPutTogetherAndCutToItsSize)
{
    const Bytes bytes = gridFile(GetParam());
    const auto result = decodeImage(bytes, {});
    ASSERT_TRUE(std::holds_alternative<DecodedImage>(result)) << cornersOf(result);
    const PixelBuffer &pixels = std::get<DecodedImage>(result).pixels;
    EXPECT_EQ(pixels.size(), (PixelSize{128, 100}));
    EXPECT_EQ(colourLetter(pixels.row(80) + 80 * 4), 'R');
    EXPECT_EQ(colourLetter(pixels.row(48) + 112 * 4), 'W');
    EXPECT_EQ(storedSize(bytes), (PixelSize{128, 100}));
}

TEST_P(Containers, aProfileGoesBeforeCodePoints)
{
    const Bytes profile(200, std::byte{7});
    const auto codePoints = joined({number(12, 2), number(16, 2), number(6, 2), number(0x80, 1)});
    KeepingSink both;
    ASSERT_FALSE(codec().decode(file({colourBox("nclx", codePoints), colourBox("prof", profile)}), {}, both));
    ASSERT_TRUE(both.layout().colour.icc);
    EXPECT_EQ(*both.layout().colour.icc, profile);
    EXPECT_FALSE(both.layout().colour.cicp);

    KeepingSink pointsOnly;
    ASSERT_FALSE(codec().decode(file({colourBox("nclx", codePoints)}), {}, pointsOnly));
    ASSERT_TRUE(pointsOnly.layout().colour.cicp);
    EXPECT_EQ(*pointsOnly.layout().colour.cicp, (Cicp{12, 16, 6, true}));
}

TEST_P(Containers, aTruncatedFileFailsCleanlyWhereverItEnds)
{
    const Bytes whole = fileOf(GetParam(), {quadrants(GetParam()), halfAlpha(GetParam())}).bytes();
    for (std::size_t length = 0; length < whole.size(); ++length) {
        KeepingSink sink;
        const auto part = std::span<const std::byte>(whole).first(length);
        static_cast<void>(codec().recognises(part));
        static_cast<void>(codec().storedSize(part));
        static_cast<void>(codec().decode(part, {}, sink));
    }
    EXPECT_EQ(failureOf(Bytes(whole.begin(), whole.begin() + 40)), DecodeFailure::corrupt);
}

TEST(HeifCodec, aSequenceWithoutAStillPictureIsUnsupported)
{
    const Bytes file = joined({box("ftyp", bytesOf(std::string_view("msf1\0\0\0\0hevc", 12))), box("moov", Bytes(20))});
    ASSERT_TRUE(HeifCodec().recognises(file));
    KeepingSink sink;
    EXPECT_EQ(HeifCodec().decode(file, {}, sink), DecodeFailure::unsupported);
    EXPECT_FALSE(HeifCodec().storedSize(file));
}

TEST_P(Containers, aCancelledDecodeSaysSo)
{
    DecodeLimits limits;
    limits.cancelled = [] { return true; };
    KeepingSink sink;
    EXPECT_EQ(codec().decode(file(), limits, sink), DecodeFailure::cancelled);
    EXPECT_EQ(sink.rowCount(), 0U);
}

TEST_P(Containers, aSinkThatHasEnoughEndsTheDecode)
{
    KeepingSink sink;
    sink.stopAfter = 5;
    EXPECT_EQ(codec().decode(file(), {}, sink), DecodeFailure::outOfMemory) << "what the sink says";
    EXPECT_EQ(sink.rowCount(), 5U);
}

} // namespace
} // namespace tallowmere
