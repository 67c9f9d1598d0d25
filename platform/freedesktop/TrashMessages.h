// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

namespace tallowmere::trashMessages {

/// Sentences for the user, as plain text, about what kept a file from the Trash or from coming back. Long names are
/// shortened in the middle. @p error: an error number of the system's.

[[nodiscard]] QString cannotMove(const QByteArray &file, int error);
[[nodiscard]] QString alreadyInTrash(const QByteArray &file);
[[nodiscard]] QString cannotUseTrash(const QByteArray &folder, int error);
[[nodiscard]] QString trashIsALink(const QByteArray &folder);
[[nodiscard]] QString trashIsNoFolder(const QByteArray &folder);
[[nodiscard]] QString trashOfSomebodyElse(const QByteArray &folder);
[[nodiscard]] QString cannotRestore(const QByteArray &file, const QByteArray &folder, int error);
[[nodiscard]] QString folderIsGone(const QByteArray &folder);

} // namespace tallowmere::trashMessages
