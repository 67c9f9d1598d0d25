// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/codecs/Exif.h"

#include "Pictures.h"

#include <gtest/gtest.h>

namespace tallowmere {

namespace {

TEST(Exif, everyOrientationIsReadInBothByteOrders)
{
    for (unsigned value = 1; value <= 8; ++value) {
        for (const bool littleEndian : {true, false}) {
            EXPECT_EQ(orientationFromTiff(tiffWithOrientation(value, littleEndian)), static_cast<Orientation>(value));
            EXPECT_EQ(orientationFromExifBlock(exifWithOrientation(value, littleEndian)),
                      static_cast<Orientation>(value));
        }
    }
}

TEST(Exif, valuesThatDoNotExistAreUpright)
{
    for (const unsigned value : {0U, 9U, 255U, 65'535U})
        EXPECT_EQ(orientationFromTiff(tiffWithOrientation(value)), Orientation::upright) << value;
}

TEST(Exif, aBlockWithoutThePrefixIsReadToo)
{
    EXPECT_EQ(orientationFromExifBlock(tiffWithOrientation(6)), Orientation::rotated90Clockwise);
}

TEST(Exif, aStructureCutShortAnywhereIsUpright)
{
    const Bytes whole = tiffWithOrientation(6);
    constexpr std::size_t kEndOfEntry = 8 + 2 + 12;
    for (std::size_t length = 0; length < kEndOfEntry; ++length)
        EXPECT_EQ(orientationFromTiff(std::span(whole).first(length)), Orientation::upright) << length;
}

TEST(Exif, aDirectoryOutOfBoundsIsUpright)
{
    for (const std::uint32_t offset : {0xFFFF'FFFFU, 0xFFFF'FFF0U, 27U, 0U}) {
        Bytes tiff = tiffWithOrientation(6, false);
        putBigEndian(std::span(tiff).subspan(4, 4), offset);
        EXPECT_EQ(orientationFromTiff(tiff), Orientation::upright) << offset;
    }
}

TEST(Exif, aTagOfAStrangeTypeIsUpright)
{
    Bytes tiff = tiffWithOrientation(6);
    tiff[12] = std::byte{5}; // a rational
    EXPECT_EQ(orientationFromTiff(tiff), Orientation::upright);
}

} // namespace

} // namespace tallowmere
