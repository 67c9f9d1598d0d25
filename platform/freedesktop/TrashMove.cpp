// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "platform/freedesktop/TrashMove.h"

#include "platform/freedesktop/TrashDirectory.h"
#include "platform/freedesktop/TrashInfo.h"
#include "platform/freedesktop/TrashMessages.h"
#include "support/DurableWrite.h"
#include "support/FileDescriptor.h"

#include <QRandomGenerator>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>

#include <algorithm>
#include <cerrno>

namespace tallowmere {
namespace {

/// After so many names counted up, a folder holds too many of its kind to find the end by counting.
constexpr quint64 kCountedNames = 64;
constexpr qsizetype kUsualLongestName = 255;
/// No file system is known that takes only shorter ones.
constexpr qsizetype kShortestLimit = 32;

qsizetype longestNameIn(int folder)
{
    struct statvfs system
    {};
    // FAT counts 6 bytes for each character that it could hold.
    if (::fstatvfs(folder, &system) != 0 || system.f_namemax == 0)
        return kUsualLongestName;
    return std::min(static_cast<qsizetype>(system.f_namemax), kUsualLongestName);
}

/// The .trashinfo of one name, which thereby is ours.
class InfoFile final
{
public:
    InfoFile(int folder, const QByteArray &trashedName, const QByteArray &text)
        : m_folder(folder), m_name(trashInfoName(trashedName))
    {
        constexpr int kNewFile = O_CREAT | O_EXCL | O_WRONLY | O_NOFOLLOW | O_CLOEXEC;
        const FileDescriptor file(::openat(folder, m_name.constData(), kNewFile, S_IRUSR | S_IWUSR));
        // A note lost in a power cut would leave a file that nobody knows the home of.
        m_error = file.isOpen() ? writeDurably(file.number(), text) : errno;
        if (file.isOpen() && m_error != 0)
            remove();
    }
    [[nodiscard]] int error() const { return m_error; }
    void remove() const { ::unlinkat(m_folder, m_name.constData(), 0); }

private:
    const int m_folder;
    const QByteArray m_name;
    int m_error = 0;
};

/// Names to try, one after the other, without an end.
class FreeNames final
{
public:
    FreeNames(const QByteArray &name, qsizetype longest) : m_name(name), m_longest(longest - trashInfoName({}).size())
    {}
    [[nodiscard]] QByteArray current() const { return nameInTrash(m_name, m_number, m_longest); }
    void taken() { m_number = m_number < kCountedNames ? m_number + 1 : QRandomGenerator::system()->generate64(); }
    /// False when shorter makes no sense.
    bool tooLong()
    {
        m_longest = std::min(m_longest, current().size()) / 2;
        return m_longest >= kShortestLimit;
    }

private:
    const QByteArray m_name;
    qsizetype m_longest;
    quint64 m_number = 1;
};

} // namespace

TrashMoveResult moveIntoTrash(const TrashDirectory &trash, const NameInFolder &file, const QByteArray &infoText)
{
    FreeNames names(file.name, longestNameIn(trash.files.number()));
    for (;;) {
        const QByteArray name = names.current();
        const InfoFile info(trash.info.number(), name, infoText);
        int error = info.error();
        const bool noteFailed = error != 0;
        if (!noteFailed) {
            error = moveExclusively(file, {trash.files.number(), name});
            if (error == 0)
                return name;
            info.remove();
        }
        if (error == EEXIST)
            names.taken();
        else if (error != ENAMETOOLONG || !names.tooLong())
            return TrashMoveFailure{error == EXDEV, noteFailed ? trashMessages::cannotUseTrash(trash.path, error)
                                                               : trashMessages::cannotMove(file.name, error)};
    }
}

} // namespace tallowmere
