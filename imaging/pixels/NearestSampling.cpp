// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/pixels/NearestSampling.h"

#include "imaging/pixels/PixelKernels.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <optional>

namespace tallowmere {

std::int64_t LaidSide::firstCovered() const
{
    return static_cast<std::int64_t>(std::ceil(start - 0.5));
}

std::int64_t LaidSide::endCovered() const
{
    return static_cast<std::int64_t>(std::ceil(start + length - 0.5));
}

std::uint32_t LaidSide::sourcePixel(std::int64_t pixel, std::uint32_t count) const
{
    const double position = (static_cast<double>(pixel) + 0.5 - start) * count / length;
    // Written so that no number at all counts as the first pixel.
    return position > 0 ? static_cast<std::uint32_t>(std::min(position, count - 1.0)) : 0;
}

NearestSampling::NearestSampling(const PixelBuffer &source, LaidSide horizontal, LaidSide vertical, std::int64_t left,
                                 std::int64_t right)
    : m_source(source), m_vertical(vertical)
{
    m_columns.reserve(static_cast<std::size_t>(std::max<std::int64_t>(right - left, 0)));
    for (std::int64_t x = left; x < right; ++x)
        m_columns.push_back(horizontal.sourcePixel(x, source.size().width));
    if (m_columns.empty())
        return;
    m_firstColumn = m_columns.front();
    for (std::uint32_t &column : m_columns)
        column -= m_firstColumn;
}

void NearestSampling::rows(std::int64_t top, std::int64_t bottom, std::byte *out)
{
    std::optional<std::uint32_t> last;
    for (std::int64_t y = top; y < bottom; ++y, out += rowBytes()) {
        const std::uint32_t sourceRow = m_vertical.sourcePixel(y, m_source.size().height);
        if (last == sourceRow)
            std::memcpy(out, out - rowBytes(), rowBytes());
        else
            sampleRow(sourceRow, reinterpret_cast<std::uint32_t *>(out));
        last = sourceRow;
    }
}

void NearestSampling::sampleRow(std::uint32_t sourceRow, std::uint32_t *out)
{
    const auto *pixels = reinterpret_cast<const std::uint32_t *>(m_source.row(sourceRow)) + m_firstColumn;
    pickPixels(pixels, m_source.size().width - m_firstColumn, m_columns.data(), m_columns.size(), out);
}

} // namespace tallowmere
