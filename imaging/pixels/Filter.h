// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tallowmere {

/// How much each source pixel of one axis gives to each result pixel: a Lanczos window of three lobes,
/// stretched by the ratio of reduction.
///
/// Lanczos, as a reduced photograph is looked at and has to stay crisp, and as what lies beyond the new sampling
/// rate is cut off steeply enough that fine patterns turn grey rather than into moiré. Weights are integers whose
/// sum is exactly 2^shift, so that even areas keep their value.
class Filter final
{
public:
    /// @p to is at most @p from, neither is zero. Sums of values of up to @p valueBits bits, times their weights, fit
    /// 32 bits.
    Filter(std::uint32_t from, std::uint32_t to, int valueBits);

    /// An upper bound of the taps any result pixel has.
    [[nodiscard]] static std::uint32_t mostTaps(std::uint32_t from, std::uint32_t to);

    [[nodiscard]] std::uint32_t taps() const { return m_taps; } ///< the same number for all results
    [[nodiscard]] int shift() const { return m_shift; }
    /// The first source pixel of result @p i; start + taps may pass the end of a source shorter than taps.
    [[nodiscard]] std::uint32_t start(std::uint32_t i) const { return m_starts[i]; }
    /// Past the last source pixel that has weight.
    [[nodiscard]] std::uint32_t end(std::uint32_t i) const { return m_ends[i]; }
    [[nodiscard]] const std::int16_t *weights(std::uint32_t i) const { return &m_weights[std::size_t{i} * m_taps]; }

private:
    std::uint32_t m_taps = 0;
    int m_shift = 0;
    std::vector<std::uint32_t> m_starts;
    std::vector<std::uint32_t> m_ends;
    std::vector<std::int16_t> m_weights;
};

} // namespace tallowmere
