// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>

namespace tallowmere {

/// Where the user's files of each kind belong, by the XDG Base Directory Specification. Absolute paths, bytes, without
/// a slash at the end; a folder named here need not exist.
struct BaseDirectories
{
    QByteArray home;   ///< empty when neither the environment nor the user database tells
    QByteArray config; ///< empty, as the two after it, when there is no home either
    QByteArray data;
    QByteArray cache;
    QList<QByteArray> configDirs; ///< the system's, most important first
    QList<QByteArray> dataDirs;

    /// Reads the environment at each call. Relative paths in it are ignored, as the XDG Base Directory standard
    /// demands. Main thread: the environment has no lock.
    [[nodiscard]] static BaseDirectories fromEnvironment();
};

} // namespace tallowmere
