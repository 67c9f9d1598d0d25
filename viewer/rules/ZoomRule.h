// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

namespace tallowmere {

/// How far one zoom command or one pinch changes the zoom, or the window instead of it. Pure arithmetic.
namespace ZoomRule {

inline constexpr double kZoomStep = 1.5;
inline constexpr double kMinZoom = 0.25;
inline constexpr double kMaxZoom = 10.0;

/// What a zoom command comes to. With neither field set nothing happens.
struct Change
{
    std::optional<double> zoom;         ///< to be remembered and applied, before the window is resized
    std::optional<double> windowFactor; ///< the content is to grow or shrink by this factor

    friend bool operator==(const Change &, const Change &) = default;
};

/// How wide the window's content is, as a part of the width at which the image is shown pixel for pixel as far as
/// the screen allows. Nothing unless both are above 0.
[[nodiscard]] std::optional<double> windowRatio(double contentWidth, double fittedWidth);

/// With the window's size left alone. Nothing when the zoom is at its limit already.
[[nodiscard]] Change zoomIn(double zoom);
[[nodiscard]] Change zoomOut(double zoom);

/// While the window follows the image: it grows up to the fitted size before the image is magnified inside it, and
/// on the way back the image returns to its fitted size before the window shrinks.
[[nodiscard]] Change zoomInGrowingWindow(double zoom, std::optional<double> windowRatio);
[[nodiscard]] Change zoomOutShrinkingWindow(double zoom, std::optional<double> windowRatio);

/// @p magnification: how much larger than before, 0 for no change. Nothing when the zoom stays what it is.
[[nodiscard]] std::optional<double> pinched(double zoom, double magnification);

/// Dragging moves an image only where it is magnified.
[[nodiscard]] constexpr bool shouldStartPanning(double zoom)
{
    return zoom > 1.0;
}

} // namespace ZoomRule

} // namespace tallowmere
