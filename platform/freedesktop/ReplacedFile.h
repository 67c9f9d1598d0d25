// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <optional>

namespace tallowmere {

/// A small file that is read and replaced as a whole. Paths are bytes.

/// Where @p path leads in the end when it is a symbolic link, also when nothing lies there. Nothing when the links run
/// in a circle or can't be read.
[[nodiscard]] std::optional<QByteArray> followedLinks(QByteArray path);

struct WholeFile
{
    bool exists = true;
    std::optional<QByteArray> contents; ///< nothing when it can't be read, is no regular file or too large
};
/// Refuses what is larger than @p limit bytes, before taking memory for it. Never waits for a FIFO.
[[nodiscard]] WholeFile readWholeFile(const QByteArray &path, qint64 limit);

/// Puts @p contents into the place of the file at @p path, itself no symbolic link, or makes a new one. Whatever
/// happens, either the old or the new contents lie there, on the disk, too. Its mode and, where possible, its owner
/// stay. False, with nothing changed, when that fails or the file is write-protected.
[[nodiscard]] bool replaceWholeFile(const QByteArray &path, const QByteArray &contents);

} // namespace tallowmere
