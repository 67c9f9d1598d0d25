// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/codecs/PngCodec.h"
#include "KeepingSink.h"
#include "Pictures.h"

#include <gtest/gtest.h>

#include <lcms2.h>
#include <zlib.h>

namespace tallowmere {

namespace {

ColourDescription colourOf(std::initializer_list<Bytes> chunks)
{
    Bytes png = makePng({});
    for (const Bytes &chunk : chunks)
        png = withChunkBefore(png, "IDAT", chunk);
    KeepingSink sink;
    EXPECT_FALSE(PngCodec().decode(png, {}, sink));
    return sink.layout().colour;
}

Bytes numbers(std::initializer_list<std::uint32_t> values)
{
    Bytes data(values.size() * 4);
    auto where = std::span(data);
    for (const std::uint32_t value : values) {
        putBigEndian(where.first(4), value);
        where = where.subspan(4);
    }
    return data;
}

Bytes cicp(int primaries, int transfer, int matrix)
{
    const std::array data{static_cast<std::byte>(primaries), static_cast<std::byte>(transfer),
                          static_cast<std::byte>(matrix), std::byte{1}};
    return pngChunk("cICP", data);
}

Bytes srgbProfile()
{
    const cmsHPROFILE profile = cmsCreate_sRGBProfile();
    cmsUInt32Number length = 0;
    cmsSaveProfileToMem(profile, nullptr, &length);
    Bytes bytes(length);
    cmsSaveProfileToMem(profile, bytes.data(), &length);
    cmsCloseProfile(profile);
    return bytes;
}

Bytes iccpChunk(const Bytes &profile)
{
    uLongf length = ::compressBound(profile.size());
    Bytes deflated(length);
    ::compress(reinterpret_cast<Bytef *>(deflated.data()), &length, reinterpret_cast<const Bytef *>(profile.data()),
               profile.size());
    deflated.resize(length);
    return pngChunk("iCCP", joined({bytesOf(std::string_view("name\0\0", 6)), deflated}));
}

const Bytes kGamma = pngChunk("gAMA", numbers({100'000}));

TEST(PngColour, nothingSaidIsUnknown)
{
    EXPECT_TRUE(colourOf({}).unknown());
}

TEST(PngColour, aProfileIsHandedOnAsItIs)
{
    const auto colour = colourOf({iccpChunk(srgbProfile()), kGamma});
    ASSERT_TRUE(colour.icc);
    EXPECT_EQ(*colour.icc, srgbProfile());
    EXPECT_FALSE(colour.gamma);
}

TEST(PngColour, aBrokenProfileIsNone)
{
    EXPECT_TRUE(colourOf({iccpChunk(bytesOf("not a profile"))}).unknown());
}

TEST(PngColour, gammaAndPrimariesAreHandedOn)
{
    const auto colour =
        colourOf({kGamma, pngChunk("cHRM", numbers({31'270, 32'900, 64'000, 33'000, 30'000, 60'000, 15'000, 6'000}))});
    ASSERT_TRUE(colour.gamma);
    EXPECT_DOUBLE_EQ(colour.gamma->gamma, 1.0);
    ASSERT_TRUE(colour.gamma->xy);
    EXPECT_NEAR((*colour.gamma->xy)[0], 0.3127, 1e-4);
    EXPECT_NEAR((*colour.gamma->xy)[7], 0.06, 1e-4);
}

TEST(PngColour, gammaAloneHasNoPrimaries)
{
    const auto colour = colourOf({kGamma});
    ASSERT_TRUE(colour.gamma);
    EXPECT_FALSE(colour.gamma->xy);
}

TEST(PngColour, srgbGoesBeforeGamma)
{
    EXPECT_TRUE(colourOf({pngChunk("sRGB", Bytes(1)), pngChunk("gAMA", numbers({45'455}))}).unknown());
}

TEST(PngColour, codePointsGoBeforeAllElse)
{
    const auto colour = colourOf({cicp(9, 16, 0), iccpChunk(srgbProfile()), kGamma});
    EXPECT_EQ(colour.cicp, (Cicp{.primaries = 9, .transfer = 16, .matrix = 0, .fullRange = true}));
    EXPECT_FALSE(colour.icc);
    EXPECT_FALSE(colour.gamma);
}

TEST(PngColour, codePointsThatSayNothingAreLeftAside)
{
    EXPECT_TRUE(colourOf({cicp(2, 2, 0), kGamma}).gamma);
    EXPECT_TRUE(colourOf({cicp(1, 13, 1), kGamma}).gamma); // YCbCr isn't what a PNG holds
    EXPECT_TRUE(colourOf({pngChunk("cICP", Bytes(3)), kGamma}).gamma);
}

} // namespace

} // namespace tallowmere
