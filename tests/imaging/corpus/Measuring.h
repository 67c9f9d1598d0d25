// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/codecs/Codec.h"

#include <array>
#include <chrono>
#include <vector>

namespace tallowmere {

/// Forgets the rows and keeps their mean.
class MeasuringSink final : public RowSink
{
public:
    [[nodiscard]] bool begin(const RowLayout &layout) override;
    [[nodiscard]] std::byte *nextRow() override { return m_row.data(); }
    [[nodiscard]] bool rowDone() override;
    [[nodiscard]] DecodeFailure failure() const override { return DecodeFailure::corrupt; }

    /// R, G, B, A.
    [[nodiscard]] std::array<double, 4> mean() const;
    [[nodiscard]] std::uint64_t rows() const { return m_rows; }

private:
    std::vector<std::byte> m_row;
    std::array<std::uint64_t, 4> m_sums{}; ///< B, G, R, A
    std::uint64_t m_rows = 0;
};

/// What a piece of work cost the whole process: processor time in all threads, and memory at its peak beyond what was
/// resident before. Processor time, so that a busy machine changes nothing.
class Cost final
{
public:
    Cost();
    [[nodiscard]] std::chrono::duration<double> processorTime() const;
    /// Bytes; nothing where the kernel doesn't let us reset its peak.
    [[nodiscard]] std::optional<std::size_t> peakMemory() const;

private:
    double m_startSeconds;
    std::optional<std::size_t> m_startBytes;
};

} // namespace tallowmere
