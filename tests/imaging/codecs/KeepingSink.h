// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/codecs/Codec.h"

#include <array>
#include <vector>

namespace tallowmere {

/// Keeps the rows as they come, for a look at what a codec delivers.
class KeepingSink final : public RowSink
{
public:
    [[nodiscard]] bool begin(const RowLayout &layout) override
    {
        m_layout = layout;
        m_row.resize(std::size_t{layout.rows.width} * 4);
        return true;
    }
    [[nodiscard]] std::byte *nextRow() override { return m_row.data(); }
    [[nodiscard]] bool rowDone() override
    {
        m_rows.insert(m_rows.end(), m_row.begin(), m_row.end());
        ++m_rowCount;
        return m_rowCount < stopAfter;
    }
    [[nodiscard]] DecodeFailure failure() const override { return DecodeFailure::outOfMemory; }

    [[nodiscard]] const RowLayout &layout() const { return m_layout; }
    [[nodiscard]] std::uint32_t rowCount() const { return m_rowCount; }
    [[nodiscard]] const std::vector<std::byte> &rows() const { return m_rows; }
    /// B, G, R, A.
    [[nodiscard]] std::array<int, 4> pixel(std::uint32_t x, std::uint32_t y) const
    {
        const std::size_t start = (std::size_t{y} * m_layout.rows.width + x) * 4;
        const auto at = [&](std::size_t i) { return std::to_integer<int>(m_rows.at(start + i)); };
        return {at(0), at(1), at(2), at(3)};
    }

    std::uint32_t stopAfter = ~0U; ///< rows; then rowDone() says no

private:
    RowLayout m_layout;
    std::vector<std::byte> m_row;
    std::vector<std::byte> m_rows;
    std::uint32_t m_rowCount = 0;
};

} // namespace tallowmere
