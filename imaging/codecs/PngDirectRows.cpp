// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/codecs/PngDirectRows.h"

#include "imaging/codecs/PngFilters.h"

#include <array>
#include <cstring>
#include <utility>

namespace tallowmere {

namespace {

/// The pixel's four bytes at once: written one by one they would keep the compiler from using vectors.
void put(std::byte *bgra, std::array<std::byte, 4> pixel)
{
    std::memcpy(bgra, pixel.data(), pixel.size());
}

constexpr std::byte kOpaque{0xFF};

} // namespace

bool PngDirectRows::serves(const PngSummary &summary, bool hasAlpha)
{
    const bool alphaIsStored = summary.paletted || summary.channels % 2 == 0;
    return !summary.interlaced && summary.bitDepth == 8 && (alphaIsStored || !hasAlpha);
}

PngDirectRows::PngDirectRows(const PngSummary &summary, PngInflation inflation, const PngPalette &palette)
    : m_summary(summary), m_inflation(std::move(inflation)), m_palette(palette),
      m_rowBytes(std::size_t{summary.size.width} * summary.channels), m_zeros(m_rowBytes),
      m_next(m_inflation.rows.get()), m_above(m_zeros)
{}

bool PngDirectRows::readRow(std::byte *bgra)
{
    const std::byte filter = *m_next;
    const std::span row(m_next + 1, m_rowBytes);
    if (!undoPngFilter(filter, row, m_above, m_summary.channels))
        return false;
    convert(row.data(), bgra);
    m_above = row;
    m_next += 1 + m_rowBytes;
    return true;
}

void PngDirectRows::convert(const std::byte *row, std::byte *bgra) const
{
    const std::size_t width = m_summary.size.width;
    switch (m_summary.channels) {
    case 1:
        for (std::size_t x = 0; x < width; ++x) {
            const std::byte grey = row[x];
            put(bgra + x * 4, m_summary.paletted ? m_palette[std::to_integer<std::size_t>(grey)]
                                                 : std::array{grey, grey, grey, kOpaque});
        }
        break;
    case 2:
        for (std::size_t x = 0; x < width; ++x)
            put(bgra + x * 4, {row[x * 2], row[x * 2], row[x * 2], row[x * 2 + 1]});
        break;
    case 3:
        for (std::size_t x = 0; x < width; ++x)
            put(bgra + x * 4, {row[x * 3 + 2], row[x * 3 + 1], row[x * 3], kOpaque});
        break;
    default:
        for (std::size_t x = 0; x < width; ++x)
            put(bgra + x * 4, {row[x * 4 + 2], row[x * 4 + 1], row[x * 4], row[x * 4 + 3]});
        break;
    }
}

} // namespace tallowmere
