// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "viewer/DeferredListing.h"
#include "viewer/DraggableImageView.h"
#include "viewer/DraggableView.h"
#include "viewer/rules/ImageScaling.h"
#include "viewer/rules/ImageTransform.h"
#include "viewer/ViewController.h"
#include "viewer/WindowFrame.h"

namespace tallowmere {

/// What a zoom would be remembered under now.
///
/// While the window moves to another size that is the size it will have: sizes in between never come back, and with
/// them a zoom remembered there would be lost.
/// A folder whose listing is put off must not be listed for this: until then the current file is the one opened last.
ZoomMemory::Key ViewController::zoomKey()
{
    const FileURL file = m_deferredListing->isPutOff() ? m_lastOpened : currentFile();
    WindowFrame *const frame = windowFrame();
    if (file.empty() || !frame)
        return std::nullopt;
    return ZoomKey{file, frame->destination().size()};
}

double ViewController::currentZoomScale()
{
    return m_zoomMemory.zoomScale(zoomKey());
}

void ViewController::setZoomScale(double zoom)
{
    m_zoomMemory.setZoomScale(zoomKey(), zoom);
}

QPointF ViewController::currentPanOffset()
{
    return m_zoomMemory.panOffset(zoomKey());
}

void ViewController::setPanOffset(QPointF offset)
{
    m_zoomMemory.setPanOffset(zoomKey(), offset);
}

void ViewController::applyZoom(const ImagePtr &image)
{
    const QSizeF view = m_imageView->size();
    const double zoom = currentZoomScale();
    m_imageView->setImageScaling(imageScalingFor(image->size(), view, zoom));
    if (view.isEmpty() || zoom == 1.0)
        resetZoomTransform();
    else
        applyZoomTransform(zoom);
    updateCursor();
}

void ViewController::reapplyZoom()
{
    if (const ImagePtr image = currentImage())
        applyZoom(image);
}

std::function<void()> ViewController::zoomReapplication()
{
    return [self = QPointer(this)] {
        if (auto *controller = self.data())
            controller->reapplyZoom();
    };
}

void ViewController::applyZoomTransform(double zoom)
{
    m_imageView->setImageTransform(ImageTransform::of(zoom, currentPanOffset()));
}

void ViewController::resetZoomTransform()
{
    m_imageView->setImageTransform({});
    m_zoomMemory.removePanOffset(zoomKey());
}

void ViewController::changeZoom(double zoom)
{
    setZoomScale(zoom);
    reapplyZoom();
}

void ViewController::perform(const ZoomRule::Change &change)
{
    if (change.zoom)
        changeZoom(*change.zoom);
    if (change.windowFactor)
        resizeWindowByFactor(true, *change.windowFactor);
}

/// Nothing as well where the window system holds the window's size: it is not going to grow.
std::optional<double> ViewController::windowRatio()
{
    WindowFrame *const frame = windowFrame();
    const auto fitted = fittedImageSize();
    if (!frame || !fitted || frame->isHeldBySystem())
        return std::nullopt;
    // In whole points, as windows are: a fraction that the window can never have would keep it growing in vain.
    return ZoomRule::windowRatio(contentSizeAtDestination().width(), fitted->toSize().width());
}

void ViewController::zoomIn()
{
    if (!currentImage())
        return;
    perform(m_with.settings.autoResizeToImageSize() ? ZoomRule::zoomInGrowingWindow(currentZoomScale(), windowRatio())
                                                    : ZoomRule::zoomIn(currentZoomScale()));
}

void ViewController::zoomOut()
{
    if (!currentImage())
        return;
    perform(m_with.settings.autoResizeToImageSize()
                ? ZoomRule::zoomOutShrinkingWindow(currentZoomScale(), windowRatio())
                : ZoomRule::zoomOut(currentZoomScale()));
}

void ViewController::resetZoom()
{
    if (!currentImage())
        return;
    m_zoomMemory.reset(zoomKey());
    if (m_with.settings.autoResizeToImageSize())
        fitWindowToImage(m_with.settings.autoResizeWithAnimation(), zoomReapplication());
    else
        reapplyZoom();
}

void ViewController::forgetZoomForCurrentFile()
{
    if (const auto key = zoomKey())
        m_zoomMemory.forget(key->fileURL);
    resetZoomTransform();
    updateCursor();
}

void ViewController::resetZoomAfterAutoResize(const FileURL &file)
{
    if (WindowFrame *const frame = windowFrame())
        m_zoomMemory.reset(ZoomKey{file, frame->destination().size()});
}

} // namespace tallowmere
