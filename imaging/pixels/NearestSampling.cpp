// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/pixels/NearestSampling.h"

#include "imaging/pixels/ColourConversion.h"
#include "imaging/pixels/PixelKernels.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <optional>
#include <utility>

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

NearestSampling::NearestSampling(const PixelBuffer &source, bool hasAlpha,
                                 std::shared_ptr<const ColourConversion> conversion, LaidSide horizontal,
                                 LaidSide vertical, std::int64_t left, std::int64_t right)
    : m_source(source), m_hasAlpha(hasAlpha), m_conversion(std::move(conversion)), m_vertical(vertical)
{
    m_columns.reserve(static_cast<std::size_t>(std::max<std::int64_t>(right - left, 0)));
    for (std::int64_t x = left; x < right; ++x)
        m_columns.push_back(horizontal.sourcePixel(x, source.size().width));
    if (m_columns.empty())
        return;
    m_firstColumn = m_columns.front();
    for (std::uint32_t &column : m_columns)
        column -= m_firstColumn;
    const std::size_t distinct = std::size_t{m_columns.back()} + 1;
    if (m_conversion && distinct < m_columns.size())
        m_converted.resize(distinct);
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
    std::size_t width = m_source.size().width - m_firstColumn;
    if (!m_converted.empty()) {
        // The picture is enlarged: each of its pixels is converted once, not once for every pixel of the screen.
        std::copy_n(pixels, m_converted.size(), m_converted.begin());
        convert(reinterpret_cast<std::byte *>(m_converted.data()), m_converted.size());
        pixels = m_converted.data();
        width = m_converted.size();
    }
    pickPixels(pixels, width, m_columns.data(), m_columns.size(), out);
    if (m_conversion && m_converted.empty())
        convert(reinterpret_cast<std::byte *>(out), m_columns.size());
}

void NearestSampling::convert(std::byte *pixels, std::size_t count) const
{
    if (m_hasAlpha)
        unpremultiply(pixels, count);
    m_conversion->convert(pixels, count);
    if (m_hasAlpha)
        premultiply(pixels, count);
}

} // namespace tallowmere
