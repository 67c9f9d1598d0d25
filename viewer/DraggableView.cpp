// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "viewer/DraggableView.h"

#include "viewer/DraggingDestinationHandler.h"
#include "viewer/KeyTable.h"

#include <QDragEnterEvent>
#include <QDragLeaveEvent>
#include <QDropEvent>
#include <QEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QMouseEvent>

#include <chrono>

namespace tallowmere {

namespace {

/// A drag holds the mouse until the button is up; the drop itself may come a little later.
constexpr std::chrono::milliseconds kDropTakesAtMost{1000};

void answer(QDropEvent &event, bool accepted)
{
    // Whatever the other program would like best: it must never take its file for moved.
    event.setDropAction(accepted ? Qt::CopyAction : Qt::IgnoreAction);
    event.setAccepted(accepted);
}

} // namespace

DraggableView::DraggableView(QWidget *parent) : QWidget(parent)
{
    setFocusPolicy(Qt::StrongFocus);
    setAcceptDrops(true);
    setAttribute(Qt::WA_Hover); // mouse moves over the views on this one, too
}

void DraggableView::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    Q_EMIT appeared();
}

void DraggableView::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    Q_EMIT resized();
}

void DraggableView::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        Q_EMIT appearanceChanged();
}

/// A command key that is held down: a finger that stays a little too long must not bin the next file, too.
bool DraggableView::countsNoMore(const QKeyEvent &event)
{
    const bool isRepeat = m_heldKey.isRepeat(event.key(), event.timestamp()) || event.isAutoRepeat();
    return isRepeat && !repeatsWhileHeld({event.key(), event.modifiers(), event.nativeScanCode()});
}

bool DraggableView::event(QEvent *event)
{
    // Before the menu looks for a key of its own.
    if (event->type() == QEvent::ShortcutOverride && countsNoMore(static_cast<const QKeyEvent &>(*event))) {
        event->accept();
        return true;
    }
    if (event->type() == QEvent::HoverMove)
        mouseMovedWithoutDrag();
    // The base class would paint the whole view anew.
    if (event->type() == QEvent::HoverEnter || event->type() == QEvent::HoverLeave)
        return true;
    return QWidget::event(event);
}

void DraggableView::keyReleaseEvent(QKeyEvent *event)
{
    m_heldKey.released(event->key(), event->timestamp());
    QWidget::keyReleaseEvent(event);
}

void DraggableView::keyPressEvent(QKeyEvent *event)
{
    if (countsNoMore(*event))
        event->accept();
    else if (m_keyHandler)
        m_keyHandler->keyDown(event);
    else
        QWidget::keyPressEvent(event);
}

void DraggableView::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return QWidget::mouseDoubleClickEvent(event);
    if (m_draggingDelegate)
        m_draggingDelegate->handleDoubleClick(event);
}

void DraggableView::mouseMovedWithoutDrag()
{
    if (!m_drag)
        return;
    if (!m_dragEndsAt)
        m_dragEndsAt.emplace(kDropTakesAtMost);
    if (!m_dragEndsAt->hasExpired())
        return;
    QDragLeaveEvent leave;
    dragLeaveEvent(&leave);
}

/// As bytes: names that are no text would not survive as URLs.
const DraggingInfo &DraggableView::dragInfo(const QDropEvent &event)
{
    m_dragEndsAt.reset();
    if (!m_drag)
        m_drag.emplace(event.mimeData()->data(QStringLiteral("text/uri-list")));
    return *m_drag;
}

void DraggableView::dragEnterEvent(QDragEnterEvent *event)
{
    m_drag.reset();
    answer(*event, m_draggingDelegate && m_draggingDelegate->draggingEntered(dragInfo(*event)) == DragOperation::copy);
}

void DraggableView::dragMoveEvent(QDragMoveEvent *event)
{
    // The mouse has moved without a drag since: this is another one, which Qt takes for the first gone on.
    if (m_dragEndsAt)
        m_drag.reset();
    answer(*event, m_draggingDelegate && m_draggingDelegate->draggingUpdated(dragInfo(*event)) == DragOperation::copy);
}

void DraggableView::dragLeaveEvent(QDragLeaveEvent *)
{
    m_drag.reset();
    if (m_draggingDelegate)
        m_draggingDelegate->draggingExited();
}

void DraggableView::dropEvent(QDropEvent *event)
{
    answer(*event, m_draggingDelegate && m_draggingDelegate->performDragOperation(dragInfo(*event)));
    m_drag.reset();
}

} // namespace tallowmere
