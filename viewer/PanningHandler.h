// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QPointF>

namespace tallowmere {

/// What the image view hands on of mouse, wheel and touchpad. Main thread; the view doesn't own it.
///
/// Points are of the image view, with y upwards, as offsets are kept.
class PanningHandler
{
public:
    virtual ~PanningHandler() = default;
    /// Whether a button that goes down there begins to drag the image.
    [[nodiscard]] virtual bool shouldStartPanningAt(QPointF point) = 0;
    /// Whether there is anything to scroll.
    [[nodiscard]] virtual bool isPanningAvailable() = 0;
    virtual void handlePanStartAt(QPointF point) = 0;
    virtual void handlePanMoveTo(QPointF point) = 0;
    /// Also comes without a drag: when a button is let go, or the pointer leaves.
    virtual void handlePanEnd() = 0;
    /// The pointer moved over the view, or in or out of it.
    virtual void handleCursorUpdate() = 0;
    /// @p points: see scrollPoints().
    virtual void handleScrollWith(QPointF points) = 0;
    /// @p magnification: how much larger than a moment ago; 0 for no change.
    virtual void handleMagnifyWith(double magnification) = 0;
};

} // namespace tallowmere
