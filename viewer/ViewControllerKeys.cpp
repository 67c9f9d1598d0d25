// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "platform/FileRevealer.h"
#include "viewer/DraggableView.h"
#include "viewer/KeyTable.h"
#include "viewer/Shell.h"
#include "viewer/ViewController.h"
#include "viewer/WindowGeometry.h"

#include <QKeyEvent>

namespace tallowmere {

void ViewController::keyDown(QKeyEvent *event)
{
    const KeyPress press{event->key(), event->modifiers(), event->nativeScanCode()};
    event->setAccepted(perform(keyCommandFor(press)));
}

bool ViewController::perform(KeyCommand command)
{
    switch (command) {
    case KeyCommand::hideApplication:
        m_with.shell.hideApplication();
        return true;
    case KeyCommand::revealInFileManager:
        revealCurrentFileInFinder();
        return true;
    case KeyCommand::moveToTrash:
        moveCurrentFileToTrash();
        return true;
    case KeyCommand::undoMoveToTrash:
        undoMoveToTrash();
        return true;
    case KeyCommand::resetZoom:
        resetZoom();
        return true;
    case KeyCommand::zoomIn:
        zoomIn();
        return true;
    case KeyCommand::zoomOut:
        zoomOut();
        return true;
    case KeyCommand::smallWindow:
        switchAutoResizeOff();
        resizeWindow(true, WindowGeometry::kSmallFrame.width(), WindowGeometry::kSmallFrame.height());
        return true;
    case KeyCommand::mediumWindow:
        switchAutoResizeOff();
        resizeWindow(true, WindowGeometry::kMediumFrame.width(), WindowGeometry::kMediumFrame.height());
        return true;
    case KeyCommand::largeWindow:
        switchAutoResizeOff();
        resizeWindowToScreen(true);
        return true;
    case KeyCommand::toggleFitToImage:
        m_with.shell.resizeWindowToImage();
        return true;
    case KeyCommand::earlierInList:
        showEarlierInList();
        return true;
    case KeyCommand::laterInList:
        showLaterInList();
        return true;
    default:
        return false;
    }
}

/// A fixed size ends automatic resizing, and with it the background that goes with the picture.
void ViewController::switchAutoResizeOff()
{
    if (m_with.settings.autoResizeToImageSize()) {
        m_with.settings.setAutoResizeToImageSize(false);
        m_with.shell.refreshMenuItems();
        m_with.shell.refreshSettingsControls();
    }
    applyBackgroundColor(windowBackgroundColor());
}

void ViewController::revealCurrentFileInFinder()
{
    const FileURL file = currentFile();
    if (!file.empty())
        m_with.revealer.reveal(file);
}

void ViewController::handleDoubleClick(QMouseEvent *)
{
    if (currentFile().empty())
        showOpenPanel();
}

void ViewController::makeFirstResponder()
{
    if (window())
        m_view->setFocus();
}

} // namespace tallowmere
