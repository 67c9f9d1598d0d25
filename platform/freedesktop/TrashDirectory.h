// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "support/FileDescriptor.h"

#include <QByteArray>
#include <QString>

#include <variant>

namespace tallowmere {

/// One Trash of the user's, with its two folders open; the paths are for those who can't use descriptors.
struct TrashDirectory
{
    QByteArray path;
    FileDescriptor files;
    FileDescriptor info;
};

/// The Trash, or why it can't be used, for the user.
using OpenedTrash = std::variant<TrashDirectory, QString>;

/// $XDG_DATA_HOME/Trash; what is missing is made. The Trash itself has to be the user's own, not a link to somewhere.
/// @p dataHome: absolute.
[[nodiscard]] OpenedTrash openHomeTrash(const QByteArray &dataHome);

/// The user's Trash on another volume: in the administrator's .Trash where that is a real folder with the sticky bit,
/// else .Trash-$uid. @p topDirectory: where the volume is mounted.
[[nodiscard]] OpenedTrash openVolumeTrash(const QByteArray &topDirectory);

} // namespace tallowmere
