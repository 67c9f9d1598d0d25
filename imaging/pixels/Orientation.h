// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace tallowmere {

/// What must be done to stored rows to show them upright: the values of Exif's Orientation tag.
enum class Orientation : std::uint8_t
{
    upright = 1,
    mirroredHorizontally = 2,
    rotated180 = 3,
    mirroredVertically = 4,
    transposed = 5,
    rotated90Clockwise = 6,
    transversed = 7,
    rotated270Clockwise = 8,
};

/// Whether width and height change places.
[[nodiscard]] constexpr bool swapsSides(Orientation orientation)
{
    return orientation >= Orientation::transposed;
}

/// Exif values outside 1 to 8 mean upright.
[[nodiscard]] constexpr Orientation orientationFromExif(unsigned value)
{
    return value >= 1 && value <= 8 ? static_cast<Orientation>(value) : Orientation::upright;
}

} // namespace tallowmere
