// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "support/FileURL.h"

#include <functional>

namespace tallowmere {

/// Asks for leave to list a folder that could not be listed. Main thread.
class FolderAccess
{
public:
    virtual ~FolderAccess() = default;
    /// @p done runs once, later and on the main thread, never before this returns. True: the folder is worth another
    /// try.
    virtual void requestAccess(const FileURL &folder, std::function<void(bool granted)> done) = 0;
};

} // namespace tallowmere
