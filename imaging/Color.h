// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

namespace tallowmere {

/// Red, green, blue and alpha from 0 to 1.
struct Color
{
    double red = 0.0;
    double green = 0.0;
    double blue = 0.0;
    double alpha = 0.0;

    friend bool operator==(const Color &, const Color &) = default;
};

} // namespace tallowmere
