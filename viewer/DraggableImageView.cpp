// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "viewer/DraggableImageView.h"

#include "viewer/AccessibleViews.h"
#include "viewer/DisplayPreparation.h"
#include "viewer/PanningHandler.h"
#include "viewer/rules/PanDrag.h"
#include "viewer/rules/ScrollDelta.h"

#include <QApplication>
#include <QMouseEvent>
#include <QNativeGestureEvent>
#include <QWheelEvent>

#include <utility>

namespace tallowmere {

DraggableImageView::DraggableImageView(std::shared_ptr<DisplayPreparation> preparation, Launcher &launcher,
                                       MainQueue &mainQueue, QWidget *parent)
    : QWidget(parent), m_preparation(std::move(preparation)), m_requests(m_preparation, launcher, mainQueue)
{
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMouseTracking(true);
    connect(&m_requests, &DisplayCopyRequests::done, this, qOverload<>(&QWidget::update));
}

void DraggableImageView::setImage(ImagePtr image)
{
    m_image = std::move(image);
    m_hasPaintedImage = false;
    update();
}

void DraggableImageView::setImageName(const QString &name)
{
    if (std::exchange(m_imageName, name) == name)
        return;
    announce(*this, QAccessible::NameChanged);
    // The view around it has the focus and goes by the same name.
    if (QWidget *around = parentWidget())
        announce(*around, QAccessible::NameChanged);
}

void DraggableImageView::setImageDescription(const QString &description)
{
    if (std::exchange(m_imageDescription, description) != description)
        announce(*this, QAccessible::DescriptionChanged);
}

void DraggableImageView::wantCopy(PixelSize size)
{
    // A zoomed image is painted from something else.
    const bool isFitted = m_transform.scale == 1.0;
    if (isFitted && m_image && m_image->hasBitmap() && !size.empty() && !m_preparation->copies().find(m_image, size))
        m_requests.want(m_image, size);
}

void DraggableImageView::setImageScaling(ImageScaling scaling)
{
    if (std::exchange(m_scaling, scaling) != scaling)
        update();
}

void DraggableImageView::setImageTransform(const ImageTransform &transform)
{
    if (transform == m_transform)
        return;
    // What lies around the image stays as it is: a panorama leaves most of the view free.
    const QRect before = imageRect();
    m_transform = transform;
    update(before | imageRect());
}

QRect DraggableImageView::imageRect() const
{
    const double scale = devicePixelRatioF();
    ImagePlacement fitted;
    if (m_image && m_image->hasBitmap())
        fitted = ImagePlacement::of(m_image->pixelSize(), size(), scale, m_scaling);
    if (fitted.deviceSize.isEmpty())
        return rect();
    // Painting rounds to whole device pixels in its own way. Cut off before that: numbers beyond those of a view
    // would not fit into whole ones.
    const QRectF view = QRectF(rect()).adjusted(-1, -1, 1, 1);
    const QRectF onDevice = fitted.transformed(m_transform, size(), scale).adjusted(-1, -1, 1, 1);
    const QRectF inPoints(onDevice.topLeft() / scale, onDevice.size() / scale);
    return (inPoints & view).toAlignedRect() & rect();
}

void DraggableImageView::setBackgroundColor(const QColor &color)
{
    if (color == m_backgroundColor)
        return;
    m_backgroundColor = color;
    update();
}

void DraggableImageView::setChecker(TransparencyChecker *checker)
{
    if (std::exchange(m_checker, checker) != checker)
        update();
}

void DraggableImageView::setInTransition(bool inTransition)
{
    m_inTransition = inTransition;
    if (!inTransition)
        update();
}

void DraggableImageView::mousePressEvent(QMouseEvent *event)
{
    const QPointF point = yUpwards(event->position());
    if (event->button() != Qt::LeftButton || !m_panningDelegate || !m_panningDelegate->shouldStartPanningAt(point))
        return QWidget::mousePressEvent(event);
    m_panningDelegate->handlePanStartAt(point);
}

void DraggableImageView::mouseMoveEvent(QMouseEvent *event)
{
    if (!m_panningDelegate)
        return QWidget::mouseMoveEvent(event);
    if (event->buttons().testFlag(Qt::LeftButton))
        return m_panningDelegate->handlePanMoveTo(yUpwards(event->position()));
    if (rect().contains(event->position().toPoint()))
        m_panningDelegate->handleCursorUpdate();
    QWidget::mouseMoveEvent(event);
}

void DraggableImageView::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton || !m_panningDelegate)
        return QWidget::mouseReleaseEvent(event);
    m_panningDelegate->handlePanEnd();
}

void DraggableImageView::enterEvent(QEnterEvent *event)
{
    if (m_panningDelegate)
        m_panningDelegate->handleCursorUpdate();
    QWidget::enterEvent(event);
}

void DraggableImageView::leaveEvent(QEvent *event)
{
    if (m_panningDelegate) {
        m_panningDelegate->handlePanEnd();
        m_panningDelegate->handleCursorUpdate();
    }
    QWidget::leaveEvent(event);
}

void DraggableImageView::wheelEvent(QWheelEvent *event)
{
    if (!m_panningDelegate || !m_panningDelegate->isPanningAvailable())
        return QWidget::wheelEvent(event);
    m_panningDelegate->handleScrollWith(
        scrollPoints(event->pixelDelta(), event->angleDelta(), QApplication::wheelScrollLines()));
}

bool DraggableImageView::event(QEvent *event)
{
    if (event->type() == QEvent::NativeGesture && handleNativeGesture(static_cast<QNativeGestureEvent *>(event)))
        return true;
    return QWidget::event(event);
}

bool DraggableImageView::handleNativeGesture(QNativeGestureEvent *event)
{
    if (!m_panningDelegate)
        return false;
    switch (event->gestureType()) {
    case Qt::BeginNativeGesture:
        m_pinch.begin();
        return true;
    case Qt::ZoomNativeGesture:
        m_panningDelegate->handleMagnifyWith(m_pinch.magnificationOf(event->value()));
        return true;
    case Qt::EndNativeGesture:
        return true;
    default:
        return false;
    }
}

} // namespace tallowmere
