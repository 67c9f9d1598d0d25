// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "viewer/DraggableView.h"

#include "viewer/DraggingDestinationHandler.h"

#include <QEvent>
#include <QKeyEvent>
#include <QMouseEvent>

namespace tallowmere {

DraggableView::DraggableView(QWidget *parent) : QWidget(parent)
{
    setFocusPolicy(Qt::StrongFocus);
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

void DraggableView::keyPressEvent(QKeyEvent *event)
{
    if (m_keyHandler)
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

} // namespace tallowmere
