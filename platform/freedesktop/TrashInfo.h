// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QDateTime>

namespace tallowmere {

/// What the desktop notes about a binned file: the text of its .trashinfo, as the freedesktop Trash specification 1.0
/// has it. @p path: where the file was, absolute for the home trash, else relative to the volume's top directory.
/// @p deleted: local time.
[[nodiscard]] QByteArray trashInfoText(const QByteArray &path, const QDateTime &deleted);

/// "photo.jpg" → "photo.jpg.trashinfo"
[[nodiscard]] QByteArray trashInfoName(const QByteArray &trashedName);

/// A name to try in the Trash: for @p number 1 the file's own, then "photo.2.jpg" and so on. No longer than
/// @p longest bytes, cut before the extension and between characters.
[[nodiscard]] QByteArray nameInTrash(const QByteArray &name, quint64 number, qsizetype longest);

} // namespace tallowmere
