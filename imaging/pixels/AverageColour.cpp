// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/pixels/AverageColour.h"

#include "imaging/pixels/PixelKernels.h"

namespace tallowmere {

void PixelSums::add(const std::byte *pixels, std::uint64_t count)
{
    const std::array<std::uint64_t, 4> sums = channelSums(pixels, count);
    for (std::size_t c = 0; c < sums.size(); ++c)
        m_channels[c] += sums[c];
    m_count += count;
}

void PixelSums::add(const PixelSums &other)
{
    for (std::size_t c = 0; c < m_channels.size(); ++c)
        m_channels[c] += other.m_channels[c];
    m_count += other.m_count;
}

AverageColour PixelSums::average() const
{
    if (m_count == 0)
        return {};
    const auto mean = [&](std::uint64_t sum) { return static_cast<std::uint8_t>((sum + m_count / 2) / m_count); };
    return {mean(m_channels[2]), mean(m_channels[1]), mean(m_channels[0]), mean(m_channels[3])};
}

AverageColour averageColour(const PixelBuffer &pixels)
{
    PixelSums sums;
    if (!pixels.isNull())
        sums.add(pixels.row(0), pixels.size().pixels());
    return sums.average();
}

} // namespace tallowmere
