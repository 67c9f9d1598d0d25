// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "support/FileURL.h"

#include <QList>

namespace tallowmere {

class SecurityScope;
class SettingsManager;

/// The ordered image files of one folder, with the position of the one on screen.
///
/// Main thread only. Lists on request and never watches. currentIndex may lie outside the list: every reader checks.
class FileListManager final
{
public:
    /// Neither is owned; both outlive this.
    FileListManager(const SettingsManager &settings, SecurityScope &scope);

    QList<FileURL> fileURLs;
    qint64 currentIndex = 0;

    /// Lists the folder of @p file. True when that succeeded and the file is in the list; a failed
    /// listing prints a line and leaves the old list in place.
    bool loadFiles(const FileURL &file);
    /// Lists @p folder and goes to its first entry. True when the listing succeeded, even an empty one.
    bool reloadFiles(const FileURL &folder);

    /// The step that was asked for, with wrap-around; the empty URL when there is nowhere to go.
    FileURL nextFileURL();
    FileURL previousFileURL();

private:
    /// False, with fileURLs untouched, when @p folder can't be listed.
    bool list(const FileURL &folder);

    const SettingsManager &m_settings;
    SecurityScope &m_scope;
};

} // namespace tallowmere
