// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/pixels/Filter.h"
#include "imaging/pixels/PixelSize.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace tallowmere {

/// The weights of one reduction: made once, read by any number of resamplers at once.
class Reduction final
{
public:
    /// @p to is at most @p from on both axes; neither is empty. Throws std::bad_alloc.
    Reduction(PixelSize from, PixelSize to);

    /// What a reduction and one resampler will allocate, at most.
    [[nodiscard]] static std::uint64_t workingBytes(PixelSize from, PixelSize to);

    [[nodiscard]] PixelSize from() const { return m_from; }
    [[nodiscard]] PixelSize to() const { return m_to; }

private:
    friend class Resampler;

    PixelSize m_from;
    PixelSize m_to;
    Filter m_vertical;
    int m_horizontalShift = 0;
    std::size_t m_quads = 0;             ///< groups of four taps in a row
    std::vector<std::uint32_t> m_starts; ///< see filterRow()
    std::vector<std::int16_t> m_weights; ///< see filterRow()
};

/// Reduces a picture row by row, keeping only the rows still needed.
///
/// Rows are premultiplied BGRA, going in from top to bottom. Each is first narrowed, then kept with six bits more than
/// a byte, so that the two passes round only once that shows. Allocates in the constructor alone.
class Resampler final
{
public:
    /// Makes result rows @p first up to but not including @p end. Throws std::bad_alloc.
    Resampler(std::shared_ptr<const Reduction> reduction, std::uint32_t first, std::uint32_t end);

    /// The first source row that the next result row depends on: before the first push(), the row to begin with. Only
    /// until finished().
    [[nodiscard]] std::uint32_t nextDependsFrom() const;
    /// Where the source rows wanted end.
    [[nodiscard]] std::uint32_t endSourceRow() const;
    [[nodiscard]] bool finished() const { return m_next == m_end; }

    /// Takes the next source row of from().width pixels; the first is nextDependsFrom(). pull() has said no before.
    void push(const std::byte *row);
    /// Writes the next result row of to().width pixels, or says that it needs more source rows, or that it was the
    /// last.
    [[nodiscard]] bool pull(std::byte *out);

private:
    std::int16_t *slot(std::uint32_t sourceRow);

    std::shared_ptr<const Reduction> m_reduction;
    std::uint32_t m_next;
    std::uint32_t m_end;
    std::uint32_t m_pushed; ///< index of the next source row
    std::size_t m_lanes;    ///< 16-bit lanes from one kept row to the next
    std::vector<std::int16_t> m_ring;
    std::vector<std::byte> m_padded; ///< a copy of a source row narrower than the filter
    std::vector<const std::int16_t *> m_rows;
};

} // namespace tallowmere
