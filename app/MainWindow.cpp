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
