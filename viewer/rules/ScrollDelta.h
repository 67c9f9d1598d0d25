// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QPoint>
#include <QPointF>

namespace tallowmere {

/// How far a wheel or touchpad event scrolls, in points: to the right and down are positive, as the content moves.
///
/// @p pixelDelta counts where a device gives one; else @p angleDelta (eighths of a degree) at @p linesPerNotch lines
/// of 20 points for each notch of 15 degrees, as Qt's scroll areas have it.
[[nodiscard]] QPointF scrollPoints(QPoint pixelDelta, QPoint angleDelta, int linesPerNotch);

/// The pan offset, y upwards, after scrolling by @p points. Not limited yet.
[[nodiscard]] QPointF offsetScrolledBy(QPointF offset, QPointF points);

} // namespace tallowmere
