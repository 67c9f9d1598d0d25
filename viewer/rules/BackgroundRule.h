// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

namespace tallowmere {

/// What lies behind and around the image.
enum class BackgroundColour
{
    windowBackground,       ///< the palette's, under the appearance in force
    cachedAverage,          ///< the image's average colour, at once
    averageWhenImageLoaded, ///< the average colour is computed in the background once the image is there
};

enum class BackgroundOccasion
{
    fileShown,
    idle,
    appearanceChanged, ///< overrides the average colour of an image being shown, until the next one
};

/// @p windowFollowsImage: automatic resizing is on. @p averageIsCached counts only then.
[[nodiscard]] constexpr BackgroundColour backgroundColourFor(BackgroundOccasion occasion, bool windowFollowsImage,
                                                             bool averageIsCached)
{
    if (occasion != BackgroundOccasion::fileShown || !windowFollowsImage)
        return BackgroundColour::windowBackground;
    return averageIsCached ? BackgroundColour::cachedAverage : BackgroundColour::averageWhenImageLoaded;
}

} // namespace tallowmere
