// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/Image.h"
#include "viewer/DisplayCopies.h"
#include "viewer/DisplayCopyRequests.h"
#include "viewer/ImagePlacement.h"
#include "viewer/rules/ImageScaling.h"
#include "viewer/rules/ImageTransform.h"
#include "viewer/rules/PinchGesture.h"

#include <QColor>
#include <QWidget>

#include <cstddef>
#include <memory>
#include <vector>

class QNativeGestureEvent;
class QPainter;

namespace tallowmere {

class PanningHandler;
class TransparencyChecker;

/// Paints the image and what shows around and through it.
///
/// It paints from display copies; while one is missing, it makes do with what there is and has the copy made in the
/// background. A magnified image is painted from its own pixels. Mouse, wheel and touchpad go to the panning delegate.
/// Main thread.
class DraggableImageView final : public QWidget
{
    Q_OBJECT

public:
    /// The queues outlive the view.
    DraggableImageView(std::shared_ptr<DisplayPreparation> preparation, Launcher &launcher, MainQueue &mainQueue,
                       QWidget *parent = nullptr);

    /// May be null: no image.
    void setImage(ImagePtr image);
    [[nodiscard]] const ImagePtr &image() const { return m_image; }
    /// Not owned; may be null.
    void setPanningDelegate(PanningHandler *delegate) { m_panningDelegate = delegate; }
    void setImageScaling(ImageScaling scaling);
    [[nodiscard]] ImageScaling imageScaling() const { return m_scaling; }
    /// What is done to the fitted image.
    void setImageTransform(const ImageTransform &transform);
    [[nodiscard]] const ImageTransform &imageTransform() const { return m_transform; }
    /// Opaque.
    void setBackgroundColor(const QColor &color);
    /// The checkerboard to be seen around the image and through it instead of the colour; null: the colour. It lies
    /// beneath this view and outlives it; painted from here, it is still in the cache when pixels are mixed with it.
    void setChecker(TransparencyChecker *checker);
    [[nodiscard]] const QColor &backgroundColor() const { return m_backgroundColor; }
    /// Has the copy of the present image made in the background unless it is there: the view is about to get the size
    /// that calls for it.
    void wantCopy(PixelSize size);
    /// While the window moves from one size to another, copies for the sizes in between are not worth making.
    void setInTransition(bool inTransition);
    /// The present image has been painted at least once. False without an image.
    [[nodiscard]] bool hasPaintedImage() const { return m_hasPaintedImage; }

    /// What a screen reader says of the view: the file's name, and what is known about it.
    void setImageName(const QString &name);
    void setImageDescription(const QString &description);
    [[nodiscard]] const QString &imageName() const { return m_imageName; }
    [[nodiscard]] const QString &imageDescription() const { return m_imageDescription; }

Q_SIGNALS:
    /// The present image has just been painted for the first time; it is on the screen once control returns to
    /// the event loop.
    void imagePainted();

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void enterEvent(QEnterEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    struct Source;

    /// The points that the present image is painted on, and hardly more. Without an image, the whole view.
    [[nodiscard]] QRect imageRect() const;
    [[nodiscard]] bool handleNativeGesture(QNativeGestureEvent *event);
    [[nodiscard]] Source sourceFor(const ImagePlacement &placement);
    void fillBackground(QPainter &painter, const QRegion &region) const;
    [[nodiscard]] bool fillsStripByStrip() const;
    void paintReduced(QPainter &painter, const QRegion &region, const ImagePlacement &fitted);
    void paintMagnified(QPainter &painter, const QRegion &region, const ImagePlacement &fitted);
    void paintSampled(QPainter &painter, const QRegion &region, const QRectF &target, const DisplayBitmap &bitmap);

    const std::shared_ptr<DisplayPreparation> m_preparation;
    DisplayCopyRequests m_requests;
    ImagePtr m_image;
    QString m_imageName;
    QString m_imageDescription;
    ImageScaling m_scaling = ImageScaling::proportionallyUpOrDown;
    ImageTransform m_transform;
    PanningHandler *m_panningDelegate = nullptr;
    PinchGesture m_pinch;
    QColor m_backgroundColor;
    TransparencyChecker *m_checker = nullptr;
    std::vector<std::byte> m_strip; ///< rows on their way to the screen
    bool m_inTransition = false;
    bool m_hasPaintedImage = false;
};

} // namespace tallowmere
