// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QPointF>

namespace tallowmere {

/// A point of a widget, whose y axis points down, with the y axis up, as offsets are kept. Where the origin lies
/// does not matter: only differences of such points are used.
[[nodiscard]] inline QPointF yUpwards(QPointF widgetPoint)
{
    return {widgetPoint.x(), -widgetPoint.y()};
}

/// A drag that moves the image, while it lasts. A value; points with y upwards.
struct PanDrag
{
    QPointF startLocation; ///< of the pointer
    QPointF startOffset;   ///< of the image

    /// Not limited yet.
    [[nodiscard]] QPointF offsetAt(QPointF location) const { return location - startLocation + startOffset; }
};

} // namespace tallowmere
