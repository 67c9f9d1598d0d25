// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QPalette>

namespace tallowmere {

/// Whether @p palette is that of a dark appearance: its windows are darker than mid grey.
[[nodiscard]] inline bool isDark(const QPalette &palette)
{
    constexpr int kMidGrey = 128;
    return qGray(palette.color(QPalette::Active, QPalette::Window).rgb()) < kMidGrey;
}

} // namespace tallowmere
