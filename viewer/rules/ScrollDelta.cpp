// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "viewer/rules/ScrollDelta.h"

namespace tallowmere {

QPointF scrollPoints(QPoint pixelDelta, QPoint angleDelta, int linesPerNotch)
{
    constexpr double kEighthsPerNotch = 120;
    constexpr double kPointsPerLine = 20;
    if (!pixelDelta.isNull())
        return pixelDelta;
    return QPointF(angleDelta) * (linesPerNotch * kPointsPerLine / kEighthsPerNotch);
}

QPointF offsetScrolledBy(QPointF offset, QPointF points)
{
    return offset + QPointF(points.x(), -points.y());
}

} // namespace tallowmere
