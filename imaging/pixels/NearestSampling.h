// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/pixels/PixelBuffer.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tallowmere {

/// A side of a picture laid over the pixels of a screen, larger or smaller than the picture itself.
struct LaidSide
{
    double start = 0.0; ///< where the picture begins, screen pixels
    double length = 0.0;

    /// The pixels of the screen whose centres the side covers, up to but not including the second.
    [[nodiscard]] std::int64_t firstCovered() const;
    [[nodiscard]] std::int64_t endCovered() const;
    /// The pixel of a side of @p count pixels that lies under the centre of the screen's @p pixel; the nearest where
    /// none does.
    [[nodiscard]] std::uint32_t sourcePixel(std::int64_t pixel, std::uint32_t count) const;
};

/// What a screen shows of a picture laid over it when each of its pixels takes the picture's nearest one.
///
/// Only what is asked for is computed. One thread.
class NearestSampling final
{
public:
    /// @p source: not empty; outlives this. @p left up to but not including @p right: the screen's columns wanted.
    /// Throws std::bad_alloc.
    NearestSampling(const PixelBuffer &source, LaidSide horizontal, LaidSide vertical, std::int64_t left,
                    std::int64_t right);

    [[nodiscard]] std::size_t rowBytes() const { return m_columns.size() * PixelBuffer::kBytesPerPixel; }
    /// Writes the screen's rows @p top up to but not including @p bottom, one after the other without padding.
    void rows(std::int64_t top, std::int64_t bottom, std::byte *out);

private:
    void sampleRow(std::uint32_t sourceRow, std::uint32_t *out);

    const PixelBuffer &m_source;
    const LaidSide m_vertical;
    std::uint32_t m_firstColumn = 0;      ///< of the source
    std::vector<std::uint32_t> m_columns; ///< of the source, counted from the first, by the screen's
};

} // namespace tallowmere
