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

/// For text that matters less: the window's text colour, two fifths of the way to the background.
[[nodiscard]] inline QColor secondaryLabelColor(const QPalette &palette)
{
    const QColor text = palette.color(QPalette::WindowText);
    const QColor background = palette.color(QPalette::Window);
    const auto mixed = [](float a, float b) { return a * 0.6F + b * 0.4F; };
    return QColor::fromRgbF(mixed(text.redF(), background.redF()), mixed(text.greenF(), background.greenF()),
                            mixed(text.blueF(), background.blueF()));
}

} // namespace tallowmere
