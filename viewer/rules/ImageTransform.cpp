// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "viewer/rules/ImageTransform.h"

namespace tallowmere {

ImageTransform ImageTransform::of(double zoom, QPointF panOffset)
{
    if (zoom == 1.0)
        return {};
    return {zoom, QPointF(panOffset.x(), -panOffset.y()) * zoom, zoom > 1.0 ? Sampling::nearest : Sampling::linear};
}

QRectF ImageTransform::mapped(const QRectF &rect, QPointF viewCentre) const
{
    return {viewCentre + (rect.topLeft() - viewCentre) * scale + shift, rect.size() * scale};
}

} // namespace tallowmere
