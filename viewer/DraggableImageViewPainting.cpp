// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/pixels/NearestSampling.h"
#include "viewer/DisplayPreparation.h"
#include "viewer/DraggableImageView.h"
#include "viewer/TransparencyChecker.h"

#include <QPainter>
#include <QPaintEvent>

#include <algorithm>
#include <cmath>
#include <utility>

namespace tallowmere {

namespace {

/// Above this, smooth scaling takes a good part of the time that a frame of an animation has: 1 to 2.6 ns a pixel.
constexpr qint64 kSmoothInTime = 4'000'000; // device pixels
/// Sampled rows are handed to the painter while they are in the second-level cache.
constexpr std::size_t kStripBytes = std::size_t{128} << 10;

/// The whole points that @p device covers entirely, at @p scale device pixels per point.
QRect coveredPoints(const QRect &device, double scale)
{
    const int left = static_cast<int>(std::ceil(device.left() / scale));
    const int top = static_cast<int>(std::ceil(device.top() / scale));
    const int right = static_cast<int>(std::floor((device.right() + 1) / scale));
    const int bottom = static_cast<int>(std::floor((device.bottom() + 1) / scale));
    return {left, top, right - left, bottom - top};
}

/// The device pixels that @p points touches.
QRect touchedPixels(const QRect &points, double scale)
{
    const int left = static_cast<int>(std::floor(points.left() * scale));
    const int top = static_cast<int>(std::floor(points.top() * scale));
    const int right = static_cast<int>(std::ceil((points.right() + 1) * scale));
    const int bottom = static_cast<int>(std::ceil((points.bottom() + 1) * scale));
    return {left, top, right - left, bottom - top};
}

/// The points that @p device touches: what more they cover lies outside the image, where nothing has been mixed yet.
QRect touchedPoints(const QRect &device, int scale)
{
    const int left = device.left() / scale;
    const int top = device.top() / scale;
    return {left, top, device.right() / scale + 1 - left, device.bottom() / scale + 1 - top};
}

qint64 area(QSize size)
{
    return qint64{size.width()} * size.height();
}

} // namespace

/// What is painted from.
struct DraggableImageView::Source
{
    DisplayBitmap bitmap;
    bool isStopgap = false; ///< something better is going to replace it
};

/// The exact copy, or the next best thing.
DraggableImageView::Source DraggableImageView::sourceFor(const ImagePlacement &placement)
{
    DisplayCopies &copies = m_preparation->copies();
    if (DisplayBitmap exact = copies.find(m_image, placement.copySize()))
        return {std::move(exact)};
    // Where the view turned out to be of another size than foreseen. A preview is so small that this takes less than a
    // frame, and the whole picture replaces it before another thread's copy would be there.
    if (m_image->isPreview() && !m_inTransition) {
        if (DisplayBitmap made = copies.make(m_image, placement.copySize()))
            return {std::move(made)};
    }
    if (!m_inTransition)
        m_requests.want(m_image, placement.copySize());
    if (DisplayBitmap similar = copies.findSimilar(m_image, placement.copySize()))
        return {std::move(similar), true};
    return {DisplayBitmap::of(m_image), true};
}

void DraggableImageView::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    ImagePlacement fitted;
    if (m_image && m_image->hasBitmap())
        fitted = ImagePlacement::of(m_image->pixelSize(), size(), devicePixelRatioF(), m_scaling);
    const bool isMagnified = m_transform.sampling == ImageTransform::Sampling::nearest;
    if (fitted.deviceSize.isEmpty())
        fillBackground(painter, event->region());
    else if (isMagnified && m_image->isPreview())
        paintReduced(painter, event->region(), fitted); // its own pixels are on their way, and bring the zoom with them
    else if (isMagnified)
        paintMagnified(painter, event->region(), fitted);
    else
        paintReduced(painter, event->region(), fitted.reduced(m_transform, size(), devicePixelRatioF()));
    painter.end();
    if (m_image && !std::exchange(m_hasPaintedImage, true))
        Q_EMIT imagePainted();
}

void DraggableImageView::fillBackground(QPainter &painter, const QRegion &region) const
{
    for (const QRect &rect : region) {
        if (m_checker)
            m_checker->paintOn(painter, rect);
        else
            painter.fillRect(rect, m_backgroundColor);
    }
}

