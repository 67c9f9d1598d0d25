// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "app/ContentWindow.h"

#include <QAccessibleWidget>
#include <QEvent>
#include <QScreen>
#include <QVBoxLayout>

#include <algorithm>

namespace tallowmere {

namespace {

/// Otherwise a plain widget is nothing that a screen reader would count among the windows.
QAccessibleInterface *makeAccessible(const QString &, QObject *object)
{
    auto *window = qobject_cast<ContentWindow *>(object);
    return window ? new QAccessibleWidget(window, QAccessible::Window) : nullptr;
}

} // namespace

ContentWindow::ContentWindow(const QString &title, QWidget *content, QSize size)
    : QWidget(nullptr, Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                           Qt::WindowCloseButtonHint),
      m_smallest(size)
{
    QAccessible::installFactory(makeAccessible); // the same function twice counts once
    setWindowTitle(title);
    auto *whole = new QVBoxLayout(this);
    whole->setContentsMargins(0, 0, 0, 0);
    whole->addWidget(content);
    fitToContent();
}

void ContentWindow::fitToContent()
{
    QLayout *whole = layout();
    whole->activate();
    const int width = std::max(m_smallest.width(), whole->totalMinimumSize().width());
    const int needed = whole->hasHeightForWidth() ? whole->totalHeightForWidth(width) : whole->totalSizeHint().height();
    setFixedSize(width, std::max(m_smallest.height(), needed));
}

void ContentWindow::centre()
{
    const QRect available = screen()->availableGeometry();
    const QPoint middle = available.center() - QRect(QPoint(), size()).center();
    // On a small screen the beginning counts: the title and the first rows.
    move(std::max(middle.x(), available.left()), std::max(middle.y(), available.top()));
}

void ContentWindow::makeKeyAndOrderFront()
{
    if (isMinimized())
        setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    raise();
    activateWindow();
}

bool ContentWindow::event(QEvent *event)
{
    const bool handled = QWidget::event(event);
    if (event->type() == QEvent::LayoutRequest)
        fitToContent();
    return handled;
}

} // namespace tallowmere
