// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "viewer/rules/ZoomRule.h"

#include <algorithm>
#include <cmath>

namespace tallowmere::ZoomRule {

namespace {

constexpr double kFullyGrown = 0.999;   ///< a window ratio from here on counts as the fitted size
constexpr double kMagnified = 1.001;    ///< a zoom up to here counts as 1
constexpr double kSmallestRatio = 0.25; ///< of the fitted width; the window shrinks no further

Change changeTo(double newZoom, double zoom)
{
    return newZoom == zoom ? Change{} : Change{.zoom = newZoom, .windowFactor = {}};
}

} // namespace

std::optional<double> windowRatio(double contentWidth, double fittedWidth)
{
    if (!(contentWidth > 0) || !(fittedWidth > 0))
        return std::nullopt;
    return contentWidth / fittedWidth;
}

Change zoomIn(double zoom)
{
    return changeTo(std::min(zoom * kZoomStep, kMaxZoom), zoom);
}

Change zoomOut(double zoom)
{
    return changeTo(std::max(zoom / kZoomStep, kMinZoom), zoom);
}

Change zoomInGrowingWindow(double zoom, std::optional<double> windowRatio)
{
    if (windowRatio && *windowRatio < kFullyGrown)
        return {.zoom = {}, .windowFactor = std::min(*windowRatio * kZoomStep, 1.0) / *windowRatio};
    return zoomIn(zoom);
}

Change zoomOutShrinkingWindow(double zoom, std::optional<double> windowRatio)
{
    if (zoom > kMagnified)
        return changeTo(std::max(zoom / kZoomStep, 1.0), zoom);
    Change change;
    if (zoom > 1.0)
        change.zoom = 1.0;
    const double ratio = windowRatio.value_or(1.0);
    if (ratio > kSmallestRatio)
        change.windowFactor = std::max(ratio / kZoomStep, kSmallestRatio) / ratio;
    return change;
}

std::optional<double> pinched(double zoom, double magnification)
{
    const double product = zoom * (1.0 + magnification);
    // A driver's nonsense must not be remembered: every later zoom would be nonsense, too.
    if (!std::isfinite(product))
        return std::nullopt;
    return changeTo(std::clamp(product, kMinZoom, kMaxZoom), zoom).zoom;
}

} // namespace tallowmere::ZoomRule
