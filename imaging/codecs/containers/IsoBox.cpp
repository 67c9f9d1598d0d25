// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/codecs/containers/IsoBox.h"

#include <algorithm>

namespace tallowmere {

std::uint64_t ByteReader::number(std::size_t count)
{
    std::uint64_t value = 0;
    for (const std::byte byte : take(count))
        value = value << 8 | std::to_integer<std::uint64_t>(byte);
    return value;
}

std::span<const std::byte> ByteReader::take(std::size_t count)
{
    if (count > m_bytes.size()) {
        m_ok = false;
        m_bytes = {};
        return {};
    }
    const auto taken = m_bytes.first(count);
    m_bytes = m_bytes.subspan(count);
    return taken;
}

std::uint32_t BitReader::bits(unsigned count)
{
    std::uint32_t value = 0;
    for (unsigned i = 0; i < count; ++i, ++m_position) {
        const std::size_t index = m_position / 8;
        if (index >= m_bytes.size()) {
            m_ok = false;
            return 0;
        }
        const unsigned bit = std::to_integer<unsigned>(m_bytes[index]) >> (7 - m_position % 8) & 1U;
        value = value << 1 | bit;
    }
    return value;
}

void BitReader::skip(unsigned count)
{
    m_position += count;
    m_ok = m_ok && m_position <= m_bytes.size() * 8;
}

std::uint32_t BitReader::expGolomb()
{
    unsigned zeros = 0;
    while (m_ok && zeros < 32 && !flag())
        ++zeros;
    if (!m_ok || zeros >= 32) {
        m_ok = false;
        return 0;
    }
    return (std::uint32_t{1} << zeros) - 1 + bits(zeros);
}

std::optional<Box> Box::next(std::span<const std::byte> &rest)
{
    ByteReader reader(rest);
    std::uint64_t size = reader.u32();
    const FourCC type = reader.u32();
    std::size_t header = 8;
    if (size == 1) {
        size = reader.number(8);
        header = 16;
    } else if (size == 0) {
        size = rest.size(); // to the end of the file
    }
    if (!reader.ok() || size < header)
        return std::nullopt;
    const auto available = static_cast<std::size_t>(std::min<std::uint64_t>(size, rest.size()));
    const Box box{type, rest.subspan(header, available - header)};
    rest = rest.subspan(available);
    return box;
}

std::optional<Box> Box::find(std::span<const std::byte> range, FourCC type)
{
    while (const auto box = next(range)) {
        if (box->type == type)
            return box;
    }
    return std::nullopt;
}

} // namespace tallowmere
