// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "support/FileURL.h"

namespace tallowmere {

/// Shows a file, selected, in the desktop's file manager. Main thread; returns at once, reports nothing.
class FileRevealer
{
public:
    virtual ~FileRevealer() = default;
    virtual void reveal(const FileURL &file) = 0;
};

} // namespace tallowmere
