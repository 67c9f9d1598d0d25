// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "platform/freedesktop/FreedesktopTrash.h"

#include "platform/freedesktop/ExclusiveMove.h"
#include "platform/freedesktop/TrashDirectory.h"
#include "platform/freedesktop/TrashInfo.h"
#include "platform/freedesktop/TrashMessages.h"
#include "platform/freedesktop/TrashMove.h"
#include "platform/freedesktop/Volume.h"
#include "support/BaseDirectories.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <utility>

namespace tallowmere {
namespace {

Trash::Moved failed(QString reason)
{
    return {false, {}, std::move(reason)};
}

FileDescriptor openFolder(const QByteArray &path)
{
    return FileDescriptor(::open(path.constData(), O_PATH | O_DIRECTORY | O_CLOEXEC));
}

bool isSameFolder(int a, int b)
{
    struct stat first
    {};
    struct stat second
    {};
    return ::fstat(a, &first) == 0 && ::fstat(b, &second) == 0 && first.st_dev == second.st_dev &&
           first.st_ino == second.st_ino;
}

/// Empty, with errno set, when a folder on the way is missing.
QByteArray withoutLinks(const QByteArray &path)
{
    const std::unique_ptr<char, decltype(&std::free)> resolved(::realpath(path.constData(), nullptr), &std::free);
    return QByteArray(resolved.get());
}

struct Attempt
{
    Trash::Moved moved;
    bool otherFileSystem = false;
};

/// @p path: as the .trashinfo is to name the file.
Attempt moveTo(const OpenedTrash &opened, const NameInFolder &file, const QByteArray &path)
{
    if (const auto *refusal = std::get_if<QString>(&opened))
        return {failed(*refusal)};
    const auto &trash = std::get<TrashDirectory>(opened);
    if (isSameFolder(file.folder, trash.files.number()))
        return {failed(trashMessages::alreadyInTrash(file.name))};
    const TrashMoveResult result = moveIntoTrash(trash, file, trashInfoText(path, QDateTime::currentDateTime()));
    if (const auto *failure = std::get_if<TrashMoveFailure>(&result))
        return {failed(failure->reason), failure->otherFileSystem};
    const FileURL place = FileURL::fromPath(trash.path).appending("files").appending(std::get<QByteArray>(result));
    return {{true, place, {}}};
}

QByteArray relativeTo(const QByteArray &topDirectory, const QByteArray &path)
{
    return path.sliced(topDirectory == "/" ? 1 : topDirectory.size() + 1);
}

bool isThere(const NameInFolder &place)
{
    struct stat found
    {};
    return ::fstatat(place.folder, place.name.constData(), &found, AT_SYMLINK_NOFOLLOW) == 0;
}

} // namespace

FreedesktopTrash::FreedesktopTrash() : FreedesktopTrash(BaseDirectories::fromEnvironment().data) {}

FreedesktopTrash::FreedesktopTrash(const QByteArray &dataHome) : m_dataHome(FileURL::fromPath(dataHome).path()) {}

Trash::Moved FreedesktopTrash::trashItem(const FileURL &file)
{
    const std::shared_lock working(m_working);
    return moveToTrash(file);
}

std::optional<QString> FreedesktopTrash::restoreItem(const FileURL &trashed, const FileURL &original)
{
    const std::shared_lock working(m_working);
    return takeBack(trashed, original);
}

void FreedesktopTrash::finish(std::chrono::milliseconds patience)
{
    (void)m_working.try_lock_for(patience); // kept for good
}

Trash::Moved FreedesktopTrash::moveToTrash(const FileURL &file) const
{
    const FileURL folderURL = file.deletingLastPathComponent();
    const FileDescriptor folder = openFolder(folderURL.path());
    const QByteArray realFolder = folder.isOpen() ? withoutLinks(folderURL.path()) : QByteArray();
    if (realFolder.isEmpty())
        return failed(trashMessages::cannotMove(file.path(), errno));
    const NameInFolder item{folder.number(), file.lastPathComponent()};
    if (!isThere(item)) // before anything is made for it
        return failed(trashMessages::cannotMove(file.path(), errno));

    // Some mounts of one device don't admit it: then the rename tells, and the volume's own Trash is next.
    if (!m_dataHome.isEmpty() && Volume::of(realFolder).device == Volume::wherePathWouldBe(m_dataHome).device) {
        Attempt home = moveTo(openHomeTrash(m_dataHome), item, file.path());
        if (!home.otherFileSystem)
            return std::move(home.moved);
    }
    const QByteArray top = topDirectoryOf(realFolder);
    const QByteArray path = relativeTo(top, FileURL::fromPath(realFolder).appending(item.name).path());
    return moveTo(openVolumeTrash(top), item, path).moved;
}

std::optional<QString> FreedesktopTrash::takeBack(const FileURL &trashed, const FileURL &original)
{
    const FileURL files = trashed.deletingLastPathComponent();
    const FileURL folder = original.deletingLastPathComponent();
    const FileDescriptor from = openFolder(files.path());
    if (!from.isOpen())
        return trashMessages::cannotMove(original.path(), errno);
    const FileDescriptor to = openFolder(folder.path());
    if (!to.isOpen() && errno == ENOENT)
        return trashMessages::folderIsGone(folder.path());
    if (!to.isOpen())
        return trashMessages::cannotRestore(original.path(), folder.path(), errno);

    const NameInFolder item{from.number(), trashed.lastPathComponent()};
    const int error = moveExclusively(item, {to.number(), original.lastPathComponent()});
    if (error == ENOENT)
        return isThere(item) ? trashMessages::folderIsGone(folder.path())
                             : trashMessages::cannotMove(original.path(), error);
    if (error != 0)
        return trashMessages::cannotRestore(original.path(), folder.path(), error);
    const FileURL info = files.deletingLastPathComponent().appending("info").appending(trashInfoName(item.name));
    ::unlink(info.path().constData());
    return std::nullopt;
}

} // namespace tallowmere
