// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "viewer/rules/PanLimits.h"

#include <algorithm>
#include <limits>

namespace tallowmere {

PanLimits PanLimits::of(QSizeF image, QSizeF view, double zoom)
{
    if (image.isEmpty() || view.isEmpty()) {
        constexpr double kNone = std::numeric_limits<double>::infinity();
        return {kNone, kNone};
    }
    const auto limit = [zoom](double imageSide, double viewSide) {
        return std::clamp((imageSide * zoom - viewSide) / 2, 0.0, viewSide / 2);
    };
    return {limit(image.width(), view.width()), limit(image.height(), view.height())};
}

QPointF PanLimits::clamp(QPointF offset) const
{
    return {std::clamp(offset.x(), -horizontal, horizontal), std::clamp(offset.y(), -vertical, vertical)};
}

} // namespace tallowmere
