// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/pixels/AverageColour.h"

#include "imaging/pixels/PixelKernels.h"

namespace tallowmere {

std::array<std::uint8_t, 4> averageColour(const PixelBuffer &pixels)
{
    if (pixels.isNull())
        return {};
    const std::uint64_t count = pixels.size().pixels();
    const std::array<std::uint64_t, 4> sums = channelSums(pixels.row(0), count);
    const auto mean = [&](std::uint64_t sum) { return static_cast<std::uint8_t>((sum + count / 2) / count); };
    return {mean(sums[2]), mean(sums[1]), mean(sums[0]), mean(sums[3])};
}

} // namespace tallowmere
