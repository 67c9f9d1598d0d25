// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QPointF>
#include <QRectF>

namespace tallowmere {

/// What is done to the fitted image when it is painted: scaled about the centre of the view, then shifted. A value.
struct ImageTransform
{
    enum class Sampling
    {
        linear,
        nearest
    };

    double scale = 1.0;
    QPointF shift; ///< points, y downwards as widgets have it
    Sampling sampling = Sampling::linear;

    /// @p panOffset with y upwards; it counts in the scaled image and only where the zoom is not 1. Pixels of a
    /// magnified image keep their edges.
    [[nodiscard]] static ImageTransform of(double zoom, QPointF panOffset);

    /// Where @p rect of the untransformed view comes to lie. Points of the view.
    [[nodiscard]] QRectF mapped(const QRectF &rect, QPointF viewCentre) const;

    friend bool operator==(const ImageTransform &, const ImageTransform &) = default;
};

} // namespace tallowmere
