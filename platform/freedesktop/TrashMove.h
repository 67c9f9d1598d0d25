// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/freedesktop/ExclusiveMove.h"

#include <QByteArray>
#include <QString>

#include <optional>
#include <variant>

namespace tallowmere {

struct TrashDirectory;

struct TrashMoveFailure
{
    bool otherFileSystem = false; ///< the file can't be renamed into this Trash
    QString reason;               ///< for the user
};

/// The name in the Trash, or why the file is still where it was.
using TrashMoveResult = std::variant<QByteArray, TrashMoveFailure>;

/// Moves @p file into @p trash under a name that is free there, its @p infoText written and on the disk before.
/// Where the move fails, no note of it is left.
[[nodiscard]] TrashMoveResult moveIntoTrash(const TrashDirectory &trash, const NameInFolder &file,
                                            const QByteArray &infoText);

} // namespace tallowmere
