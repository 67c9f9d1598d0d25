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

QSize devicePixelsOf(QSizeF view, double scale)
{
    return {static_cast<int>(std::lround(view.width() * scale)), static_cast<int>(std::lround(view.height() * scale))};
}

} // namespace

ImagePlacement ImagePlacement::of(PixelSize image, QSizeF view, double scale, ImageScaling scaling)
{
    const QSize viewPixels = devicePixelsOf(view, scale);
    if (image.empty() || viewPixels.isEmpty())
        return {};
    const double fitting = std::min(view.width() / image.width, view.height() / image.height);
    const double factor = scaling == ImageScaling::proportionallyDown ? std::min(fitting, 1.0) : fitting;
    ImagePlacement placement;
    if (factor != 1.0) {
        placement.deviceSize = {snapped(image.width * factor * scale, viewPixels.width()),
                                snapped(image.height * factor * scale, viewPixels.height())};
    } else {
        placement.deviceSize = {static_cast<int>(std::lround(image.width * scale)),
                                static_cast<int>(std::lround(image.height * scale))};
    }
    placement.deviceOrigin = {(viewPixels.width() - placement.deviceSize.width()) / 2,
                              (viewPixels.height() - placement.deviceSize.height()) / 2};
    return placement;
}

QRectF ImagePlacement::transformed(const ImageTransform &transform, QSizeF view, double scale) const
{
    const QSizeF viewPixels = devicePixelsOf(view, scale);
    const ImageTransform onDevice{transform.scale, transform.shift * scale, transform.sampling};
    // Not from deviceOrigin: the half pixel that an odd margin has lost there would grow with the image.
    const QPointF middle(viewPixels.width() / 2.0, viewPixels.height() / 2.0);
    QRectF centred({}, QSizeF(deviceSize));
    centred.moveCenter(middle);
    return onDevice.mapped(centred, middle);
}

ImagePlacement ImagePlacement::reduced(const ImageTransform &transform, QSizeF view, double scale) const
{
    if (transform.scale == 1.0 || deviceSize.isEmpty())
        return *this;
    const QRectF exact = transformed(transform, view, scale);
    ImagePlacement placement;
    placement.deviceSize = exact.size().toSize().expandedTo({1, 1});
    placement.deviceOrigin = exact.topLeft().toPoint();
    return placement;
}

} // namespace tallowmere
