// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/codecs/containers/IsoBox.h"
#include "tests/imaging/codecs/Pictures.h"

#include <string>

// AVIF and HEIC files put together box by box, so that each test can bend the box it is about.
namespace tallowmere {

/// Big-endian, @p count bytes wide.
[[nodiscard]] Bytes number(std::uint64_t value, std::size_t count);
[[nodiscard]] Bytes box(const std::string &type, std::span<const std::byte> payload);
/// With version and flags in front.
[[nodiscard]] Bytes fullBox(const std::string &type, std::uint8_t version, std::uint32_t flags,
                            std::span<const std::byte> payload);

struct TestProperty
{
    std::string type;
    Bytes payload;
};

struct TestItem
{
    std::uint16_t id = 1;
    std::string type;
    std::vector<TestProperty> properties;
    Bytes data;
    std::string referenceType; ///< empty: none
    std::vector<std::uint16_t> references;
};

struct IsoFile
{
    std::string majorBrand;
    std::vector<std::string> brands;
    std::uint16_t primary = 1;
    std::vector<TestItem> items;

    [[nodiscard]] Bytes bytes() const;
};

[[nodiscard]] TestProperty spatialExtent(std::uint32_t width, std::uint32_t height);
/// @p quarters anticlockwise.
[[nodiscard]] TestProperty rotation(unsigned quarters);
/// 0 exchanges top and bottom, 1 left and right.
[[nodiscard]] TestProperty mirror(unsigned mode);
/// Width, height, horizontal and vertical offset of the centres, in pixels.
[[nodiscard]] TestProperty cleanAperture(std::array<std::int32_t, 4> values);
[[nodiscard]] TestProperty colourBox(const std::string &kind, Bytes payload);
/// What a grid item's data says. 16-bit sides.
[[nodiscard]] Bytes gridData(unsigned columns, unsigned rows, PixelSize output);

enum class Coding
{
    av1,
    hevc
};

/// 64 x 64: red, green over blue, white; a quarter each.
[[nodiscard]] TestItem quadrants(Coding coding, std::vector<TestProperty> more = {});
/// 64 x 64: opaque above, half transparent below. Belongs to item 1.
[[nodiscard]] TestItem halfAlpha(Coding coding, std::uint16_t id = 2);
/// An Exif item that describes item 1 and says @p orientation.
[[nodiscard]] TestItem exifItem(unsigned orientation, std::uint16_t id = 9);
[[nodiscard]] IsoFile fileOf(Coding coding, std::vector<TestItem> items);

} // namespace tallowmere
