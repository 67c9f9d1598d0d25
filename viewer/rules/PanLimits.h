// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QPointF>
#include <QSizeF>

namespace tallowmere {

/// How far an image may be moved inside its view: a value.
struct PanLimits
{
    double horizontal = 0.0; ///< points, to either side of the centre; infinite: no limit
    double vertical = 0.0;

    /// @p image: its own size, whether it is shown reduced or not. @p view in points. Half of what sticks out of the
    /// view, but at most half the view. Without an image (an empty size) or a view nothing is limited.
    [[nodiscard]] static PanLimits of(QSizeF image, QSizeF view, double zoom);

    [[nodiscard]] QPointF clamp(QPointF offset) const;
};

} // namespace tallowmere
