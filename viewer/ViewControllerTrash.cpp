// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "browsing/FileListManager.h"
#include "platform/FileExistence.h"
#include "platform/SecurityScope.h"
#include "platform/Trash.h"
#include "support/Queues.h"
#include "viewer/Alert.h"
#include "viewer/Shell.h"
#include "viewer/ViewController.h"

#include <algorithm>
#include <utility>

namespace tallowmere {

namespace {

struct UndoRefusal
{
    QString message;
    QString reason;
};

/// Nothing when the file is back.
std::optional<UndoRefusal> takeBack(const UndoState &state, Trash &trash, SecurityScope &scope)
{
    const ScopedAccess access(scope, state.trashFileURL);
    if (!fileExists(state.trashFileURL))
        return UndoRefusal{ViewController::tr("Cannot Undo"),
                           ViewController::tr("The file is no longer available in Trash.")};
    if (fileExists(state.originalFileURL))
        return UndoRefusal{ViewController::tr("Cannot Undo"),
                           ViewController::tr("A file already exists at the original location.")};
    if (const auto error = trash.restoreItem(state.trashFileURL, state.originalFileURL))
        return UndoRefusal{ViewController::tr("Failed to Restore File"), *error};
    return std::nullopt;
}

} // namespace

void ViewController::moveCurrentFileToTrash()
{
    const FileURL file = currentFile();
    // A second press while the disk is still at work means the same file: there is nothing more to do with it.
    if (file.empty() || m_filesBeingTrashed.contains(file))
        return;
    m_filesBeingTrashed.append(file);
    const qint64 last = m_fileListManager->fileURLs.size() - 1;
    const qint64 index = m_fileListManager->currentIndex;
    const TrashedEntry entry{file.deletingLastPathComponent(), index, last == 0, index == last};
    m_with.launcher.launch("com.tallowmere.trash", QualityOfService::userInitiated,
                           [self = QPointer(this), file, entry, &trash = m_with.trash, &scope = m_with.scope,
                            &mainQueue = m_with.mainQueue] {
        if (!self)
            return;
        const Trash::Moved moved = [&] {
            const ScopedAccess access(scope, file);
            return trash.trashItem(file);
        }();
        if (moved.succeeded && !moved.resultingURL.empty()) {
            mainQueue.async([self, state = UndoState{file, moved.resultingURL, entry.directory, entry.index}] {
                if (auto *controller = self.data())
                    controller->setUndoState(state);
            });
        }
        mainQueue.async([self, file, moved, entry] {
            auto *controller = self.data();
            if (!controller)
                return;
            controller->m_filesBeingTrashed.removeOne(file);
            if (!moved.succeeded)
                showAlert(controller->window(), tr("Failed to Move File to Trash"), moved.error);
            else if (!controller->isIdle()) // else the window was closed meanwhile, and stays empty
                controller->updateListAfterMove(entry);
        });
    });
}

void ViewController::updateListAfterMove(const TrashedEntry &entry)
{
    FileListManager &list = fileListManager();
    list.reloadFiles(entry.directory);
    if (entry.wasOnly)
        return showIdleState();
    const qint64 last = list.fileURLs.size() - 1;
    showEntry(entry.wasLast ? last : std::min(last, entry.index));
    m_with.shell.refreshMenuItems();
}

/// Nothing when the list has no such entry.
void ViewController::showEntry(qint64 index)
{
    if (index < 0 || index >= m_fileListManager->fileURLs.size())
        return;
    m_fileListManager->currentIndex = index;
    updateDisplayTarget();
    prefetchAroundCurrentFile();
    displayImage(m_fileListManager->fileURLs.at(index));
}

void ViewController::undoMoveToTrash()
{
    if (!m_undoState || std::exchange(m_isUndoing, true))
        return;
    m_with.launcher.launch("com.tallowmere.restore", QualityOfService::userInitiated,
                           [self = QPointer(this), state = *m_undoState, wasIdle = isIdle(), &trash = m_with.trash,
                            &scope = m_with.scope, &mainQueue = m_with.mainQueue] {
        if (!self)
            return;
        const std::optional<UndoRefusal> refusal = takeBack(state, trash, scope);
        mainQueue.async([self, state, wasIdle, refusal] {
            auto *controller = self.data();
            if (!controller)
                return;
            controller->m_isUndoing = false;
            controller->setUndoState(std::nullopt);
            if (refusal)
                showAlert(controller->window(), refusal->message, refusal->reason);
            else if (wasIdle || !controller->isIdle()) // as after a move
                controller->showRestoredFile(state);
        });
    });
}

void ViewController::showRestoredFile(const UndoState &state)
{
    FileListManager &list = fileListManager();
    list.reloadFiles(state.directoryURL);
    const qsizetype position = list.fileURLs.indexOf(state.originalFileURL);
    if (position < 0)
        return openImage(state.originalFileURL);
    showEntry(position);
    m_with.shell.refreshMenuItems();
}

} // namespace tallowmere
