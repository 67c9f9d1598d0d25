// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/pixels/PixelSize.h"
#include "viewer/rules/ImageScaling.h"
#include "viewer/rules/ImageTransform.h"

#include <QPoint>
#include <QRectF>
#include <QSize>
#include <QSizeF>

#include <cstdint>

namespace tallowmere {

/// Where an image lies in its view, on whole device pixels.
///
/// An image larger than the view is reduced in proportion until it fits; a smaller one keeps its own size, one
/// point for each of its pixels, unless it is to be enlarged. Either way it lies in the middle.
struct ImagePlacement
{
    QSize deviceSize{0, 0}; ///< what the image covers, device pixels; empty when there is nothing to show
    QPoint deviceOrigin;    ///< its upper left corner, device pixels from the view's

    /// Of the display copy that is painted there.
    [[nodiscard]] PixelSize copySize() const
    {
        return {static_cast<std::uint32_t>(deviceSize.width()), static_cast<std::uint32_t>(deviceSize.height())};
    }

    /// @p image: its pixels, which are its points, too. @p view in points. @p scale: device pixels per point.
    [[nodiscard]] static ImagePlacement of(PixelSize image, QSizeF view, double scale,
                                           ImageScaling scaling = ImageScaling::proportionallyDown);

    /// Where the image comes to lie when @p transform is done to it about the middle of the view: device pixels, not
    /// whole ones.
    [[nodiscard]] QRectF transformed(const ImageTransform &transform, QSizeF view, double scale) const;
    /// The same on whole device pixels, for a transform that does not enlarge.
    [[nodiscard]] ImagePlacement reduced(const ImageTransform &transform, QSizeF view, double scale) const;

    friend bool operator==(const ImagePlacement &, const ImagePlacement &) = default;
};

} // namespace tallowmere
