// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/pixels/GridConversion.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tallowmere {
namespace {

std::int16_t nodeFromLight(float light)
{
    constexpr double kMost = std::numeric_limits<std::int16_t>::max();
    const double value = std::round(signalFromLight(light) * ColourGrid::kOne);
    return static_cast<std::int16_t>(std::clamp(value, -kMost, kMost));
}

} // namespace

GridConversion::GridConversion(const LightMeter &meter)
{
    const auto level = [](std::size_t i) {
        return static_cast<float>(i % ColourGrid::kSide) / static_cast<float>(ColourGrid::kSide - 1);
    };
    for (std::size_t i = 0; i < ColourGrid::kNodes; ++i) {
        const auto light =
            meter(level(i), level(i / ColourGrid::kSide), level(i / (ColourGrid::kSide * ColourGrid::kSide)));
        for (std::size_t c = 0; c < light.size(); ++c)
            m_grid.nodes[i][c] = nodeFromLight(light[c]);
    }
}

void GridConversion::convert(std::byte *pixels, std::size_t count) const
{
    interpolateColours(pixels, count, m_grid);
}

} // namespace tallowmere
