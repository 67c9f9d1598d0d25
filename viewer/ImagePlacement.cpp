// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "viewer/ImagePlacement.h"

#include <algorithm>
#include <cmath>

namespace tallowmere {

namespace {

/// A window has whole points and rarely the image's exact shape: one device pixel of background along an edge
/// would look like a fault, a stretch by one pixel can't be seen.
int snapped(double side, int viewSide)
{
    const int rounded = std::max(static_cast<int>(std::lround(side)), 1);
    return std::abs(viewSide - side) <= 1.0 ? viewSide : std::min(rounded, viewSide);
}

} // namespace

ImagePlacement ImagePlacement::of(PixelSize image, QSizeF view, double scale)
{
    const QSize viewPixels(static_cast<int>(std::lround(view.width() * scale)),
                           static_cast<int>(std::lround(view.height() * scale)));
    if (image.empty() || viewPixels.isEmpty())
        return {};
    const double reduction = std::min({1.0, view.width() / image.width, view.height() / image.height});
    ImagePlacement placement;
    if (reduction < 1.0) {
        placement.deviceSize = {snapped(image.width * reduction * scale, viewPixels.width()),
                                snapped(image.height * reduction * scale, viewPixels.height())};
    } else {
        placement.deviceSize = {static_cast<int>(std::lround(image.width * scale)),
                                static_cast<int>(std::lround(image.height * scale))};
    }
    placement.deviceOrigin = {(viewPixels.width() - placement.deviceSize.width()) / 2,
                              (viewPixels.height() - placement.deviceSize.height()) / 2};
    placement.copySize = {std::min(image.width, static_cast<std::uint32_t>(placement.deviceSize.width())),
                          std::min(image.height, static_cast<std::uint32_t>(placement.deviceSize.height()))};
    return placement;
}

} // namespace tallowmere
