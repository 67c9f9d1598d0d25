// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/pixels/RowPlacement.h"

#include "imaging/pixels/PixelKernels.h"

#include <algorithm>

namespace tallowmere {
namespace {

/// Rows that become columns together: two cache lines of pixels.
constexpr std::uint32_t kGatheredRows = 32;

bool mirrorsRows(Orientation orientation)
{
    return orientation == Orientation::mirroredHorizontally || orientation == Orientation::rotated180;
}

bool startsAtBottom(Orientation orientation)
{
    return orientation == Orientation::mirroredVertically || orientation == Orientation::rotated180;
}

std::uint32_t *pixels(std::byte *row)
{
    return static_cast<std::uint32_t *>(static_cast<void *>(row));
}

} // namespace

RowPlacement::RowPlacement(PixelBuffer &upright, Orientation orientation)
    : m_upright(upright), m_orientation(orientation),
      m_rows(swapsSides(orientation) ? upright.size().transposed() : upright.size())
{
    if (swapsSides(orientation))
        m_gathered.resize(std::size_t{m_rows.width} * kGatheredRows);
}

std::uint64_t RowPlacement::workingBytes(std::uint32_t width, Orientation orientation)
{
    return swapsSides(orientation) ? std::uint64_t{width} * kGatheredRows * PixelBuffer::kBytesPerPixel : 0;
}

std::byte *RowPlacement::nextRow()
{
    if (swapsSides(m_orientation)) {
        std::uint32_t *row = &m_gathered[std::size_t{m_done - m_written} * m_rows.width];
        return static_cast<std::byte *>(static_cast<void *>(row));
    }
    return m_upright.row(startsAtBottom(m_orientation) ? m_rows.height - 1 - m_done : m_done);
}

void RowPlacement::rowDone()
{
    if (mirrorsRows(m_orientation)) {
        std::uint32_t *row = pixels(nextRow());
        std::reverse(row, row + m_rows.width);
    }
    ++m_done;
    if (m_done - m_written == kGatheredRows && swapsSides(m_orientation))
        writeColumns();
}

void RowPlacement::finish()
{
    if (swapsSides(m_orientation) && m_done > m_written)
        writeColumns();
}

void RowPlacement::writeColumns()
{
    const bool bottomUp =
        m_orientation == Orientation::transversed || m_orientation == Orientation::rotated270Clockwise;
    const bool rightToLeft =
        m_orientation == Orientation::transversed || m_orientation == Orientation::rotated90Clockwise;
    const std::uint32_t count = m_done - m_written;
    const auto width = static_cast<std::ptrdiff_t>(m_rows.width);
    const auto outWidth = static_cast<std::ptrdiff_t>(m_rows.height);
    const std::uint32_t left = rightToLeft ? m_rows.height - m_done : m_written;
    std::uint32_t *out = pixels(m_upright.row(bottomUp ? m_rows.width - 1 : 0)) + left;
    const std::uint32_t *first = &m_gathered[rightToLeft ? std::size_t{count - 1} * m_rows.width : 0];
    transpose(first, rightToLeft ? -width : width, m_rows.width, count, out, bottomUp ? -outWidth : outWidth);
    m_written = m_done;
}

} // namespace tallowmere
