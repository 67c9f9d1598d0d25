// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "platform/freedesktop/TrashDirectory.h"

#include "platform/freedesktop/TrashMessages.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <optional>

namespace tallowmere {
namespace {

/// No right to read is needed: names are only made and moved in it.
constexpr int kAsPlace = O_PATH | O_DIRECTORY | O_CLOEXEC;

struct OwnFolder
{
    FileDescriptor descriptor;
    QString refusal; ///< empty when it is open
};

QString whyNotOpened(int parent, const char *name, const QByteArray &path, int error)
{
    struct stat found
    {};
    if (error == ENOTDIR && ::fstatat(parent, name, &found, AT_SYMLINK_NOFOLLOW) == 0)
        return S_ISLNK(found.st_mode) ? trashMessages::trashIsALink(path) : trashMessages::trashIsNoFolder(path);
    return trashMessages::cannotUseTrash(path, error);
}

/// Makes the folder when it is missing. @p path: for the messages.
OwnFolder openOwnFolder(int parent, const QByteArray &name, const QByteArray &path)
{
    OwnFolder own;
    const int madeError = ::mkdirat(parent, name.constData(), S_IRWXU) == 0 ? 0 : errno;
    own.descriptor = FileDescriptor(::openat(parent, name.constData(), kAsPlace | O_NOFOLLOW));
    if (!own.descriptor.isOpen()) {
        // Why it could not be made says more than that it is missing.
        const int error = errno == ENOENT && madeError != 0 ? madeError : errno;
        own.refusal = whyNotOpened(parent, name.constData(), path, error);
        return own;
    }
    struct stat found
    {};
    if (::fstat(own.descriptor.number(), &found) != 0)
        own.refusal = trashMessages::cannotUseTrash(path, errno);
    else if (found.st_uid != ::geteuid())
        own.refusal = trashMessages::trashOfSomebodyElse(path);
    return own;
}

OpenedTrash openTrash(int parent, const QByteArray &name, const QByteArray &path)
{
    OwnFolder trash = openOwnFolder(parent, name, path);
    if (!trash.refusal.isEmpty())
        return trash.refusal;
    OwnFolder files = openOwnFolder(trash.descriptor.number(), "files", path + "/files");
    if (!files.refusal.isEmpty())
        return files.refusal;
    OwnFolder info = openOwnFolder(trash.descriptor.number(), "info", path + "/info");
    if (!info.refusal.isEmpty())
        return info.refusal;
    return TrashDirectory{path, std::move(files.descriptor), std::move(info.descriptor)};
}

void makeFolders(const QByteArray &path)
{
    for (qsizetype slash = path.indexOf('/', 1);; slash = path.indexOf('/', slash + 1)) {
        const QByteArray folder = slash < 0 ? path : path.first(slash);
        ::mkdir(folder.constData(), S_IRWXU); // a failure shows when the last one is opened
        if (slash < 0)
            return;
    }
}

FileDescriptor openPlace(const QByteArray &path)
{
    return FileDescriptor(::open(path.constData(), kAsPlace));
}

QByteArray inside(const QByteArray &folder, const QByteArray &name)
{
    return (folder == "/" ? QByteArray() : folder) + '/' + name;
}

/// Nothing when there is no .Trash that may be trusted, or it can't be used.
std::optional<TrashDirectory> openInSharedTrash(int topDirectory, const QByteArray &path, const QByteArray &user)
{
    const FileDescriptor shared(::openat(topDirectory, ".Trash", kAsPlace | O_NOFOLLOW));
    struct stat found
    {};
    if (!shared.isOpen() || ::fstat(shared.number(), &found) != 0 || !(found.st_mode & S_ISVTX))
        return std::nullopt;
    OpenedTrash opened = openTrash(shared.number(), user, inside(path, ".Trash/" + user));
    if (auto *trash = std::get_if<TrashDirectory>(&opened))
        return std::move(*trash);
    return std::nullopt;
}

} // namespace

OpenedTrash openHomeTrash(const QByteArray &dataHome)
{
    const QByteArray path = inside(dataHome, "Trash");
    FileDescriptor parent = openPlace(dataHome);
    if (!parent.isOpen()) {
        makeFolders(dataHome);
        parent = openPlace(dataHome);
    }
    if (!parent.isOpen())
        return trashMessages::cannotUseTrash(path, errno);
    return openTrash(parent.number(), "Trash", path);
}

OpenedTrash openVolumeTrash(const QByteArray &topDirectory)
{
    const QByteArray user = QByteArray::number(static_cast<qulonglong>(::geteuid()));
    const QByteArray path = inside(topDirectory, ".Trash-" + user);
    const FileDescriptor top = openPlace(topDirectory);
    if (!top.isOpen())
        return trashMessages::cannotUseTrash(path, errno);
    if (auto shared = openInSharedTrash(top.number(), topDirectory, user))
        return std::move(*shared);
    return openTrash(top.number(), ".Trash-" + user, path);
}

} // namespace tallowmere
