// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/codecs/CmykConversion.h"
#include "imaging/codecs/JpegCodec.h"
#include "KeepingSink.h"
#include "Pictures.h"

#include <gtest/gtest.h>

#include <lcms2.h>

namespace tallowmere {

namespace {

constexpr int kNear = 5;

/// A printer's profile in which every ink looks the same: L*a*b* of a middle red.
Bytes profileOfARedPress()
{
    const cmsHPROFILE profile = cmsCreateProfilePlaceholder(nullptr);
    cmsSetProfileVersion(profile, 2.1);
    cmsSetDeviceClass(profile, cmsSigOutputClass);
    cmsSetColorSpace(profile, cmsSigCmykData);
    cmsSetPCS(profile, cmsSigLabData);
    cmsPipeline *table = cmsPipelineAlloc(nullptr, 4, 3);
    cmsStage *grid = cmsStageAllocCLut16bit(nullptr, 2, 4, 3, nullptr);
    cmsStageSampleCLut16bit(
        grid,
        [](const cmsUInt16Number *, cmsUInt16Number *out, void *) -> cmsInt32Number {
            const cmsCIELab red{50.0, 60.0, 40.0};
            cmsFloat2LabEncodedV2(out, &red);
            return TRUE;
        },
        nullptr, 0);
    cmsPipelineInsertStage(table, cmsAT_END, grid);
    for (const cmsTagSignature tag : {cmsSigAToB0Tag, cmsSigAToB1Tag})
        cmsWriteTag(profile, tag, table);
    cmsUInt32Number length = 0;
    cmsSaveProfileToMem(profile, nullptr, &length);
    Bytes bytes(length);
    cmsSaveProfileToMem(profile, bytes.data(), &length);
    cmsPipelineFree(table);
    cmsCloseProfile(profile);
    return bytes;
}

std::array<int, 4> firstPixel(const Bytes &jpeg)
{
    KeepingSink sink;
    EXPECT_FALSE(JpegCodec().decode(jpeg, {}, sink));
    EXPECT_FALSE(sink.layout().colour.icc) << "the rows are sRGB by now";
    return sink.pixel(3, 3);
}

void expectNear(const std::array<int, 4> &found, const std::array<int, 4> &expected)
{
    for (std::size_t i = 0; i < found.size(); ++i)
        EXPECT_NEAR(found[i], expected[i], kNear) << "BGRA"[i];
}

JpegRecipe inkOf(std::array<std::uint8_t, 4> samples, bool adobe)
{
    return {.components = 4, .sampling = 1, .adobe = adobe, .quality = 100, .paint = [samples](auto, auto) {
                return samples;
            }};
}

TEST(JpegInk, adobeStoresItInverted)
{
    expectNear(firstPixel(makeJpeg(inkOf({255, 255, 255, 255}, true))), {255, 255, 255, 255});
    expectNear(firstPixel(makeJpeg(inkOf({255, 255, 255, 0}, true))), {0, 0, 0, 255});
    expectNear(firstPixel(makeJpeg(inkOf({0, 255, 255, 255}, true))), {255, 255, 0, 255}); // cyan
}

TEST(JpegInk, othersStoreItAsItIs)
{
    expectNear(firstPixel(makeJpeg(inkOf({0, 0, 0, 0}, false))), {255, 255, 255, 255});
    expectNear(firstPixel(makeJpeg(inkOf({0, 0, 0, 255}, false))), {0, 0, 0, 255});
    expectNear(firstPixel(makeJpeg(inkOf({0, 255, 0, 0}, false))), {255, 0, 255, 255}); // magenta
}

TEST(JpegInk, goesThroughItsProfile)
{
    const Bytes part = joined({bytesOf(std::string_view("ICC_PROFILE\0\1\1", 14)), profileOfARedPress()});
    JpegRecipe recipe = inkOf({200, 200, 200, 200}, true);
    recipe.markers.emplace_back(2, part);
    const auto pixel = firstPixel(makeJpeg(recipe));
    EXPECT_GT(pixel[2], 180);
    EXPECT_LT(pixel[1], 110);
    EXPECT_LT(pixel[0], 110);
    EXPECT_EQ(pixel[3], 255);
}

TEST(JpegInk, aBrokenProfileIsLeftAside)
{
    JpegRecipe recipe = inkOf({255, 255, 255, 255}, true);
    recipe.markers.emplace_back(2, bytesOf(std::string_view("ICC_PROFILE\0\1\1not a profile", 27)));
    expectNear(firstPixel(makeJpeg(recipe)), {255, 255, 255, 255});
}

TEST(JpegInk, theNaiveRuleMultipliesInkAndBlack)
{
    const CmykConversion conversion({}, CmykConversion::Samples::ink);
    const std::array<std::uint8_t, 4> cmyk{51, 102, 153, 51};
    std::array<std::byte, 4> bgra{};
    conversion.convertRow(cmyk.data(), bgra.data(), 1);
    EXPECT_EQ(bgra, (std::array{std::byte{82}, std::byte{122}, std::byte{163}, std::byte{255}}));
}

} // namespace

} // namespace tallowmere
