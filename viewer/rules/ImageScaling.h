// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QSizeF>

namespace tallowmere {

/// How an image is brought to the size of its view, before any zoom.
enum class ImageScaling
{
    proportionallyDown,     ///< reduced until it fits, never enlarged
    proportionallyUpOrDown, ///< reduced or enlarged until one side fits
};

/// Sizes in points. A view without room gives proportionallyUpOrDown.
[[nodiscard]] ImageScaling imageScalingFor(QSizeF image, QSizeF view, double zoom);

} // namespace tallowmere
