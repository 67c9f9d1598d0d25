// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <cstdint>
#include <optional>

namespace tallowmere {

/// How far one decode has come. Written by its thread, read by any.
class DecodeProgress final
{
public:
    void setRowCount(std::uint32_t rows) { m_rowCount.store(rows, std::memory_order_relaxed); }
    void setRowsDone(std::uint32_t rows) { m_rowsDone.store(rows, std::memory_order_relaxed); }

    /// From 0 to 1. Nothing as long as no row has come: many formats hand out all of theirs at the very end.
    [[nodiscard]] std::optional<double> fraction() const
    {
        const std::uint32_t done = m_rowsDone.load(std::memory_order_relaxed);
        const std::uint32_t count = m_rowCount.load(std::memory_order_relaxed);
        if (done == 0 || count == 0)
            return std::nullopt;
        return done < count ? static_cast<double>(done) / count : 1.0;
    }

private:
    std::atomic<std::uint32_t> m_rowCount = 0;
    std::atomic<std::uint32_t> m_rowsDone = 0;
};

} // namespace tallowmere
