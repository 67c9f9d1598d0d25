// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "viewer/DraggableImageView.h"

#include "viewer/DisplayPreparation.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QPainter>
#include <QPaintEvent>

#include <cmath>
#include <utility>

namespace tallowmere {

namespace {

QAccessibleInterface *makeAccessible(const QString &className, QObject *object)
{
    if (className == QLatin1String(DraggableImageView::staticMetaObject.className()))
        return new QAccessibleWidget(qobject_cast<QWidget *>(object), QAccessible::Graphic);
    return nullptr;
}

/// Above this, smooth scaling takes longer than a frame of an animation lasts (about 4 ns a pixel).
constexpr qint64 kSmoothInTransition = 2'000'000; // device pixels

/// The whole points that @p device covers entirely, at @p scale device pixels per point.
QRect coveredPoints(const QRect &device, double scale)
{
    const int left = static_cast<int>(std::ceil(device.left() / scale));
    const int top = static_cast<int>(std::ceil(device.top() / scale));
    const int right = static_cast<int>(std::floor((device.right() + 1) / scale));
    const int bottom = static_cast<int>(std::floor((device.bottom() + 1) / scale));
    return {left, top, right - left, bottom - top};
}

qint64 area(QSize size)
{
    return qint64{size.width()} * size.height();
}

} // namespace

/// What is painted from, and how well it may be scaled without holding up the frame.
struct DraggableImageView::Source
{
    DisplayBitmap bitmap;
    bool smooth = true;
};

DraggableImageView::DraggableImageView(std::shared_ptr<DisplayPreparation> preparation, Launcher &launcher,
                                       MainQueue &mainQueue, QWidget *parent)
    : QWidget(parent), m_preparation(std::move(preparation)), m_requests(m_preparation, launcher, mainQueue)
{
    setAttribute(Qt::WA_OpaquePaintEvent);
    QAccessible::installFactory(makeAccessible); // the same function twice counts once
    connect(&m_requests, &DisplayCopyRequests::done, this, qOverload<>(&QWidget::update));
}

void DraggableImageView::setImage(ImagePtr image)
{
    m_image = std::move(image);
    m_hasPaintedImage = false;
    update();
}

void DraggableImageView::wantCopy(PixelSize size)
{
    if (m_image && m_image->hasBitmap() && !size.empty() && !m_preparation->copies().find(m_image, size))
        m_requests.want(m_image, size);
}

void DraggableImageView::setBackgroundColor(const QColor &color)
{
    if (color == m_backgroundColor)
        return;
    m_backgroundColor = color;
    update();
}

void DraggableImageView::setInTransition(bool inTransition)
{
    m_inTransition = inTransition;
    if (!inTransition)
        update();
}

DraggableImageView::Source DraggableImageView::sourceFor(const ImagePlacement &placement)
{
    DisplayCopies &copies = m_preparation->copies();
    if (DisplayBitmap exact = copies.find(m_image, placement.copySize))
        return {std::move(exact), true};
    if (!m_inTransition)
        m_requests.want(m_image, placement.copySize);
    if (DisplayBitmap similar = copies.findSimilar(m_image, placement.copySize))
        return {std::move(similar), !m_inTransition || area(placement.deviceSize) <= kSmoothInTransition};
    // Straight from the decoded pixels, which may be many: the nearest one will do for a moment.
    return {{{m_image, &m_image->decoded().pixels}, m_image->hasAlpha()}, false};
}

void DraggableImageView::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    const double scale = devicePixelRatioF();
    ImagePlacement placement;
    Source source;
    if (m_image && m_image->hasBitmap()) {
        placement = ImagePlacement::of(m_image->pixelSize(), size(), scale);
        if (!placement.deviceSize.isEmpty())
            source = sourceFor(placement);
    }

    const QRect target(placement.deviceOrigin, placement.deviceSize);
    QRegion uncovered = event->region();
    if (source.bitmap && !source.bitmap.hasAlpha)
        uncovered -= coveredPoints(target, scale);
    for (const QRect &rect : uncovered)
        painter.fillRect(rect, m_backgroundColor);

    if (source.bitmap) {
        // In device pixels: a copy of the right size is then moved, not scaled.
        painter.scale(1 / scale, 1 / scale);
        const QImage pixels = source.bitmap.view();
        if (pixels.size() == target.size()) {
            painter.drawImage(target.topLeft(), pixels);
        } else {
            painter.setRenderHint(QPainter::SmoothPixmapTransform, source.smooth);
            painter.drawImage(target, pixels);
        }
    }
    if (m_image && !std::exchange(m_hasPaintedImage, true))
        Q_EMIT imagePainted();
}

} // namespace tallowmere
