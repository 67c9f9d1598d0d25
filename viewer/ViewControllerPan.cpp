// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "viewer/DraggableImageView.h"
#include "viewer/rules/PanLimits.h"
#include "viewer/rules/ScrollDelta.h"
#include "viewer/ViewController.h"

namespace tallowmere {

bool ViewController::shouldStartPanningAt(QPointF)
{
    return ZoomRule::shouldStartPanning(currentZoomScale());
}

bool ViewController::isPanningAvailable()
{
    return currentImage() != nullptr;
}

QPointF ViewController::clampPanOffset(QPointF offset, double zoom) const
{
    const ImagePtr image = currentImage();
    return PanLimits::of(image ? image->size() : QSizeF(), m_imageView->size(), zoom).clamp(offset);
}

void ViewController::panTo(QPointF offset)
{
    const double zoom = currentZoomScale();
    setPanOffset(clampPanOffset(offset, zoom));
    applyZoomTransform(zoom);
}

void ViewController::handlePanStartAt(QPointF point)
{
    if (!currentImage())
        return;
    m_panDrag = {point, currentPanOffset()};
    m_handCursor.panStarted();
    showHandCursor();
}

void ViewController::handlePanMoveTo(QPointF point)
{
    if (m_handCursor.isPanning() && currentImage())
        panTo(m_panDrag.offsetAt(point));
}

void ViewController::handlePanEnd()
{
    m_handCursor.panEnded(currentImage() != nullptr);
    showHandCursor();
}

void ViewController::handleScrollWith(QPointF points)
{
    if (currentImage())
        panTo(offsetScrolledBy(currentPanOffset(), points));
}

void ViewController::handleMagnifyWith(double magnification)
{
    if (!currentImage())
        return;
    if (const auto zoom = ZoomRule::pinched(currentZoomScale(), magnification))
        changeZoom(*zoom);
}

void ViewController::handleCursorUpdate()
{
    updateCursor();
}

void ViewController::updateCursor()
{
    m_handCursor.update(currentImage() != nullptr);
    showHandCursor();
}

/// The view's own cursor, not the application's: dialogs keep theirs.
void ViewController::showHandCursor()
{
    const auto shape = [this] {
        switch (m_handCursor.currentCursorType()) {
        case CursorType::openHand:
            return Qt::OpenHandCursor;
        case CursorType::closedHand:
            return Qt::ClosedHandCursor;
        case CursorType::normal:
            break;
        }
        return Qt::ArrowCursor;
    }();
    if (m_imageView->cursor().shape() != shape)
        m_imageView->setCursor(shape);
}

} // namespace tallowmere
