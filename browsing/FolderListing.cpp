// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "browsing/FolderListing.h"

#include <dirent.h>

#include <cerrno>
#include <memory>

namespace tallowmere {

std::optional<std::vector<QByteArray>> visibleNamesIn(const QByteArray &path)
{
    const auto close = [](DIR *folder) { ::closedir(folder); };
    const std::unique_ptr<DIR, decltype(close)> folder(::opendir(path.constData()), close);
    if (!folder)
        return std::nullopt;
    std::vector<QByteArray> names;
    while (true) {
        errno = 0;
        const dirent *entry = ::readdir(folder.get());
        if (!entry)
            break;
        if (entry->d_name[0] != '.')
            names.emplace_back(entry->d_name);
    }
    if (errno != 0)
        return std::nullopt;
    return names;
}

} // namespace tallowmere
