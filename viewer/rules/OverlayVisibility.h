// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

namespace tallowmere {

/// Which of the two pills find room: a value. The name gives way first.
struct OverlayVisibility
{
    enum class Pill
    {
        hidden,
        shown,
        unchanged
    };

    /// Widths in points.
    struct Situation
    {
        double viewWidth = 0.0;
        bool hasCurrentFile = false;
        bool showsName = false;        ///< the name is to be shown in the corner
        bool showsInformation = false; ///< at least one of size, date and resolution is to be shown
        double namePillWidth = 0.0;
        double infoPillWidth = 0.0; ///< counts only with showsInformation
    };

    Pill name = Pill::unchanged;
    Pill info = Pill::unchanged;

    [[nodiscard]] static OverlayVisibility of(const Situation &situation);

    friend bool operator==(const OverlayVisibility &, const OverlayVisibility &) = default;
};

} // namespace tallowmere
