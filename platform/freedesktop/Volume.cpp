// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "platform/freedesktop/Volume.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <algorithm>

namespace tallowmere {
namespace {

QByteArray parentOf(const QByteArray &path)
{
    return path.first(std::max<qsizetype>(path.lastIndexOf('/'), 1));
}

} // namespace

Volume Volume::of(const QByteArray &folder)
{
    struct statx found
    {};
    if (::statx(AT_FDCWD, folder.constData(), AT_NO_AUTOMOUNT, STATX_MNT_ID, &found) != 0)
        return {};
    return {makedev(found.stx_dev_major, found.stx_dev_minor), found.stx_mask & STATX_MNT_ID ? found.stx_mnt_id : 0};
}

Volume Volume::wherePathWouldBe(QByteArray path)
{
    Volume volume = of(path);
    while (volume == Volume() && path.size() > 1) {
        path = parentOf(path);
        volume = of(path);
    }
    return volume;
}

QByteArray topDirectoryOf(QByteArray folder)
{
    const Volume volume = Volume::of(folder);
    while (folder.size() > 1) {
        const QByteArray parent = parentOf(folder);
        if (Volume::of(parent) != volume)
            break;
        folder = parent;
    }
    return folder;
}

} // namespace tallowmere
