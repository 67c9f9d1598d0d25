// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "support/FileURL.h"

#include <QString>

#include <optional>

namespace tallowmere {

/// Where files go that the user throws away, and come back from.
///
/// Any thread; every operation may block on the disk. A file is never lost: whatever fails, it is still whole, at the
/// one place or the other.
class Trash
{
public:
    struct Moved
    {
        bool succeeded = false;
        FileURL resultingURL; ///< where the file lies now; empty when the desktop doesn't say
        QString error;        ///< for the user, when it failed
    };

    virtual ~Trash() = default;
    [[nodiscard]] virtual Moved trashItem(const FileURL &file) = 0;
    /// Moves a file that trashItem() binned to @p original, provided nothing lies there. Nothing on success, else
    /// the reason, for the user.
    [[nodiscard]] virtual std::optional<QString> restoreItem(const FileURL &trashed, const FileURL &original) = 0;
};

} // namespace tallowmere