/// Beneath a transparent image. A checkerboard's strips begin and end on whole points.
bool DraggableImageView::fillsStripByStrip() const
{
    const double scale = devicePixelRatioF();
    return !m_checker || scale == std::floor(scale);
}

void DraggableImageView::paintReduced(QPainter &painter, const QRegion &region, const ImagePlacement &placement)
{
    const double scale = devicePixelRatioF();
    const QRect target(placement.deviceOrigin, placement.deviceSize);
    const Source source = sourceFor(placement);
    fillBackground(painter, source.bitmap.hasAlpha ? region : region - coveredPoints(target, scale));
    // In device pixels: a copy of the right size is then moved, not scaled.
    painter.scale(1 / scale, 1 / scale);
    const QImage pixels = source.bitmap.view();
    if (pixels.size() == target.size())
        return painter.drawImage(target.topLeft(), pixels);
    const bool isBrief = source.isStopgap || m_inTransition;
    if (isBrief && area(target.size()) > kSmoothInTime)
        return paintSampled(painter, region, target, source.bitmap);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(target, pixels);
}

void DraggableImageView::paintMagnified(QPainter &painter, const QRegion &region, const ImagePlacement &fitted)
{
    const double scale = devicePixelRatioF();
    const DisplayBitmap own = DisplayBitmap::of(m_image);
    const QRectF target = fitted.transformed(m_transform, size(), scale);
    // Beneath a transparent image it is filled strip by strip, so that it is still in the cache when pixels are mixed
    // with it.
    const QRegion covered = coveredPoints(target.toAlignedRect().adjusted(1, 1, -1, -1), scale);
    fillBackground(painter, own.hasAlpha && !fillsStripByStrip() ? region : region - covered);
    painter.scale(1 / scale, 1 / scale);
    paintSampled(painter, region, target, own);
}

/// @p region in points, @p target in device pixels, as is what the painter paints in. No pixel outside the region is
/// computed.
void DraggableImageView::paintSampled(QPainter &painter, const QRegion &region, const QRectF &target,
                                      const DisplayBitmap &bitmap)
{
    const LaidSide horizontal{target.x(), target.width()};
    const LaidSide vertical{target.y(), target.height()};
    const QRect covered(
        QPoint(static_cast<int>(horizontal.firstCovered()), static_cast<int>(vertical.firstCovered())),
        QPoint(static_cast<int>(horizontal.endCovered()) - 1, static_cast<int>(vertical.endCovered()) - 1));
    const int pixelsAPoint = fillsStripByStrip() ? static_cast<int>(std::ceil(devicePixelRatioF())) : 1;
    const QTransform inDevicePixels = painter.transform();
    const QTransform inPoints = QTransform(inDevicePixels).scale(devicePixelRatioF(), devicePixelRatioF());
    const QImage::Format format = bitmap.hasAlpha ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32;
    for (const QRect &points : region) {
        const QRect wanted = touchedPixels(points, devicePixelRatioF()) & covered;
        if (wanted.isEmpty())
            continue;
        NearestSampling sampling(*bitmap.pixels, horizontal, vertical, wanted.left(), wanted.right() + 1);
        const int fitting = static_cast<int>(kStripBytes / sampling.rowBytes());
        const int rowsAtOnce = std::max(fitting - fitting % pixelsAPoint, pixelsAPoint);
        m_strip.resize(sampling.rowBytes() * static_cast<std::size_t>(rowsAtOnce));
        for (int top = wanted.top(), bottom = 0; top <= wanted.bottom(); top = bottom) {
            bottom = std::min(top - top % pixelsAPoint + rowsAtOnce, wanted.bottom() + 1);
            sampling.rows(top, bottom, m_strip.data());
            const QRect strip(wanted.left(), top, wanted.width(), bottom - top);
            if (bitmap.hasAlpha && !m_checker)
                painter.fillRect(strip, m_backgroundColor);
            else if (bitmap.hasAlpha && fillsStripByStrip()) {
                painter.setTransform(inPoints);
                m_checker->paintOn(painter, touchedPoints(strip, pixelsAPoint));
                painter.setTransform(inDevicePixels);
            }
            painter.drawImage(wanted.left(), top,
                              QImage(reinterpret_cast<const uchar *>(m_strip.data()), wanted.width(), bottom - top,
                                     static_cast<qsizetype>(sampling.rowBytes()), format));
        }
    }
}

} // namespace tallowmere
