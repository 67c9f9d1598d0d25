// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/codecs/containers/LateCodec.h"

#include "IsoFile.h"
#include "tests/imaging/codecs/KeepingSink.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

namespace tallowmere {
namespace {

bool isLoaded(const std::string &library)
{
    std::ifstream maps("/proc/self/maps");
    const std::string text((std::istreambuf_iterator<char>(maps)), {});
    return text.find(library) != std::string::npos;
}

TEST(LateCodec, loadsItsLibrariesForTheFirstDecodeOnly)
{
    const Bytes file = fileOf(Coding::av1, {quadrants(Coding::av1)}).bytes();
    const LateCodec codec(MediaFamily::avif);
    EXPECT_TRUE(codec.recognises(file));
    EXPECT_EQ(codec.storedSize(file), (PixelSize{64, 64}));
    EXPECT_FALSE(isLoaded("libavif")) << "a start without such pictures must not pay for them";
    KeepingSink sink;
    EXPECT_FALSE(codec.decode(file, {}, sink));
    EXPECT_EQ(sink.rowCount(), 64U);
    EXPECT_TRUE(isLoaded("libavif"));
}

TEST(LateCodec, withoutItsModuleFilesAreUnsupported)
{
    const ContainerModule missing("/nonexistent/containers.so");
    const Bytes file = fileOf(Coding::hevc, {quadrants(Coding::hevc)}).bytes();
    const LateCodec codec(MediaFamily::heif, missing);
    EXPECT_TRUE(codec.recognises(file));
    EXPECT_EQ(codec.storedSize(file), (PixelSize{64, 64}));
    KeepingSink sink;
    EXPECT_EQ(codec.decode(file, {}, sink), DecodeFailure::unsupported);
}

TEST(LateCodec, aLibraryThatIsNoModuleOfOursIsNotUsed)
{
    const ContainerModule foreign("libm.so.6");
    EXPECT_EQ(foreign.codec(MediaFamily::avif), nullptr);
}

TEST(LateCodec, leavesTheOtherFamilyAlone)
{
    const Bytes avif = fileOf(Coding::av1, {quadrants(Coding::av1)}).bytes();
    const Bytes heif = fileOf(Coding::hevc, {quadrants(Coding::hevc)}).bytes();
    EXPECT_FALSE(LateCodec(MediaFamily::heif).recognises(avif));
    EXPECT_FALSE(LateCodec(MediaFamily::avif).recognises(heif));
    EXPECT_EQ(ContainerModule::installed().codec(MediaFamily::none), nullptr);
}

} // namespace
} // namespace tallowmere
