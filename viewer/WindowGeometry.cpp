// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "viewer/WindowGeometry.h"

#include <algorithm>
#include <cmath>

namespace tallowmere::WindowGeometry {

namespace {

/// The height that goes with the width of @p content in the shape of @p fitted, if @p content has that shape but for
/// the rounding to whole points. Otherwise steps in and out would add up what each of them rounds.
double unroundedHeight(QSizeF content, QSizeF fitted)
{
    // The width stays as it is there, while the height changes.
    if (fitted.width() <= kSmallestContentSide)
        return content.height();
    const double heightPerWidth = fitted.height() / fitted.width();
    const double inShape = content.width() * heightPerWidth;
    const double roundingAtMost = 0.5 * (1 + heightPerWidth);
    return std::abs(content.height() - inShape) <= roundingAtMost ? inShape : content.height();
}

} // namespace

QRectF resizedAboutCentre(const QRectF &frame, QSizeF size)
{
    return {{frame.x() + (frame.width() - size.width()) / 2, frame.y() + (frame.height() - size.height()) / 2}, size};
}

QRectF largeFrame(const QRectF &visibleFrame)
{
    const QSizeF size(std::max(visibleFrame.width() - 2 * kLargeInset, 1.0),
                      std::max(visibleFrame.height() - 2 * kLargeInset, 1.0));
    return {visibleFrame.topLeft() + QPointF(kLargeInset, kLargeInset), size};
}

QSizeF fittedImageSize(PixelSize image, const ScreenArea &screen, QSizeF frameExtra)
{
    const QSizeF natural = QSizeF(image.width, image.height) / screen.backingScaleFactor;
    // A screen smaller than the decorations leaves nothing to fit into; one point keeps the arithmetic sane.
    const double maxWidth = std::max(screen.visibleFrame.width() - frameExtra.width(), 1.0);
    const double maxHeight = std::max(screen.visibleFrame.height() - frameExtra.height(), 1.0);
    if (maxWidth >= natural.width() && maxHeight >= natural.height())
        return natural;
    return natural * std::min(maxWidth / natural.width(), maxHeight / natural.height());
}

QRectF centredFrame(QSizeF size, const QRectF &visibleFrame)
{
    return resizedAboutCentre(visibleFrame, size);
}

QSizeF contentResizedByFactor(QSizeF content, double factor, QSizeF fitted)
{
    const auto side = [factor](double current, double limit) {
        return std::min(std::max(current * factor, kSmallestContentSide), limit);
    };
    return {side(content.width(), fitted.width()), side(unroundedHeight(content, fitted), fitted.height())};
}

} // namespace tallowmere::WindowGeometry
