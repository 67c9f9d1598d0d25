// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/Image.h"
#include "viewer/DisplayCopies.h"
#include "viewer/DisplayCopyRequests.h"
#include "viewer/ImagePlacement.h"

#include <QColor>
#include <QWidget>

#include <memory>

namespace tallowmere {

/// Paints the image and what shows around and through it.
///
/// It paints from display copies; while one is missing, it makes do with what there is and has the copy made in the
/// background. Main thread.
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
    /// Opaque.
    void setBackgroundColor(const QColor &color);
    [[nodiscard]] const QColor &backgroundColor() const { return m_backgroundColor; }
    /// Has the copy of the present image made in the background unless it is there: the view is about to get the size
    /// that calls for it.
    void wantCopy(PixelSize size);
    /// While the window moves from one size to another, copies for the sizes in between are not worth making.
    void setInTransition(bool inTransition);
    /// The present image has been painted at least once. False without an image.
    [[nodiscard]] bool hasPaintedImage() const { return m_hasPaintedImage; }

Q_SIGNALS:
    /// The present image has just been painted for the first time; it is on the screen once control returns to
    /// the event loop.
    void imagePainted();

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    struct Source;

    [[nodiscard]] Source sourceFor(const ImagePlacement &placement);

    const std::shared_ptr<DisplayPreparation> m_preparation;
    DisplayCopyRequests m_requests;
    ImagePtr m_image;
    QColor m_backgroundColor;
    bool m_inTransition = false;
    bool m_hasPaintedImage = false;
};

} // namespace tallowmere
