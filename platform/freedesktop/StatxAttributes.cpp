// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "platform/freedesktop/StatxAttributes.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>

namespace tallowmere {

std::optional<FileAttributes> StatxAttributesReader::attributes(const FileURL &file) const
{
    const char *path = file.path().constData();
    struct statx extended = {};
    if (::statx(AT_FDCWD, path, 0, STATX_SIZE | STATX_BTIME, &extended) == 0) {
        FileAttributes attributes{static_cast<qint64>(extended.stx_size), {}};
        if (extended.stx_mask & STATX_BTIME)
            attributes.creationDate = FileTime(std::chrono::seconds(extended.stx_btime.tv_sec) +
                                               std::chrono::milliseconds(extended.stx_btime.tv_nsec / 1'000'000));
        return attributes;
    }
    // Sandboxes that are older than the call refuse it; the size can still be had.
    struct stat basic = {};
    if ((errno == EPERM || errno == ENOSYS) && ::stat(path, &basic) == 0)
        return FileAttributes{basic.st_size, {}};
    return std::nullopt;
}

} // namespace tallowmere
