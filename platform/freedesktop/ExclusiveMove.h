// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

namespace tallowmere {

/// A name in an open folder (a descriptor).
struct NameInFolder
{
    int folder = -1;
    QByteArray name;
};

/// Moves a file, folder or link within one file system and never replaces anything. 0, or the error number: EEXIST
/// when something lies at @p to, EXDEV when that is another file system. After an error, and whenever the process
/// may be killed, the file is whole at @p from or at @p to; where the file system can only do it by a second name for
/// the same file, for a moment at both.
[[nodiscard]] int moveExclusively(const NameInFolder &from, const NameInFolder &to);

} // namespace tallowmere
