// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/codecs/Exif.h"

#include <array>
#include <cstdint>
#include <cstring>

namespace tallowmere {

namespace {

constexpr std::uint16_t kOrientationTag = 274;
constexpr std::uint16_t kTypeByte = 1;
constexpr std::uint16_t kTypeShort = 3;
constexpr std::uint16_t kTypeLong = 4;
constexpr std::size_t kEntryBytes = 12;

/// Reads numbers of one byte order, and zero past the end.
class TiffBytes
{
public:
    TiffBytes(std::span<const std::byte> bytes, bool littleEndian) : m_bytes(bytes), m_littleEndian(littleEndian) {}

    [[nodiscard]] bool holds(std::size_t offset, std::size_t count) const
    {
        return offset <= m_bytes.size() && count <= m_bytes.size() - offset;
    }
    [[nodiscard]] std::uint8_t byteAt(std::size_t offset) const
    {
        return holds(offset, 1) ? std::to_integer<std::uint8_t>(m_bytes[offset]) : std::uint8_t{0};
    }
    [[nodiscard]] std::uint16_t shortAt(std::size_t offset) const
    {
        const std::uint16_t first = byteAt(offset);
        const std::uint16_t second = byteAt(offset + 1);
        return static_cast<std::uint16_t>(m_littleEndian ? first | second << 8 : first << 8 | second);
    }
    [[nodiscard]] std::uint32_t longAt(std::size_t offset) const
    {
        const std::uint32_t first = shortAt(offset);
        const std::uint32_t second = shortAt(offset + 2);
        return m_littleEndian ? first | second << 16 : first << 16 | second;
    }

private:
    std::span<const std::byte> m_bytes;
    bool m_littleEndian;
};

bool startsWith(std::span<const std::byte> bytes, const char *text, std::size_t length)
{
    return bytes.size() >= length && std::memcmp(bytes.data(), text, length) == 0;
}

Orientation orientationOfEntry(const TiffBytes &tiff, std::size_t entry)
{
    const std::size_t value = entry + 8;
    switch (tiff.shortAt(entry + 2)) {
    case kTypeByte:
        return orientationFromExif(tiff.byteAt(value));
    case kTypeShort:
        return orientationFromExif(tiff.shortAt(value));
    case kTypeLong:
        return orientationFromExif(tiff.longAt(value));
    default:
        return Orientation::upright;
    }
}

} // namespace

Orientation orientationFromTiff(std::span<const std::byte> bytes)
{
    const bool littleEndian = startsWith(bytes, "II*\0", 4);
    if (!littleEndian && !startsWith(bytes, "MM\0*", 4))
        return Orientation::upright;
    const TiffBytes tiff(bytes, littleEndian);
    const std::size_t directory = tiff.longAt(4);
    if (!tiff.holds(directory, 2))
        return Orientation::upright;
    const std::size_t count = tiff.shortAt(directory);
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t entry = directory + 2 + i * kEntryBytes;
        if (!tiff.holds(entry, kEntryBytes))
            break;
        if (tiff.shortAt(entry) == kOrientationTag)
            return orientationOfEntry(tiff, entry);
    }
    return Orientation::upright;
}

Orientation orientationFromExifBlock(std::span<const std::byte> block)
{
    constexpr std::size_t kPrefixBytes = 6;
    if (startsWith(block, "Exif\0", 5) && block.size() >= kPrefixBytes)
        return orientationFromTiff(block.subspan(kPrefixBytes));
    return orientationFromTiff(block);
}

} // namespace tallowmere
