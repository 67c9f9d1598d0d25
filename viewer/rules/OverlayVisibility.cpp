// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "viewer/rules/OverlayVisibility.h"

#include "viewer/rules/PillLayout.h"

namespace tallowmere {

namespace {

constexpr double kMargins = 2 * PillLayout::kMargin;
constexpr double kMarginsAndGap = kMargins + PillLayout::kMinimumGap;

OverlayVisibility::Pill shownIf(bool shown)
{
    return shown ? OverlayVisibility::Pill::shown : OverlayVisibility::Pill::hidden;
}

} // namespace

OverlayVisibility OverlayVisibility::of(const Situation &situation)
{
    const double width = situation.viewWidth;
    if (!(width > 0))
        return {};
    if (!situation.hasCurrentFile)
        return {Pill::hidden, Pill::hidden};

    const bool anyInfo = situation.showsInformation;
    const double info = anyInfo ? situation.infoPillWidth : 0.0;
    const Pill infoAlone = shownIf(anyInfo && info + kMargins <= width);
    if (situation.showsName) {
        if (situation.namePillWidth + info + kMarginsAndGap <= width)
            return {Pill::shown, shownIf(anyInfo)};
        return {Pill::hidden, infoAlone};
    }
    if (anyInfo && info + kMarginsAndGap > width)
        return {Pill::unchanged, infoAlone};
    return {Pill::hidden, shownIf(anyInfo)};
}

} // namespace tallowmere
