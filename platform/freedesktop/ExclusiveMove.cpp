// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "platform/freedesktop/ExclusiveMove.h"

#include "support/FileDescriptor.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <optional>

namespace tallowmere {
namespace {

std::optional<struct stat> lookAt(const NameInFolder &place)
{
    struct stat found
    {};
    if (::fstatat(place.folder, place.name.constData(), &found, AT_SYMLINK_NOFOLLOW) != 0)
        return std::nullopt;
    return found;
}

bool isSameFile(const struct stat &a, const struct stat &b)
{
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

/// Some network and FUSE file systems take no flags.
bool refusesExclusiveRename(int error)
{
    return error == EINVAL || error == ENOSYS || error == EOPNOTSUPP;
}

/// FAT has no hard links, no file system has them for folders, and the kernel may protect other people's files.
bool refusesLinks(int error)
{
    return error == EPERM || error == EOPNOTSUPP || error == ENOSYS || error == EMLINK || error == EINVAL;
}

int renameExclusively(const NameInFolder &from, const NameInFolder &to)
{
    return ::renameat2(from.folder, from.name.constData(), to.folder, to.name.constData(), RENAME_NOREPLACE) == 0
               ? 0
               : errno;
}

int linkAndUnlink(const NameInFolder &from, const NameInFolder &to)
{
    const auto before = lookAt(from);
    if (::linkat(from.folder, from.name.constData(), to.folder, to.name.constData(), 0) != 0)
        return errno;
    const auto left = lookAt(from);
    // Somebody has put another file there meanwhile, or taken a name away: then both stay. The new name is not compared
    // with the old one, since sshfs numbers the names of one file differently.
    if (!before || !left || !lookAt(to) || !isSameFile(*before, *left))
        return 0;
    if (::unlinkat(from.folder, from.name.constData(), 0) == 0 || errno == ENOENT)
        return 0;
    const int error = errno;
    ::unlinkat(to.folder, to.name.constData(), 0);
    return error;
}

/// Something empty of our own, made where nothing was, so that a rename replaces nobody's file.
class Placeholder final
{
public:
    Placeholder(const NameInFolder &place, bool folder) : m_place(place), m_isFolder(folder)
    {
        const char *name = place.name.constData();
        if (folder) {
            m_made = ::mkdirat(place.folder, name, S_IRWXU) == 0;
        } else {
            m_file = FileDescriptor(
                ::openat(place.folder, name, O_CREAT | O_EXCL | O_WRONLY | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR));
            m_made = m_file.isOpen();
        }
        m_error = m_made ? 0 : errno;
    }
    [[nodiscard]] int error() const { return m_error; }
    /// An empty folder can only be removed while it is empty; a file is looked at first.
    void remove() const
    {
        if (m_isFolder) {
            ::unlinkat(m_place.folder, m_place.name.constData(), AT_REMOVEDIR);
            return;
        }
        struct stat made
        {};
        const auto found = lookAt(m_place);
        if (::fstat(m_file.number(), &made) == 0 && made.st_size == 0 && found && isSameFile(made, *found))
            ::unlinkat(m_place.folder, m_place.name.constData(), 0);
    }

private:
    const NameInFolder &m_place;
    const bool m_isFolder;
    FileDescriptor m_file;
    bool m_made = false;
    int m_error = 0;
};

int renameOntoPlaceholder(const NameInFolder &from, const NameInFolder &to)
{
    const auto source = lookAt(from);
    if (!source)
        return errno;
    const Placeholder placeholder(to, S_ISDIR(source->st_mode));
    if (placeholder.error() != 0)
        return placeholder.error();
    if (::renameat(from.folder, from.name.constData(), to.folder, to.name.constData()) == 0)
        return 0;
    const int error = errno;
    placeholder.remove();
    return error;
}

} // namespace

int moveExclusively(const NameInFolder &from, const NameInFolder &to)
{
    int error = renameExclusively(from, to);
    if (refusesExclusiveRename(error)) {
        error = linkAndUnlink(from, to);
        if (refusesLinks(error))
            error = renameOntoPlaceholder(from, to);
    }
    return error;
}

} // namespace tallowmere
