// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

namespace tallowmere {

/// The two greys of the checkerboard under transparent images, from 0 (black) to 1 (white). A value.
///
/// A tile is filled with the base grey; the two squares at (0, 0) and (10, 10) get the other one.
struct CheckerPattern
{
    static constexpr double tileSide = 20; ///< points
    static constexpr double squareSide = 10;

    double baseGrey = 0.0;
    double squareGrey = 0.0;

    [[nodiscard]] static constexpr CheckerPattern forAppearance(bool dark)
    {
        return dark ? CheckerPattern{0.32, 0.27} : CheckerPattern{0.88, 0.82};
    }

    friend bool operator==(const CheckerPattern &, const CheckerPattern &) = default;
};

} // namespace tallowmere
