// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "platform/freedesktop/ReplacedFile.h"

#include "support/DurableWrite.h"
#include "support/FileDescriptor.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>

namespace tallowmere {

namespace {

/// With the slash; empty for a name alone.
QByteArray folderOf(const QByteArray &path)
{
    return path.first(path.lastIndexOf('/') + 1);
}

/// Write-protection binds us even where it does not bind root: whoever set it wants the file left alone.
bool mayReplace(const QByteArray &path, const struct stat &status)
{
    constexpr mode_t kAnyWrite = S_IWUSR | S_IWGRP | S_IWOTH;
    return S_ISREG(status.st_mode) && (status.st_mode & kAnyWrite) != 0 &&
           ::faccessat(AT_FDCWD, path.constData(), W_OK, AT_EACCESS) == 0;
}

bool keepOwnerAndMode(int descriptor, const struct stat &old)
{
    struct stat now = {};
    if (::fstat(descriptor, &now) != 0)
        return false;
    if ((now.st_uid != old.st_uid || now.st_gid != old.st_gid) && ::fchown(descriptor, old.st_uid, old.st_gid) != 0 &&
        errno != EPERM)
        return false;
    return ::fchmod(descriptor, old.st_mode & 07777) == 0;
}

/// A new, empty file in the folder of @p path, with the mode that the umask gives.
int makeBeside(const QByteArray &path, QByteArray &name)
{
    constexpr int kAttempts = 100; // an earlier process of our number may have died and left some
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        name = folderOf(path) + ".tallowmere-" + QByteArray::number(::getpid()) + '-' + QByteArray::number(attempt);
        const int descriptor = ::open(name.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (descriptor >= 0 || errno != EEXIST)
            return descriptor;
    }
    return -1;
}

} // namespace

std::optional<QByteArray> followedLinks(QByteArray path)
{
    constexpr int kMostLinks = 40; // as the kernel
    for (int links = 0; links <= kMostLinks; ++links) {
        QByteArray target(PATH_MAX, Qt::Uninitialized);
        const ssize_t size = ::readlink(path.constData(), target.data(), static_cast<std::size_t>(target.size()));
        if (size < 0)
            return errno == EINVAL || errno == ENOENT ? std::optional(path) : std::nullopt;
        target.truncate(size);
        path = target.startsWith('/') ? target : folderOf(path) + target;
    }
    return std::nullopt;
}

WholeFile readWholeFile(const QByteArray &path, qint64 limit)
{
    const FileDescriptor file(::open(path.constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    struct stat status = {};
    if (!file.isOpen())
        return {errno != ENOENT && errno != ENOTDIR, std::nullopt};
    if (::fstat(file.number(), &status) != 0 || !S_ISREG(status.st_mode) || status.st_size > limit)
        return {};
    QByteArray contents(status.st_size, Qt::Uninitialized);
    qsizetype filled = 0;
    while (filled < contents.size()) {
        const ssize_t got =
            ::read(file.number(), contents.data() + filled, static_cast<std::size_t>(contents.size() - filled));
        if (got < 0 && errno != EINTR)
            return {};
        if (got == 0)
            break; // it has shrunk meanwhile
        filled += std::max<ssize_t>(got, 0);
    }
    contents.truncate(filled);
    return {true, contents};
}

bool replaceWholeFile(const QByteArray &path, const QByteArray &contents)
{
    struct stat old = {};
    const bool exists = ::lstat(path.constData(), &old) == 0;
    if (exists ? !mayReplace(path, old) : errno != ENOENT)
        return false;
    QByteArray beside;
    const FileDescriptor file(makeBeside(path, beside));
    if (!file.isOpen())
        return false;
    const bool replaced = (!exists || keepOwnerAndMode(file.number(), old)) &&
                          writeDurably(file.number(), contents) == 0 &&
                          ::rename(beside.constData(), path.constData()) == 0;
    if (!replaced)
        ::unlink(beside.constData());
    return replaced;
}

} // namespace tallowmere
