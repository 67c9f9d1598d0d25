// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>

namespace tallowmere {

/// Measures of the two pills and the tag circle, in points.
namespace PillLayout {

inline constexpr double kMargin = 16; ///< from the view's lower edge, and from its left or right one
inline constexpr double kHeight = 24;
inline constexpr double kCornerRadius = 12;
inline constexpr double kTextPadding = 15; ///< between the pill's edge and its text
inline constexpr double kMinimumGap = 50;  ///< between the two pills
inline constexpr double kFontSize = 11;

inline constexpr double kInitialInfoPillWidth = 200;
inline constexpr double kMinimumNamePillWidth = 150;
inline constexpr double kMaximumNamePillWidth = 300;

inline constexpr double kTagLeading = 8; ///< from the info pill's left edge
inline constexpr double kTagDiameter = 12;
inline constexpr double kTagToText = 6;
inline constexpr double kTagBorderWidth = 0.5;
inline constexpr double kTagBorderAlpha = 0.5; ///< of white

/// A pill that carries the tag circle and no text.
inline constexpr double kWidthOfTagAlone = 2 * kTagLeading + kTagDiameter;

/// Where the text of the info pill begins.
[[nodiscard]] constexpr double infoTextLeading(bool tagVisible)
{
    return tagVisible ? kTagLeading + kTagDiameter + kTagToText : kTextPadding;
}

[[nodiscard]] constexpr double infoPillWidth(double textWidth, bool tagVisible)
{
    return infoTextLeading(tagVisible) + textWidth + kTextPadding;
}

[[nodiscard]] constexpr double namePillWidth(double textWidth)
{
    return std::max(std::min(textWidth + 2 * kTextPadding, kMaximumNamePillWidth), kMinimumNamePillWidth);
}

} // namespace PillLayout

} // namespace tallowmere
