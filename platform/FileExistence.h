// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "support/FileURL.h"

namespace tallowmere {

/// Whether anything bears this name: a file, a folder, or a link, wherever that leads. Any thread; may block on the
/// disk.
[[nodiscard]] bool fileExists(const FileURL &file);

} // namespace tallowmere
