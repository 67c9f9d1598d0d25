// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "browsing/FileListManager.h"
#include "browsing/FolderAccess.h"
#include "support/Diagnostics.h"
#include "support/Queues.h"
#include "viewer/DeferredListing.h"
#include "viewer/DraggableImageView.h"
#include "viewer/DraggableView.h"
#include "viewer/OpenPanel.h"
#include "viewer/Shell.h"
#include "viewer/ViewController.h"

#include <QFile>
#include <QFileDialog>
#include <QTimer>

#include <chrono>

namespace tallowmere {

namespace {

/// A window on another workspace may never be painted, and a slow disk may keep the picture away: the neighbours
/// should not have to wait for either.
constexpr std::chrono::milliseconds kListAtTheLatestAfter{250};

void printLoaded(qint64 count, QByteArrayView ending)
{
    printDiagnostic("✅ Successfully loaded " + QByteArray::number(count) + ending.toByteArray());
}

} // namespace

void ViewController::openImage(const FileURL &file)
{
    m_deferredListing->finish(); // what was opened before is opened completely
    setUndoState(std::nullopt);
    m_lastOpened = file;
    // Put off before the image is shown: from now on this file is the one whose zoom counts.
    m_deferredListing->putOff([this, file] { listFolderOf(file); });
    displayImage(file);
    m_with.mainQueue.async([self = QPointer(this)] {
        if (auto *controller = self.data())
            controller->makeFirstResponder();
    });

    if (!m_view->isVisible() || m_imageView->hasPaintedImage())
        listingMayStart();
    else
        QTimer::singleShot(kListAtTheLatestAfter, this, [this, display = m_displays] {
            if (display == m_displays)
                m_deferredListing->finish();
        });
}

/// Posted, not called: what has been painted reaches the screen only when control is back in the event loop.
void ViewController::listingMayStart()
{
    m_with.mainQueue.async([self = QPointer(this)] {
        if (auto *controller = self.data())
            controller->m_deferredListing->finish();
    });
}

bool ViewController::listAround(const FileURL &file, QByteArrayView ending)
{
    if (!m_fileListManager->loadFiles(file))
        return false;
    printLoaded(m_fileListManager->fileURLs.size(), ending);
    prefetchAroundCurrentFile();
    prepareNeighbours();
    return true;
}

void ViewController::listFolderOf(const FileURL &file)
{
    if (!listAround(file, " files from directory")) {
        printDiagnostic("⚠️ Warning: Failed to load file list from directory containing: " + file.path());
        printDiagnostic("   Arrow key navigation may not work. Requesting folder access...");
        m_with.folderAccess.requestAccess(file.deletingLastPathComponent(),
                                          [self = QPointer(this), file](bool granted) {
            if (auto *controller = self.data())
                controller->folderAccessAnswered(file, granted);
        });
    }
    updateOverlayVisibility();
    m_with.shell.refreshMenuItems();
}

void ViewController::folderAccessAnswered(const FileURL &file, bool granted)
{
    // The window was closed before the panel was answered: a list without a picture would let commands act on a file
    // that nobody sees.
    if (isIdle())
        return;
    if (!granted) {
        printDiagnostic("ℹ️ Folder access not granted. Navigation between images will not work.");
        return;
    }
    printDiagnostic("✅ Folder access granted. Reloading file list...");
    m_deferredListing->finish();
    if (!listAround(file, " files after folder access grant"))
        printDiagnostic("⚠️ Still failed to load file list after folder access grant");
    updateOverlayVisibility();
    m_with.shell.refreshMenuItems();
}

void ViewController::showOpenPanel()
{
    if (!m_openPanel) {
        const FileURL folder = m_lastOpened.empty() ? FileURL() : m_lastOpened.deletingLastPathComponent();
        m_openPanel = makeOpenPanel(window(), folder);
        connect(m_openPanel, &QFileDialog::fileSelected, this, [this](const QString &path) {
            if (!path.isEmpty())
                openImage(FileURL::fromPath(QFile::encodeName(path)));
        });
    }
    // A format may have been switched on or off while it was open.
    m_openPanel->setNameFilter(openPanelNameFilter(m_with.settings));
    m_openPanel->show();
    m_openPanel->raise();
    m_openPanel->activateWindow();
}

} // namespace tallowmere
