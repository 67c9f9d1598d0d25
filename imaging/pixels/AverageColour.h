// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/pixels/PixelBuffer.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace tallowmere {

/// Premultiplied, in the order R, G, B, A.
using AverageColour = std::array<std::uint8_t, 4>;

/// Sums up pixels for their average, a stretch at a time. No colour management: values count as they stand.
class PixelSums final
{
public:
    void add(const std::byte *pixels, std::uint64_t count);
    void add(const PixelSums &other);
    /// Each channel rounded to 8 bits; transparent when there were no pixels.
    [[nodiscard]] AverageColour average() const;

private:
    std::array<std::uint64_t, 4> m_channels{}; ///< B, G, R, A
    std::uint64_t m_count = 0;
};

/// The mean of all pixels. Any thread.
[[nodiscard]] AverageColour averageColour(const PixelBuffer &pixels);

} // namespace tallowmere
