// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "viewer/DisplayPreparation.h"
#include "viewer/DraggableImageView.h"
#include "viewer/DraggableView.h"
#include "viewer/ViewController.h"
#include "viewer/WindowFrame.h"
#include "viewer/WindowGeometry.h"

#include <QLayout>
#include <QScreen>

#include <utility>

namespace tallowmere {

QWidget *ViewController::window() const
{
    return m_view->isWindow() ? nullptr : m_view->window();
}

std::optional<ScreenArea> ViewController::screenArea() const
{
    const QScreen *screen = m_view->screen();
    if (!screen)
        return std::nullopt;
    return ScreenArea{screen->availableGeometry(), m_view->devicePixelRatioF()};
}

WindowFrame *ViewController::windowFrame()
{
    QWidget *const host = window();
    if (!host)
        return nullptr;
    if (!m_windowFrame || m_windowFrame->parent() != host) {
        m_windowFrame = new WindowFrame(host);
        connect(m_windowFrame, &WindowFrame::animationStarted, m_imageView,
                [this] { m_imageView->setInTransition(true); });
        connect(m_windowFrame, &WindowFrame::animationFinished, m_imageView,
                [this] { m_imageView->setInTransition(false); });
    }
    return m_windowFrame;
}

/// Decorations, menu bar and whatever else the window has beside the view.
QSizeF ViewController::frameExtra()
{
    WindowFrame *const frame = windowFrame();
    if (!frame)
        return {};
    QWidget *const host = window();
    if (!host->isVisible() && host->layout()) {
        // A hidden window lays out its contents only when it is shown.
        host->layout()->invalidate();
        host->layout()->activate();
    }
    return frame->frame().size() - m_view->size();
}

/// The view's size once the window has arrived: what comes next must not be reckoned from a size on the way there.
QSizeF ViewController::contentSizeAtDestination()
{
    WindowFrame *const frame = windowFrame();
    return frame && frame->isAnimating() ? frame->destination().size() - frameExtra() : QSizeF(m_view->size());
}

void ViewController::updateDisplayTarget()
{
    DisplayTarget target;
    target.viewSize = m_view->size();
    target.scale = m_view->devicePixelRatioF();
    if (WindowFrame *const frame = windowFrame()) {
        target.frameExtra = frameExtra();
        if (!frame->isHeldBySystem())
            target.screen = screenArea();
    }
    m_preparation->setTarget(target);
}

void ViewController::centreWindow()
{
    WindowFrame *const frame = windowFrame();
    if (!frame)
        return;
    frame->setFrame(
        [self = QPointer(this), frame]() -> std::optional<QRectF> {
            auto *controller = self.data();
            const auto screen = controller ? controller->screenArea() : std::nullopt;
            if (!screen)
                return std::nullopt;
            return WindowGeometry::centredFrame(frame->frame().size(), screen->visibleFrame);
        },
        false, {});
}

void ViewController::resizeWindow(bool animated, double width, double height)
{
    WindowFrame *const frame = windowFrame();
    if (!frame)
        return;
    forgetZoomForCurrentFile();
    frame->releaseFromSystem();
    frame->setFrame(
        [frame, width, height] {
        return std::optional(WindowGeometry::resizedAboutCentre(frame->frame(), {width, height}));
        },
        animated, zoomReapplication());
}

/// A window that the window system holds keeps its size: only a size that the user asks for ends that.
void ViewController::takeIdleSize()
{
    if (WindowFrame *const frame = windowFrame(); frame && frame->isHeldBySystem())
        return forgetZoomForCurrentFile();
    resizeWindow(true, WindowGeometry::kIdleFrame.width(), WindowGeometry::kIdleFrame.height());
}

void ViewController::resizeWindowToScreen(bool animated)
{
    WindowFrame *const frame = windowFrame();
    const auto screen = screenArea();
    if (!frame || !screen)
        return;
    forgetZoomForCurrentFile();
    frame->releaseFromSystem();
    frame->setFrame([visible = screen->visibleFrame] { return std::optional(WindowGeometry::largeFrame(visible)); },
                    animated, zoomReapplication());
}

/// The frame around content of the size that @p contentSize gives, in the middle of the screen. It is worked out when
/// it is applied, since decorations are not known before the window is on the screen.
std::function<std::optional<QRectF>()>
ViewController::centredFrameRule(std::function<std::optional<QSizeF>()> contentSize)
{
    return [self = QPointer(this), contentSize = std::move(contentSize)]() -> std::optional<QRectF> {
        auto *controller = self.data();
        if (!controller)
            return std::nullopt;
        const auto screen = controller->screenArea();
        const auto content = contentSize();
        if (!screen || !content)
            return std::nullopt;
        return WindowGeometry::centredFrame(*content + controller->frameExtra(), screen->visibleFrame);
    };
}

std::optional<QSizeF> ViewController::fittedImageSize()
{
    const ImagePtr image = currentImage();
    const auto screen = screenArea();
    if (!window() || !image || !image->hasBitmap() || !screen)
        return std::nullopt;
    return WindowGeometry::fittedImageSize(image->pixelSize(), *screen, frameExtra());
}

void ViewController::fitWindowToImage(bool animated, std::function<void()> completion)
{
    WindowFrame *const frame = windowFrame();
    const ImagePtr image = currentImage();
    if (!frame || !image)
        return;
    if (!screenArea())
        return;
    forgetZoomForCurrentFile();
    const auto reapplication = zoomReapplication();
    if (!completion)
        completion = reapplication;
    if (frame->isHeldBySystem())
        return image->hasBitmap() ? completion() : reapplication();
    m_imageView->setImageScaling(ImageScaling::proportionallyDown);
    // An image without a bitmap is not fitted to the screen, and whoever waits for it isn't told: there is nothing
    // to go on with.
    if (image->hasBitmap())
        frame->setFrame(centredFrameRule([this] { return fittedImageSize(); }), animated, std::move(completion));
    else
        frame->setFrame(centredFrameRule([size = image->size()] { return std::optional(size); }), animated,
                        reapplication);
}

void ViewController::resizeWindowByFactor(bool animated, double factor)
{
    WindowFrame *const frame = windowFrame();
    const auto screen = screenArea();
    const auto fitted = fittedImageSize();
    if (!frame || !screen || !fitted || frame->isHeldBySystem())
        return;
    const QSizeF content = WindowGeometry::contentResizedByFactor(contentSizeAtDestination(), factor, *fitted);
    frame->setFrame(centredFrameRule([content] { return std::optional(content); }),
                    animated && m_with.settings.autoResizeWithAnimation(), zoomReapplication());
}

} // namespace tallowmere
