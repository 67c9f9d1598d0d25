// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/codecs/containers/MediaBudget.h"

#include "CodedSamples.h"
#include "imaging/codecs/containers/AvifCodec.h"
#include "imaging/codecs/containers/CodedPicture.h"
#include "imaging/codecs/containers/HeifCodec.h"
#include "IsoFile.h"
#include "tests/imaging/codecs/KeepingSink.h"

#include <gtest/gtest.h>

namespace tallowmere {
namespace {

constexpr LibraryCosts kCosts;

DecodeFailure refusal(const IsoFile &file, const DecodeLimits &limits = {})
{
    const Bytes bytes = file.bytes();
    const auto media = MediaFile::read(bytes);
    if (!media)
        return DecodeFailure::unrecognised;
    const auto budget = MediaBudget::of(*media, limits, kCosts);
    const auto *failure = std::get_if<DecodeFailure>(&budget);
    return failure ? *failure : DecodeFailure::cancelled; // never an answer of this function
}
constexpr auto kAccepted = DecodeFailure::cancelled;

IsoFile gridOf(unsigned columns, unsigned rows, PixelSize output, std::vector<std::uint16_t> tiles)
{
    TestItem grid{
        1,      "grid",          {spatialExtent(output.width, output.height)}, gridData(columns, rows, output),
        "dimg", std::move(tiles)};
    TestItem tile = quadrants(Coding::hevc);
    tile.id = 2;
    return fileOf(Coding::hevc, {grid, tile});
}

TEST(MediaBudget, coversWhatAnHonestFileNeeds)
{
    const Bytes bytes = fileOf(Coding::hevc, {quadrants(Coding::hevc), halfAlpha(Coding::hevc)}).bytes();
    const auto media = MediaFile::read(bytes);
    ASSERT_TRUE(media);
    const auto budget = MediaBudget::of(*media, {}, kCosts);
    ASSERT_TRUE(std::holds_alternative<MediaBudget>(budget));
    EXPECT_EQ(std::get<MediaBudget>(budget).stored, (PixelSize{64, 64}));
    EXPECT_TRUE(std::get<MediaBudget>(budget).hasAlpha);
    EXPECT_GE(std::get<MediaBudget>(budget).workingBytes, 64U * 64 * 3 / 2);
}

TEST(MediaBudget, refusesASizeThatNoLimitAllows)
{
    for (const PixelSize size : {PixelSize{65'536, 10}, PixelSize{40'000, 40'000}, PixelSize{0xffffffff, 0xffffffff}}) {
        IsoFile file = fileOf(Coding::hevc, {quadrants(Coding::hevc)});
        file.items[0].properties[0] = spatialExtent(size.width, size.height);
        EXPECT_EQ(refusal(file), DecodeFailure::tooLarge) << size.width << " x " << size.height;
    }
}

TEST(MediaBudget, refusesWhatWouldNotFitInMemory)
{
    IsoFile file = fileOf(Coding::hevc, {quadrants(Coding::hevc)});
    file.items[0].properties[0] = spatialExtent(20'000, 20'000);
    EXPECT_EQ(refusal(file), DecodeFailure::tooLarge);
    DecodeLimits roomy;
    roomy.maxWorkingBytes = std::size_t{4} << 30;
    EXPECT_EQ(refusal(file, roomy), kAccepted);
}

TEST(MediaBudget, refusesAnEmptySize)
{
    IsoFile file = fileOf(Coding::hevc, {quadrants(Coding::hevc)});
    file.items[0].properties[0] = spatialExtent(0, 64);
    EXPECT_EQ(refusal(file), DecodeFailure::corrupt);
}

TEST(MediaBudget, refusesAGridOfSmallTilesThatAddsUpToGigabytes)
{
    EXPECT_EQ(refusal(gridOf(1, 1, {60'000, 60'000}, {2})), DecodeFailure::tooLarge);
}

TEST(MediaBudget, refusesAGridThatRepeatsOneTileTenThousandTimes)
{
    EXPECT_EQ(refusal(gridOf(100, 100, {6400, 6400}, std::vector<std::uint16_t>(10'000, 2))), DecodeFailure::tooLarge);
}

TEST(MediaBudget, refusesTilesThatAreMostlyThrownAway)
{
    IsoFile file = gridOf(16, 16, {64, 64}, std::vector<std::uint16_t>(256, 2));
    file.items[1].properties[0] = spatialExtent(2048, 2048);
    EXPECT_EQ(refusal(file), DecodeFailure::tooLarge);
}

TEST(MediaBudget, refusesItemsThatContainThemselves)
{
    EXPECT_EQ(refusal(gridOf(1, 1, {64, 64}, {1})), DecodeFailure::corrupt);
    IsoFile file = gridOf(2, 1, {64, 64}, {1, 1});
    EXPECT_EQ(refusal(file), DecodeFailure::corrupt);
    KeepingSink sink;
    EXPECT_EQ(HeifCodec().decode(file.bytes(), {}, sink), DecodeFailure::corrupt) << "and not by the library's stack";
}

TEST(MediaBudget, refusesAGridWhoseTilesAreMissing)
{
    EXPECT_EQ(refusal(gridOf(1, 1, {64, 64}, {7})), DecodeFailure::corrupt);
}

TEST(MediaBudget, namesCodingsNobodyHereReads)
{
    IsoFile file = fileOf(Coding::hevc, {quadrants(Coding::hevc)});
    file.items[0].type = "unci";
    EXPECT_EQ(refusal(file), DecodeFailure::unsupported);
}

TEST(MediaBudget, believesTheBitstreamWhereItPromisesMoreThanTheContainer)
{
    IsoFile file = fileOf(Coding::hevc, {quadrants(Coding::hevc)});
    file.items[0].properties[0] = spatialExtent(8, 8);
    DecodeLimits limits;
    limits.maxSourcePixels = 1000;
    EXPECT_EQ(refusal(file, limits), DecodeFailure::tooLarge) << "the parameter set says 64 x 64";
}

TEST(MediaFile, isRefusedWithMoreItemsThanAnyPictureNeeds)
{
    IsoFile file = fileOf(Coding::hevc, {});
    for (std::uint16_t id = 1; id <= 9000; ++id)
        file.items.push_back({id, "hvc1", {}, {}, {}, {}});
    EXPECT_EQ(refusal(file), DecodeFailure::unrecognised);
}

TEST(MediaFamily, isToldByTheBrandsAndThenByThePrimaryItem)
{
    const auto family = [](const std::string &major, std::vector<std::string> brands, Coding coding) {
        IsoFile file = fileOf(coding, {quadrants(coding)});
        file.majorBrand = major;
        file.brands = std::move(brands);
        return mediaFamily(file.bytes());
    };
    EXPECT_EQ(family("avif", {"mif1"}, Coding::av1), MediaFamily::avif);
    EXPECT_EQ(family("avis", {"msf1"}, Coding::av1), MediaFamily::avif);
    EXPECT_EQ(family("heic", {"mif1"}, Coding::hevc), MediaFamily::heif);
    EXPECT_EQ(family("mif1", {"mif1", "avif"}, Coding::av1), MediaFamily::avif);
    EXPECT_EQ(family("mif1", {"mif1", "heic"}, Coding::hevc), MediaFamily::heif);
    EXPECT_EQ(family("mif1", {"mif1"}, Coding::av1), MediaFamily::avif);
    EXPECT_EQ(family("mif1", {"mif1"}, Coding::hevc), MediaFamily::heif);
    EXPECT_EQ(family("mif1", {"avif", "heic"}, Coding::hevc), MediaFamily::heif);
    EXPECT_EQ(family("isom", {"mp42"}, Coding::hevc), MediaFamily::none) << "a film";
    EXPECT_EQ(mediaFamily(bytesOf("not a box at all")), MediaFamily::none);
    EXPECT_EQ(mediaFamily({}), MediaFamily::none);
}

TEST(CodedPicture, isReadFromTheSequenceHeaders)
{
    const auto pictureOf = [](const TestItem &item) {
        const Bytes bytes = fileOf(Coding::hevc, {item}).bytes();
        const auto media = MediaFile::read(bytes);
        return media ? codedPicture(*media, *media->primary()) : std::nullopt;
    };
    for (const Coding coding : {Coding::hevc, Coding::av1}) {
        const auto colour = pictureOf(quadrants(coding));
        ASSERT_TRUE(colour);
        EXPECT_EQ(colour->size, (PixelSize{64, 64}));
        EXPECT_EQ(colour->samplesPerFourPixels, 6U);
        EXPECT_EQ(colour->bytesPerSample, 1U);
        EXPECT_FALSE(colour->filmGrain);
        TestItem grey = halfAlpha(coding, 1);
        grey.referenceType.clear();
        const auto alpha = pictureOf(grey);
        ASSERT_TRUE(alpha);
        EXPECT_EQ(alpha->size, (PixelSize{64, 64}));
        EXPECT_EQ(alpha->samplesPerFourPixels, 4U);
    }
}

TEST(CodedPicture, headersThatBreakOffGiveNothing)
{
    const auto headers = {std::span<const std::byte>(),
                          std::span<const std::byte>(std::as_bytes(std::span("\x42\x01\x01")))};
    for (const auto &header : headers) {
        EXPECT_FALSE(readHevcParameterSet(header));
        EXPECT_FALSE(readAv1SequenceHeader(header));
    }
}

TEST(IsoBox, endsWithTheRangeWhenItClaimsMore)
{
    const Bytes bytes = joined({number(1000, 4), bytesOf("mdat"), bytesOf("abc")});
    auto rest = std::span<const std::byte>(bytes);
    const auto found = Box::next(rest);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->payload.size(), 3U);
    EXPECT_TRUE(rest.empty());
    EXPECT_FALSE(Box::next(rest));
}

TEST(IsoBox, isNothingWhenItsSizeIsSmallerThanItsHeader)
{
    const Bytes bytes = joined({number(7, 4), bytesOf("free")});
    auto rest = std::span<const std::byte>(bytes);
    EXPECT_FALSE(Box::next(rest));
}

} // namespace
} // namespace tallowmere
