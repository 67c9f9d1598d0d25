// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "viewer/rules/DraggingInfo.h"
#include "viewer/rules/HeldKey.h"

#include <QDeadlineTimer>
#include <QWidget>

#include <optional>

namespace tallowmere {

class DraggingDestinationHandler;
class KeyHandler;

/// The viewer's root view: takes keys, clicks and drops for the controller.
///
/// It alone takes part in drags; everything that lies on it lets them through to its parent, so that a drag that
/// crosses from the image to a pill has neither left nor entered anything. A window may take drags in its place and
/// hand them to it, those over its other parts as well.
///
/// A drag whose program dies neither leaves nor drops. It has left as soon as the mouse has been moving without it for
/// longer than a drop takes to arrive.
///
/// Its handlers are not owned and may be null.
class DraggableView final : public QWidget
{
    Q_OBJECT

public:
    explicit DraggableView(QWidget *parent = nullptr);

    void setDraggingDelegate(DraggingDestinationHandler *delegate) { m_draggingDelegate = delegate; }
    void setKeyHandler(KeyHandler *handler) { m_keyHandler = handler; }

    /// No size is too small: the window may be as tiny as the user likes.
    [[nodiscard]] QSize minimumSizeHint() const override { return {0, 0}; }
    [[nodiscard]] QSize sizeHint() const override { return {600, 400}; }

Q_SIGNALS:
    /// The view came on the screen.
    void appeared();
    /// Children must be placed anew.
    void resized();
    void appearanceChanged();

protected:
    bool event(QEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dragLeaveEvent(QDragLeaveEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    void mouseMovedWithoutDrag();
    [[nodiscard]] bool countsNoMore(const QKeyEvent &event);
    [[nodiscard]] const DraggingInfo &dragInfo(const QDropEvent &event);

    DraggingDestinationHandler *m_draggingDelegate = nullptr;
    KeyHandler *m_keyHandler = nullptr;
    HeldKey m_heldKey;
    std::optional<DraggingInfo> m_drag;         ///< the one over the view; asking the other program again takes time
    std::optional<QDeadlineTimer> m_dragEndsAt; ///< the mouse moves without it; until then, it may still be dropped
};

} // namespace tallowmere
