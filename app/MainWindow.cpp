// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "app/MainWindow.h"

#include <QCloseEvent>
#include <QLayout>
#include <QScreen>

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

void MainWindow::centre()
{
    const QRect available = screen()->availableGeometry();
    // The frame is unknown until the window manager has drawn it; later resizing centres on the real one.
    move(available.center() - QRect(QPoint(), size()).center());
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    Q_EMIT willClose();
    event->accept();
}

bool MainWindow::event(QEvent *event)
{
    if (event->type() == QEvent::WindowActivate)
        Q_EMIT didBecomeKey();
    else if (event->type() == QEvent::ShortcutOverride)
        Q_EMIT menuKeyMayCome();
    return QMainWindow::event(event);
}

} // namespace tallowmere
