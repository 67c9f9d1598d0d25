// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace tallowmere {

/// Four characters as the big-endian number that stands for them in a file.
using FourCC = std::uint32_t;

[[nodiscard]] constexpr FourCC fourCC(const char (&text)[5])
{
    FourCC code = 0;
    for (int i = 0; i < 4; ++i)
        code = code << 8 | static_cast<unsigned char>(text[i]);
    return code;
}

/// Takes big-endian numbers from a range. Reading past its end gives zeros and is remembered: see ok().
class ByteReader final
{
public:
    explicit ByteReader(std::span<const std::byte> bytes) : m_bytes(bytes) {}

    /// @p count: bytes, at most 8.
    [[nodiscard]] std::uint64_t number(std::size_t count);
    [[nodiscard]] std::uint8_t u8() { return static_cast<std::uint8_t>(number(1)); }
    [[nodiscard]] std::uint16_t u16() { return static_cast<std::uint16_t>(number(2)); }
    [[nodiscard]] std::uint32_t u32() { return static_cast<std::uint32_t>(number(4)); }
    /// Empty, and no longer ok(), when fewer than @p count bytes are left.
    [[nodiscard]] std::span<const std::byte> take(std::size_t count);
    void skip(std::size_t count) { static_cast<void>(take(count)); }

    [[nodiscard]] std::span<const std::byte> rest() const { return m_bytes; }
    [[nodiscard]] bool ok() const { return m_ok; }

private:
    std::span<const std::byte> m_bytes;
    bool m_ok = true;
};

/// Takes bits from a range, the highest of each byte first; otherwise like ByteReader.
class BitReader final
{
public:
    explicit BitReader(std::span<const std::byte> bytes) : m_bytes(bytes) {}

    /// @p count: at most 32.
    [[nodiscard]] std::uint32_t bits(unsigned count);
    [[nodiscard]] bool flag() { return bits(1) != 0; }
    void skip(unsigned count);
    /// An unsigned Exp-Golomb number (ue(v) of ITU-T H.265, 9.2).
    [[nodiscard]] std::uint32_t expGolomb();
    [[nodiscard]] bool ok() const { return m_ok; }

private:
    std::span<const std::byte> m_bytes;
    std::size_t m_position = 0; ///< in bits
    bool m_ok = true;
};

/// One box of ISO/IEC 14496-12, without its header.
struct Box
{
    FourCC type = 0;
    std::span<const std::byte> payload;

    /// Takes the box at the start of @p rest off it. A box that claims more than there is ends with the range, as
    /// in a truncated file. Nothing at the end, and when the header makes no sense.
    [[nodiscard]] static std::optional<Box> next(std::span<const std::byte> &rest);
    /// The first of that type among the boxes in @p range. Not looked for below them.
    [[nodiscard]] static std::optional<Box> find(std::span<const std::byte> range, FourCC type);
};

} // namespace tallowmere
