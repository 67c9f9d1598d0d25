// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "support/FileURL.h"

namespace tallowmere {

/// The one move to the Trash that can still be taken back.
struct UndoState
{
    FileURL originalFileURL;
    FileURL trashFileURL;
    FileURL directoryURL;
    qint64 originalIndex = 0; ///< in the file list, at the time of the move

    friend bool operator==(const UndoState &, const UndoState &) = default;
};

} // namespace tallowmere
