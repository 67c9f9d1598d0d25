// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "platform/FileExistence.h"

#include <sys/stat.h>

namespace tallowmere {

bool fileExists(const FileURL &file)
{
    struct stat found
    {};
    return ::lstat(file.path().constData(), &found) == 0;
}

} // namespace tallowmere
