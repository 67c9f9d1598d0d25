// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "support/FileURL.h"

#include <functional>

namespace tallowmere {

/// Asks the user to let the program into a folder that it could not list. Main thread.
class FolderAccess
{
public:
    virtual ~FolderAccess() = default;
    /// @p done runs once, on the main thread, perhaps before this returns.
    virtual void requestAccess(const FileURL &folder, std::function<void(bool granted)> done) = 0;
};

} // namespace tallowmere
