// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/pixels/PixelSize.h"

#include <QRectF>
#include <QSizeF>

#include <optional>

namespace tallowmere {

/// The part of a screen that windows may cover, in points.
struct ScreenArea
{
    QRectF visibleFrame;             ///< without panels and docks
    double backingScaleFactor = 1.0; ///< device pixels per point
};

/// Where the viewer's window goes and how large it becomes: pure arithmetic in points.
///
/// A frame is the whole window with its decorations; the content is the image area. What lies between the two is
/// the frame extra: side borders in width, title bar, menu bar and lower border in height. Every rule here is
/// symmetric about a centre, so none cares which way the y axis points.
namespace WindowGeometry {

inline constexpr QSizeF kSmallFrame{600, 400};
inline constexpr QSizeF kMediumFrame{900, 600};
inline constexpr QSizeF kIdleFrame{600, 400};
inline constexpr double kLargeInset = 40;
inline constexpr double kSmallestContentSide = 100;

/// @p frame with another size and the same centre. It may come to lie partly outside the screen.
[[nodiscard]] QRectF resizedAboutCentre(const QRectF &frame, QSizeF size);

/// The large window: the visible frame less kLargeInset on every side, never under one point.
[[nodiscard]] QRectF largeFrame(const QRectF &visibleFrame);

/// The content size that shows @p image pixel for pixel, reduced in proportion until the whole frame fits the
/// screen; never enlarged.
[[nodiscard]] QSizeF fittedImageSize(PixelSize image, const ScreenArea &screen, QSizeF frameExtra);

/// A frame of @p size in the middle of the visible frame.
[[nodiscard]] QRectF centredFrame(QSizeF size, const QRectF &visibleFrame);

/// The content after growing or shrinking by @p factor: at least kSmallestContentSide a side, but never beyond
/// @p fitted. Content in the shape of @p fitted, rounded to whole points, keeps that shape.
[[nodiscard]] QSizeF contentResizedByFactor(QSizeF content, double factor, QSizeF fitted);

} // namespace WindowGeometry

} // namespace tallowmere
