// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstdint>

namespace tallowmere {

/// Width and height in pixels.
struct PixelSize
{
    std::uint32_t width = 0;
    std::uint32_t height = 0;

    [[nodiscard]] bool empty() const { return width == 0 || height == 0; }
    [[nodiscard]] std::uint64_t pixels() const { return std::uint64_t{width} * height; }
    [[nodiscard]] std::uint32_t longerSide() const { return std::max(width, height); }
    [[nodiscard]] PixelSize transposed() const { return {height, width}; }
    /// The largest size of the same shape whose longer side is at most @p maxSide; never larger than this,
    /// never under one pixel. The shorter side is rounded to the nearest pixel.
    [[nodiscard]] PixelSize fittedTo(std::uint32_t maxSide) const
    {
        const std::uint32_t longer = longerSide();
        if (longer <= maxSide)
            return *this;
        const auto scaled = [&](std::uint32_t side) {
            const std::uint64_t rounded = (std::uint64_t{side} * maxSide + longer / 2) / longer;
            return static_cast<std::uint32_t>(std::max<std::uint64_t>(rounded, 1));
        };
        return {scaled(width), scaled(height)};
    }

    friend bool operator==(const PixelSize &, const PixelSize &) = default;
};

} // namespace tallowmere
