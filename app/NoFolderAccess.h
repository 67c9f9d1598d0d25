// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "browsing/FolderAccess.h"

namespace tallowmere {

/// Asks nobody and grants nothing: a folder that can't be listed stays closed.
class NoFolderAccess final : public FolderAccess
{
public:
    void requestAccess(const FileURL &, std::function<void(bool granted)> done) override { done(false); }
};

} // namespace tallowmere
