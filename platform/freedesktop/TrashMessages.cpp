// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "platform/freedesktop/TrashMessages.h"

#include <QCoreApplication>

#include <cerrno>
#include <system_error>

namespace tallowmere::trashMessages {
namespace {

constexpr qsizetype kLongestShown = 60;

QString text(const char *sentence)
{
    return QCoreApplication::translate("Trash", sentence);
}

/// On one line, and short enough for a dialog of a usual width.
QString shown(const QByteArray &path)
{
    QString name = QString::fromUtf8(path);
    for (QChar &character : name) {
        if (!character.isPrint() && !character.isSurrogate())
            character = QLatin1Char(' ');
    }
    if (name.size() <= kLongestShown)
        return name;
    qsizetype head = kLongestShown / 2;
    qsizetype tail = name.size() - (kLongestShown - head - 1);
    if (name[head].isLowSurrogate())
        --head;
    if (name[tail].isLowSurrogate())
        ++tail;
    return name.first(head) + QChar(0x2026) + name.sliced(tail);
}

QString lastComponent(const QByteArray &path)
{
    return shown(path.size() > 1 ? path.sliced(path.lastIndexOf('/') + 1) : path);
}

/// In the user's language.
QString systemReason(int error)
{
    return QString::fromLocal8Bit(QByteArray::fromStdString(std::generic_category().message(error)));
}

} // namespace

QString cannotMove(const QByteArray &file, int error)
{
    switch (error) {
    case ENOENT:
        return text("“%1” no longer exists.").arg(lastComponent(file));
    case EACCES:
    case EPERM:
        return text("You don’t have permission to move “%1”.").arg(lastComponent(file));
    case EROFS:
        return text("“%1” is on a disk that can only be read.").arg(lastComponent(file));
    case EXDEV:
        return text("“%1” and the Trash of its disk are on different file systems.").arg(lastComponent(file));
    default:
        return text("“%1” can’t be moved: %2.").arg(lastComponent(file), systemReason(error));
    }
}

QString alreadyInTrash(const QByteArray &file)
{
    return text("“%1” is in the Trash already.").arg(lastComponent(file));
}

QString cannotUseTrash(const QByteArray &folder, int error)
{
    if (error == ENOSPC || error == EDQUOT)
        return text("There is no room left for the Trash in “%1”.").arg(shown(folder));
    return text("The Trash folder “%1” can’t be used: %2.").arg(shown(folder), systemReason(error));
}

QString trashIsALink(const QByteArray &folder)
{
    return text("The Trash folder “%1” is a symbolic link and can’t be trusted.").arg(shown(folder));
}

QString trashIsNoFolder(const QByteArray &folder)
{
    return text("The Trash can’t be used: “%1” is not a folder.").arg(shown(folder));
}

QString trashOfSomebodyElse(const QByteArray &folder)
{
    return text("The Trash folder “%1” belongs to another user.").arg(shown(folder));
}

QString cannotRestore(const QByteArray &file, const QByteArray &folder, int error)
{
    switch (error) {
    case EEXIST:
        return text("A file already exists at the original location.");
    case EACCES:
    case EPERM:
        return text("You don’t have permission to put “%1” back into “%2”.")
            .arg(lastComponent(file), lastComponent(folder));
    default:
        return text("“%1” can’t be put back into “%2”: %3.")
            .arg(lastComponent(file), lastComponent(folder), systemReason(error));
    }
}

QString folderIsGone(const QByteArray &folder)
{
    return text("The folder “%1” no longer exists.").arg(lastComponent(folder));
}

} // namespace tallowmere::trashMessages
