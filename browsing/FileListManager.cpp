// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "browsing/FileListManager.h"

#include "browsing/FolderListing.h"
#include "browsing/NameOrder.h"
#include "platform/SecurityScope.h"
#include "settings/SettingsManager.h"
#include "support/Diagnostics.h"

#include <optional>

namespace tallowmere {

FileListManager::FileListManager(const SettingsManager &settings, SecurityScope &scope)
    : m_settings(settings), m_scope(scope)
{}

bool FileListManager::loadFiles(const FileURL &file)
{
    const FileURL folder = file.deletingLastPathComponent();
    std::optional<ScopedAccess> fileAccess(std::in_place, m_scope, file);
    const ScopedAccess folderAccess(m_scope, folder);
    if (!list(folder)) {
        printDiagnostic("⚠️ Failed to load files from directory: " + folder.path());
        return false;
    }
    const qsizetype position = fileURLs.indexOf(file);
    currentIndex = position < 0 ? 0 : position;
    fileAccess.reset(); // the file's ends before the folder's, though it began before it
    return position >= 0;
}

bool FileListManager::reloadFiles(const FileURL &folder)
{
    const ScopedAccess folderAccess(m_scope, folder);
    if (!list(folder)) {
        printDiagnostic("⚠️ Failed to reload files from directory: " + folder.path());
        return false;
    }
    currentIndex = 0;
    return true;
}

bool FileListManager::list(const FileURL &folder)
{
    auto names = visibleNamesIn(folder.path());
    if (!names)
        return false;
    const QList<QByteArray> extensions = m_settings.enabledImageExtensions();
    std::erase_if(*names,
                  [&](const QByteArray &name) { return !extensions.contains(FileURL::lowercasedPathExtension(name)); });
    sortByName(*names);

    QList<FileURL> listed;
    listed.reserve(static_cast<qsizetype>(names->size()));
    for (const QByteArray &name : *names)
        listed.append(folder.appending(name));
    fileURLs = std::move(listed);
    return true;
}

FileURL FileListManager::nextFileURL()
{
    const qint64 count = fileURLs.size();
    if (count == 0)
        return {};
    currentIndex = currentIndex >= count - 1 ? 0 : currentIndex + 1;
    return currentIndex >= 0 ? fileURLs[currentIndex] : FileURL();
}

FileURL FileListManager::previousFileURL()
{
    const qint64 count = fileURLs.size();
    if (count == 0)
        return {};
    currentIndex = (currentIndex > 0 ? currentIndex : count) - 1;
    return currentIndex < count ? fileURLs[currentIndex] : FileURL();
}

} // namespace tallowmere
