// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "viewer/rules/ImageScaling.h"

#include <cmath>

namespace tallowmere {

ImageScaling imageScalingFor(QSizeF image, QSizeF view, double zoom)
{
    if (view.isEmpty())
        return ImageScaling::proportionallyUpOrDown;
    if (zoom != 1.0)
        return ImageScaling::proportionallyDown;
    // A window that was made for the image is off by a fraction of a point: no reason to resample it.
    const bool sameSize = std::abs(image.width() - view.width()) < 1 && std::abs(image.height() - view.height()) < 1;
    const bool smaller = image.width() < view.width() && image.height() < view.height();
    return sameSize || smaller ? ImageScaling::proportionallyDown : ImageScaling::proportionallyUpOrDown;
}

} // namespace tallowmere
