// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/pixels/Orientation.h"
#include "imaging/pixels/PixelBuffer.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tallowmere {

/// Puts rows that arrive from top to bottom where an orientation wants them in an upright bitmap.
///
/// Rows that stay rows are written in the bitmap itself. Rows that become columns are gathered and written some at a
/// time, so that each visit to a row of the bitmap fills whole cache lines.
class RowPlacement final
{
public:
    /// @p upright has the size after @p orientation, and outlives this. Throws std::bad_alloc.
    RowPlacement(PixelBuffer &upright, Orientation orientation);

    /// What a placement allocates for rows of @p width pixels.
    [[nodiscard]] static std::uint64_t workingBytes(std::uint32_t width, Orientation orientation);

    /// Where the pixels of the next row are to be written.
    [[nodiscard]] std::byte *nextRow();
    void rowDone();
    /// Writes what was gathered; no row may follow.
    void finish();
    [[nodiscard]] std::uint32_t rowsDone() const { return m_done; }

private:
    void writeColumns();

    PixelBuffer &m_upright;
    Orientation m_orientation;
    PixelSize m_rows; ///< before the orientation is applied
    std::uint32_t m_done = 0;
    std::uint32_t m_written = 0;
    std::vector<std::uint32_t> m_gathered;
};

} // namespace tallowmere
