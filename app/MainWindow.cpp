// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "app/MainWindow.h"

#include <QCloseEvent>
#include <QLayout>

namespace tallowmere {

MainWindow::MainWindow()
{
    setObjectName(QStringLiteral("window"));
    // The window closes by hiding: it comes back as the same object.
    setAttribute(Qt::WA_DeleteOnClose, false);
}

void MainWindow::resizeContent(QSize size)
{
    resize(size);
    if (!centralWidget())
        return;
    layout()->activate(); // otherwise the layout waits for the first show
    resize(size + (size - centralWidget()->size()));
}

void MainWindow::handDragsToContent()
{
    // If both took drags, Qt would tell the content that a drag has left when it comes over the menu bar.
    centralWidget()->setAcceptDrops(false);
    setAcceptDrops(true);
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    Q_EMIT willClose();
    event->accept();
}

bool MainWindow::event(QEvent *event)
{
    switch (event->type()) {
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::DragLeave:
    case QEvent::Drop:
        // Not sent through the application: it would offer the drag to the content's parents, that is, to us.
        if (QObject *content = centralWidget(); content && acceptDrops())
            return content->event(event);
        break;
    default:
        break;
    }
    if (event->type() == QEvent::WindowActivate)
        Q_EMIT didBecomeKey();
    else if (event->type() == QEvent::ShortcutOverride)
        Q_EMIT menuKeyMayCome();
    return QMainWindow::event(event);
}

} // namespace tallowmere
