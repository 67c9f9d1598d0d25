// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/pixels/ColourConversion.h"

#include "tests/imaging/pixels/Pictures.h"
#include "tests/imaging/pixels/Profiles.h"

#include <gtest/gtest.h>

#include <cmath>
#include <latch>
#include <random>
#include <set>
#include <thread>

namespace tallowmere {
namespace {

ColourDescription described(ProfileBytes icc)
{
    ColourDescription colour;
    colour.icc = std::move(icc);
    return colour;
}

ColourDescription described(std::uint16_t primaries, std::uint16_t transfer)
{
    ColourDescription colour;
    colour.cicp = Cicp{primaries, transfer, 0, true};
    return colour;
}

ColourDescription described(double gamma, std::optional<std::array<double, 8>> xy = {})
{
    ColourDescription colour;
    colour.gamma = GammaAndPrimaries{gamma, xy};
    return colour;
}

Pixel converted(const ColourDescription &colour, Pixel pixel)
{
    if (const auto conversion = ColourConversion::toSRGB(colour))
        conversion->convert(reinterpret_cast<std::byte *>(pixel.data()), 1);
    return pixel;
}

std::uint8_t convertedGrey(const ColourDescription &colour, std::uint8_t value)
{
    const Pixel pixel = converted(colour, {value, value, value, 255});
    EXPECT_NEAR(pixel[0], pixel[1], 1);
    EXPECT_NEAR(pixel[1], pixel[2], 1);
    return pixel[1];
}

TEST(ColourConversion, ofAnUnknownSpaceIsNone)
{
    EXPECT_EQ(ColourConversion::toSRGB({}), nullptr);
}

TEST(ColourConversion, ofWhatIsSRGBIsNone)
{
    EXPECT_EQ(ColourConversion::toSRGB(described(sRGBProfile(4.3))), nullptr);
    EXPECT_EQ(ColourConversion::toSRGB(described(sRGBProfile(2.1))), nullptr);
    EXPECT_EQ(ColourConversion::toSRGB(described(rgbProfile(kBT709, 0))), nullptr);
    EXPECT_EQ(ColourConversion::toSRGB(described(1, 13)), nullptr);
    EXPECT_EQ(ColourConversion::toSRGB(described(2, 2)), nullptr);
    EXPECT_EQ(ColourConversion::toSRGB(described(1, 1)), nullptr);
    EXPECT_EQ(ColourConversion::toSRGB(described(1 / 2.2)), nullptr);
    EXPECT_EQ(ColourConversion::toSRGB(
                  described(0.45455, std::array<double, 8>{0.3127, 0.3290, 0.64, 0.33, 0.30, 0.60, 0.15, 0.06})),
              nullptr);
}

TEST(ColourConversion, agreesWithTheColourLibraryOnEveryProbe)
{
    for (const ProfileBytes &bytes : {displayP3Profile(), rgbProfile(kBT709, 1.8), rgbProfile(kP3, 2.2)}) {
        const auto conversion = ColourConversion::toSRGB(described(bytes));
        ASSERT_TRUE(conversion);
        const TransformHandle transform = transformToSRGB(bytes, TYPE_BGR_8, cmsFLAGS_NOOPTIMIZE);
        for (unsigned i = 0; i < 17 * 17 * 17; ++i) {
            const auto level = [](unsigned step) { return static_cast<std::uint8_t>(step * 255 / 16); };
            Pixel ours{level(i % 17), level(i / 17 % 17), level(i / 289), 77};
            std::array<std::uint8_t, 3> theirs{};
            cmsDoTransform(transform.get(), ours.data(), theirs.data(), 1);
            conversion->convert(reinterpret_cast<std::byte *>(ours.data()), 1);
            for (std::size_t c = 0; c < 3; ++c)
                ASSERT_NEAR(ours[c], theirs[c], 1) << i;
            ASSERT_EQ(ours[3], 77);
        }
    }
}

TEST(ColourConversion, ofDisplayP3IsTheSameFromAProfileAndFromCodePoints)
{
    const ColourDescription profile = described(displayP3Profile());
    const ColourDescription points = described(12, 13);
    for (const Pixel &pixel : {Pixel{10, 200, 30, 255}, Pixel{128, 128, 128, 255}, Pixel{90, 80, 220, 255}}) {
        for (std::size_t c = 0; c < 3; ++c)
            EXPECT_NEAR(converted(profile, pixel)[c], converted(points, pixel)[c], 1);
    }
    EXPECT_EQ(converted(points, {0, 0, 255, 255}), (Pixel{0, 0, 255, 255})); // beyond sRGB: clipped
    EXPECT_EQ(converted(points, {255, 255, 255, 255}), (Pixel{255, 255, 255, 255}));
}

TEST(ColourConversion, keepsWhiteWhiteAndBlackBlackForAllPrimaries)
{
    for (const std::uint16_t primaries : {1, 4, 5, 6, 7, 8, 9, 11, 12, 22}) {
        EXPECT_GE(convertedGrey(described(primaries, 13), 255), 254) << primaries;
        EXPECT_EQ(convertedGrey(described(primaries, 13), 0), 0) << primaries;
        EXPECT_NEAR(convertedGrey(described(primaries, 13), 128), 128, 1) << primaries;
    }
    EXPECT_NE(ColourConversion::toSRGB(described(9, 13)), nullptr);
}

TEST(ColourConversion, appliesTransferCurves)
{
    const auto expected = [](double light) {
        return std::lround(255 * (light <= 0.0031308 ? 12.92 * light : 1.055 * std::pow(light, 1 / 2.4) - 0.055));
    };
    const double signal = 100 / 255.0;
    EXPECT_NEAR(convertedGrey(described(1, 8), 100), expected(signal), 1);
    EXPECT_NEAR(convertedGrey(described(1, 4), 100), expected(std::pow(signal, 2.2)), 1);
    EXPECT_NEAR(convertedGrey(described(1, 5), 100), expected(std::pow(signal, 2.8)), 1);
    EXPECT_NEAR(convertedGrey(described(1, 17), 100), expected(std::pow(signal, 2.6) * 52.37 / 48), 1);
    EXPECT_NEAR(convertedGrey(described(1.0), 100), expected(signal), 1);
    EXPECT_NEAR(convertedGrey(described(1 / 1.8), 100), expected(std::pow(signal, 1.8)), 1);
}

TEST(ColourConversion, rollsHdrOffIntoTheRangeOfAScreen)
{
    for (const std::uint16_t transfer : {16, 18}) {
        const ColourDescription hdr = described(9, transfer);
        std::array<int, 256> tones{};
        for (unsigned i = 0; i < 256; ++i)
            tones[i] = convertedGrey(hdr, static_cast<std::uint8_t>(i));
        EXPECT_EQ(tones[0], 0);
        EXPECT_GE(tones[255], 250);
        for (std::size_t i = 1; i < 256; ++i)
            EXPECT_GE(tones[i], tones[i - 1]) << transfer << " at " << i;
        // Reference white is bright, yet leaves room for highlights; middle grey stays middle grey.
        const std::size_t white = transfer == 16 ? 148 : 191; // 203 cd/m² in either
        EXPECT_GT(tones[white], 200);
        EXPECT_LT(tones[white], 245);
        EXPECT_GT(tones[230] + (transfer == 16 ? 1 : 0), tones[white]);
    }
    const std::uint8_t pq26Nits = convertedGrey(described(9, 16), 96); // 26 cd/m², a grey card's share of 203
    EXPECT_NEAR(pq26Nits, 100, 6);
}

TEST(ColourConversion, ofReservedCodePointsIsNone)
{
    EXPECT_EQ(ColourConversion::toSRGB(described(3, 13)), nullptr);
    EXPECT_EQ(ColourConversion::toSRGB(described(12, 3)), nullptr);
    EXPECT_EQ(ColourConversion::toSRGB(described(65535, 65535)), nullptr);
}

TEST(ColourConversion, ofAGreyProfileChangesGreyValues)
{
    const ColourDescription colour = described(greyProfile(1.0));
    EXPECT_NEAR(convertedGrey(colour, 55), 128, 1);
    EXPECT_EQ(convertedGrey(colour, 0), 0);
    EXPECT_EQ(convertedGrey(colour, 255), 255);
}

TEST(ColourConversion, ofAProfileForOtherValuesIsNone)
{
    EXPECT_EQ(ColourConversion::toSRGB(described(bytesOf(cmsCreateLab4Profile(nullptr)))), nullptr);
    EXPECT_EQ(ColourConversion::toSRGB(described(bytesOf(cmsCreateXYZProfile()))), nullptr);
    EXPECT_EQ(ColourConversion::toSRGB(described(bytesOf(cmsCreateInkLimitingDeviceLink(cmsSigCmykData, 150)))),
              nullptr);
}

TEST(ColourConversion, ofABrokenProfileIsNone)
{
    const ProfileBytes whole = displayP3Profile();
    const Pixel pixel{30, 200, 60, 255};
    const Pixel expected = converted(described(whole), pixel);
    ASSERT_NE(expected, pixel);
    std::size_t refused = 0;
    for (std::size_t size = 0; size < whole->size(); size += 7) {
        const auto cut = std::make_shared<std::vector<std::byte>>(whole->begin(),
                                                                  whole->begin() + static_cast<std::ptrdiff_t>(size));
        // What is cut off last is of no use to the conversion.
        const Pixel found = converted(described(cut), pixel);
        EXPECT_TRUE(found == pixel || found == expected) << size;
        refused += found == pixel ? 1 : 0;
    }
    EXPECT_GT(refused, whole->size() / 7 / 2);
    EXPECT_EQ(ColourConversion::toSRGB(described(std::make_shared<std::vector<std::byte>>(5000, std::byte{'x'}))),
              nullptr);
}

TEST(ColourConversion, survivesAnyChangedByteOfAProfile)
{
    const ProfileBytes whole = displayP3Profile();
    for (std::size_t i = 0; i < whole->size(); i += 3) {
        for (const auto value : {std::byte{0}, std::byte{255}}) {
            auto changed = std::make_shared<std::vector<std::byte>>(*whole);
            (*changed)[i] = value;
            const Pixel pixel = converted(described(changed), {10, 20, 30, 40});
            ASSERT_EQ(pixel[3], 40);
        }
    }
}

TEST(ColourConversion, ofSenselessChromaticitiesIsNone)
{
    using XY = std::array<double, 8>;
    EXPECT_EQ(ColourConversion::toSRGB(described(0.5, XY{})), nullptr);
    EXPECT_EQ(ColourConversion::toSRGB(described(0.5, XY{0.3, 0.3, 0.3, 0.3, 0.3, 0.3, 0.3, 0.3})), nullptr);
    EXPECT_EQ(ColourConversion::toSRGB(described(0.5, XY{0.3, 0.3, 40, 50, 60, 70, 80, 90})), nullptr);
    EXPECT_EQ(ColourConversion::toSRGB(described(0.5, XY{NAN, NAN, NAN, NAN, NAN, NAN, NAN, NAN})), nullptr);
    EXPECT_EQ(ColourConversion::toSRGB(described(0.0)), nullptr);
    EXPECT_EQ(ColourConversion::toSRGB(described(-1.0)), nullptr);
    EXPECT_EQ(ColourConversion::toSRGB(described(NAN)), nullptr);
}

TEST(ColourConversion, ofATableProfileBendsColoursTogether)
{
    // A table that swaps red and blue where red is bright: no sum of channels does that.
    cmsHPROFILE profile = cmsCreate_sRGBProfile();
    cmsSetProfileVersion(profile, 2.4);
    cmsPipeline *pipeline = cmsPipelineAlloc(nullptr, 3, 3);
    cmsStage *table = cmsStageAllocCLut16bit(nullptr, 9, 3, 3, nullptr);
    cmsStageSampleCLut16bit(
        table,
        [](const cmsUInt16Number *in, cmsUInt16Number *out, void *) -> cmsInt32Number {
            const double red = in[0] / 65535.0, green = in[1] / 65535.0, blue = in[2] / 65535.0;
            const cmsCIELab lab{100 * green, 100 * red * blue, 100 * red * (1 - blue)};
            cmsFloat2LabEncodedV2(out, &lab);
            return 1;
        },
        nullptr, 0);
    cmsPipelineInsertStage(pipeline, cmsAT_END, table);
    cmsSetPCS(profile, cmsSigLabData);
    ASSERT_TRUE(cmsWriteTag(profile, cmsSigAToB0Tag, pipeline));
    cmsPipelineFree(pipeline);
    const ColourDescription colour = described(bytesOf(profile));
    ASSERT_TRUE(ColourConversion::toSRGB(colour));
    EXPECT_NEAR(convertedGrey(described(ProfileBytes(colour.icc)), 0), 0, 2);
    const Pixel grey = converted(colour, {0, 128, 0, 99});
    EXPECT_NEAR(grey[0], 119, 4); // L* 50
    EXPECT_NEAR(grey[2], 119, 4);
    EXPECT_EQ(grey[3], 99);
    const Pixel both = converted(colour, {255, 128, 255, 255});
    EXPECT_GT(both[2], both[1] + 60); // a* 100
}

/// Every grey, and then colours from all over the cube.
std::vector<Pixel> greysAndColours()
{
    std::vector<Pixel> pixels;
    for (unsigned i = 0; i < 256; ++i)
        pixels.push_back({std::uint8_t(i), std::uint8_t(i), std::uint8_t(i), 255});
    std::mt19937 random(5);
    for (int i = 0; i < 10'000; ++i) {
        const auto bits = random();
        pixels.push_back({std::uint8_t(bits), std::uint8_t(bits >> 8U), std::uint8_t(bits >> 16U), 255});
    }
    return pixels;
}

struct Deviation
{
    int greys = 0;
    int colours = 0;
    int beyondTwo = 0;
    double squares = 0;
};

/// @p pixels are what became of greysAndColours(); compared with what the library gets when it takes its time.
Deviation deviationOf(const std::vector<Pixel> &pixels, const ProfileBytes &profile)
{
    const TransformHandle transform = transformToSRGB(profile, TYPE_BGR_16, cmsFLAGS_NOOPTIMIZE | cmsFLAGS_NOCACHE);
    const std::vector<Pixel> asked = greysAndColours();
    Deviation deviation;
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        std::array<std::uint16_t, 3> exact{};
        for (std::size_t c = 0; c < 3; ++c)
            exact[c] = static_cast<std::uint16_t>(asked[i][c] * 257);
        cmsDoTransform(transform.get(), exact.data(), exact.data(), 1);
        int largest = 0;
        for (std::size_t c = 0; c < 3; ++c) {
            const int difference = std::abs(pixels[i][c] - static_cast<int>(std::lround(exact[c] / 257.0)));
            largest = std::max(largest, difference);
            deviation.squares += difference * difference;
        }
        int &most = i < 256 ? deviation.greys : deviation.colours;
        most = std::max(most, largest);
        deviation.beyondTwo += i >= 256 && largest > 2 ? 1 : 0;
    }
    return deviation;
}

std::vector<Pixel> convertedByTheFastLibrary(const ProfileBytes &profile)
{
    const TransformHandle transform = transformToSRGB(profile, TYPE_BGRA_8, cmsFLAGS_NOCACHE);
    std::vector<Pixel> pixels = greysAndColours();
    cmsDoTransform(transform.get(), pixels.data(), pixels.data(), static_cast<cmsUInt32Number>(pixels.size()));
    return pixels;
}

std::vector<Pixel> convertedByUs(const ProfileBytes &profile)
{
    std::vector<Pixel> pixels = greysAndColours();
    if (const auto conversion = ColourConversion::toSRGB(described(profile)))
        conversion->convert(reinterpret_cast<std::byte *>(pixels.data()), pixels.size());
    return pixels;
}

TEST(ColourConversion, ofMeasuredPointsIsWithinTwoOfTheLibrary)
{
    for (const ProfileBytes &profile :
         {bentProfile(sRGBProfile(), 0, -15), curvedBentProfile(1.0), curvedBentProfile(1.4), curvedBentProfile(2.2)}) {
        const Deviation ours = deviationOf(convertedByUs(profile), profile);
        EXPECT_LE(ours.greys, 1);
        EXPECT_LE(ours.colours, 2);
    }
}

TEST(ColourConversion, ofMeasuredPointsIsNearerThanTheFastLibraryWhereColoursAreClipped)
{
    for (const ProfileBytes &profile : {bentProfile(sRGBProfile(), 0, 15), bentProfile(displayP3Profile(), 10, 0),
                                        bentProfile(displayP3Profile(), 0, -10)}) {
        const Deviation ours = deviationOf(convertedByUs(profile), profile);
        const Deviation theirs = deviationOf(convertedByTheFastLibrary(profile), profile);
        EXPECT_LE(ours.greys, 1);
        EXPECT_LT(ours.beyondTwo, 200); // one in fifty
        EXPECT_LT(ours.beyondTwo, theirs.beyondTwo);
        EXPECT_LT(ours.squares, theirs.squares);
    }
}

TEST(ColourConversion, ofMeasuredLightIsNearerThanTheFastLibraryThoughNeitherIsNear)
{
    // As linear as light itself: dark tones crowd between the first points of either table.
    const ProfileBytes profile = bentProfile(rgbProfile(kP3, 1.0), 0, -10);
    const Deviation ours = deviationOf(convertedByUs(profile), profile);
    const Deviation theirs = deviationOf(convertedByTheFastLibrary(profile), profile);
    EXPECT_GT(theirs.greys, 1);
    EXPECT_LT(ours.greys, theirs.greys);
    EXPECT_LT(ours.squares, theirs.squares);
}

TEST(ColourConversion, ofPointsBehindSteepCurvesIsTheLibrarys)
{
    for (const double gamma : {0.3, 0.45}) {
        const ProfileBytes profile = curvedBentProfile(gamma);
        EXPECT_EQ(convertedByUs(profile), convertedByTheFastLibrary(profile));
        EXPECT_LE(deviationOf(convertedByUs(profile), profile).greys, 1);
    }
}

TEST(ColourConversion, ofMeasuredPointsIsTheSameForAnyNumberOfPixels)
{
    const auto conversion = ColourConversion::toSRGB(described(bentProfile(displayP3Profile(), 10, 0)));
    ASSERT_TRUE(conversion);
    const std::vector<Pixel> asked = greysAndColours();
    std::vector<Pixel> all = asked;
    conversion->convert(reinterpret_cast<std::byte *>(all.data()), all.size());
    for (std::size_t count = 0; count < 70; ++count) {
        std::vector<Pixel> some(asked.begin() + 300, asked.begin() + 370);
        conversion->convert(reinterpret_cast<std::byte *>(some.data()), count);
        for (std::size_t i = 0; i < some.size(); ++i)
            ASSERT_EQ(some[i], (i < count ? all : asked)[300 + i]) << i << " of " << count;
    }
}

TEST(ColourConversion, isMadeOnceForEqualProfiles)
{
    const auto first = ColourConversion::toSRGB(described(displayP3Profile()));
    const auto second = ColourConversion::toSRGB(described(displayP3Profile()));
    EXPECT_EQ(first, second);
    EXPECT_NE(first, ColourConversion::toSRGB(described(rgbProfile(kP3, 2.2))));
}

TEST(ColourConversion, askedForByManyThreadsAtOnceIsKeptOnce)
{
    constexpr std::size_t kThreads = 4;
    // Measured points: long enough in the making for all to have begun.
    const ColourDescription colour = described(bentProfile(sRGBProfile(), 7, 0));
    std::array<std::shared_ptr<const ColourConversion>, kThreads> found;
    std::latch ready(kThreads);
    std::vector<std::thread> threads;
    for (auto &each : found) {
        threads.emplace_back([&] {
            ready.arrive_and_wait();
            each = ColourConversion::toSRGB(colour);
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_TRUE(found[0]);
    EXPECT_EQ(std::set(found.begin(), found.end()).size(), 1U);
    EXPECT_EQ(ColourConversion::toSRGB(colour), found[0]);
}

} // namespace
} // namespace tallowmere
