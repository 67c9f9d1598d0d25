// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "platform/freedesktop/Volume.h"
#include "tests/doubles/OrdinaryUser.h"
#include "tests/platform/freedesktop/ChildProcess.h"
#include "tests/platform/freedesktop/TrashFolders.h"

#include <sys/mount.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <fstream>

namespace tallowmere::test {
namespace {

/// Each test mounts volumes of its own, in a child process; nobody else sees them.
class TrashVolumes : public TrashTest
{
protected:
    TrashVolumes() : m_user(QByteArray::number(static_cast<qulonglong>(::geteuid())))
    {
        (void)folder.makeFolder("data");
        (void)folder.makeFolder("volume");
    }
    void mountVolume(const char *options = "size=1m,mode=755") const
    {
        enterPrivateMounts();
        if (::mount("tmpfs", folder.at("volume").path().constData(), "tmpfs", 0, options) != 0)
            throw ChildRefused(std::string("no volume can be mounted here: ") + std::strerror(errno));
        (void)folder.makeFolder("volume/Photos");
    }
    [[nodiscard]] FileURL addOnVolume() const { return folder.write("volume/Photos/a b.jpg", "picture"); }
    [[nodiscard]] QByteArray ownTrash() const { return "volume/.Trash-" + m_user; }

    void requireMovedTo(const QByteArray &trashName)
    {
        const FileURL file = addOnVolume();
        const Trash::Moved moved = trash.trashItem(file);
        require(moved.succeeded, moved.error.toStdString());
        require(moved.resultingURL == folder.at(trashName + "/files/a b.jpg"), moved.resultingURL.path().toStdString());
        require(folder.read(trashName + "/files/a b.jpg") == "picture", "the file is not in the Trash");
        const QByteArray noted = folder.read(trashName + "/info/a b.jpg.trashinfo");
        require(noted.startsWith("[Trash Info]\nPath=Photos/a%20b.jpg\nDeletionDate="), noted.toStdString());
        require((modeOf(folder.at(trashName).path()) & 07777U) == 0700, "the Trash is not for the user alone");
        require(namesIn(folder.at("data").path()).isEmpty(), "the home trash was used");
        require(!trash.restoreItem(moved.resultingURL, file), "it does not come back");
        require(contents(file) == "picture", "it did not come back whole");
        require(namesIn(folder.at(trashName + "/info").path()).isEmpty(), "its note was left");
    }
    void requireRefused(const QByteArray &reason)
    {
        const FileURL file = folder.at("volume/Photos/a b.jpg");
        const Trash::Moved moved = trash.trashItem(file);
        require(!moved.succeeded, "the move succeeded");
        require(moved.error.toUtf8().contains(reason), moved.error.toStdString());
        require(contents(file) == "picture", "the file was touched");
        require(namesIn(folder.at(ownTrash() + "/info").path()).isEmpty(), "a note was left");
    }

    const QByteArray m_user;
};

TEST_F(TrashVolumes, aVolumeHasATrashOfItsOwnForEachUser)
{
    inChild([&] {
        mountVolume();
        requireMovedTo(ownTrash());
    });
}

TEST_F(TrashVolumes, theAdministratorsTrashIsUsedWhenItIsSticky)
{
    inChild([&] {
        mountVolume();
        (void)folder.makeFolder("volume/.Trash");
        ::chmod(folder.at("volume/.Trash").path().constData(), 01777);
        requireMovedTo("volume/.Trash/" + m_user);
    });
}

TEST_F(TrashVolumes, theAdministratorsTrashIsPassedOverWhenItIsNotSticky)
{
    inChild([&] {
        mountVolume();
        (void)folder.makeFolder("volume/.Trash");
        ::chmod(folder.at("volume/.Trash").path().constData(), 0777);
        requireMovedTo(ownTrash());
        require(namesIn(folder.at("volume/.Trash").path()).isEmpty(), ".Trash was used");
    });
}

TEST_F(TrashVolumes, theAdministratorsTrashIsPassedOverWhenItIsALink)
{
    inChild([&] {
        mountVolume();
        (void)folder.makeFolder("volume/elsewhere");
        ::chmod(folder.at("volume/elsewhere").path().constData(), 01777);
        require(::symlink("elsewhere", folder.at("volume/.Trash").path().constData()) == 0, "no link");
        requireMovedTo(ownTrash());
        require(namesIn(folder.at("volume/elsewhere").path()).isEmpty(), "the link was followed");
    });
}

TEST_F(TrashVolumes, aVolumesTrashThatIsALinkIsNotUsed)
{
    inChild([&] {
        mountVolume();
        (void)addOnVolume();
        (void)folder.makeFolder("volume/elsewhere");
        require(::symlink("elsewhere", folder.at(ownTrash()).path().constData()) == 0, "no link");
        requireRefused("is a symbolic link");
        require(namesIn(folder.at("volume/elsewhere").path()).isEmpty(), "the link was followed");
    });
}

TEST_F(TrashVolumes, aVolumeThatCanOnlyBeReadKeepsTheFile)
{
    inChild([&] {
        mountVolume();
        (void)addOnVolume();
        const QByteArray volume = folder.at("volume").path();
        require(::mount(nullptr, volume.constData(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr) == 0, "no remount");
        requireRefused("Read-only file system");
    });
}

TEST_F(TrashVolumes, aFullVolumeKeepsTheFileAndNoNote)
{
    inChild([&] {
        mountVolume();
        (void)addOnVolume();
        std::ofstream filler(folder.at("volume/filler").path().toStdString());
        const std::string block(4096, 'x');
        while (filler << block << std::flush) {
        }
        requireRefused("There is no room left for the Trash");
    });
}

TEST_F(TrashVolumes, aVolumeWhoseTopMayNotBeWrittenToKeepsTheFile)
{
    inChild([&] {
        mountVolume();
        (void)addOnVolume();
        ::chmod(folder.at("volume").path().constData(), 0555);
        becomeOrdinaryUser();
        requireRefused("Permission denied");
    });
}

TEST_F(TrashVolumes, aFileReachedOverALinkIsNotedByItsRealPlace)
{
    inChild([&] {
        mountVolume();
        (void)addOnVolume();
        require(::symlink("volume/Photos", folder.at("short-cut").path().constData()) == 0, "no link");
        const Trash::Moved moved = trash.trashItem(folder.at("short-cut").appending("a b.jpg"));
        require(moved.succeeded, moved.error.toStdString());
        const QByteArray noted = folder.read(ownTrash() + "/info/a b.jpg.trashinfo");
        require(noted.contains("\nPath=Photos/a%20b.jpg\n"), noted.toStdString());
    });
    ::unlink(folder.at("short-cut").path().constData());
}

TEST_F(TrashVolumes, aBindMountHasATrashOfItsOwnAlthoughItIsOnTheSameDevice)
{
    inChild([&] {
        enterPrivateMounts();
        const FileURL file = add("a.jpg");
        const QByteArray bound = folder.at("volume").path();
        if (::mount(folder.at("pictures").path().constData(), bound.constData(), nullptr, MS_BIND, nullptr) != 0)
            throw ChildRefused(std::string("nothing can be bound here: ") + std::strerror(errno));
        const Trash::Moved moved = trash.trashItem(folder.at("volume/a.jpg"));
        require(moved.succeeded, moved.error.toStdString());
        require(moved.resultingURL == folder.at(ownTrash() + "/files/a.jpg"), moved.resultingURL.path().toStdString());
        require(notes().isEmpty(), "a note was left in the home trash");
        require(folder.read(ownTrash() + "/info/a.jpg.trashinfo").contains("\nPath=a.jpg\n"), "the note is wrong");
    });
}

TEST_F(TrashVolumes, theTopDirectoryIsWhereTheVolumeIsMounted)
{
    inChild([&] {
        mountVolume();
        (void)folder.makeFolder("volume/Photos/2026");
        const QByteArray volume = folder.at("volume").path();
        require(topDirectoryOf(volume + "/Photos/2026") == volume, "another one was found");
        require(topDirectoryOf(volume) == volume, "the top is not its own");
    });
    EXPECT_EQ(topDirectoryOf("/"), QByteArray("/"));
}

} // namespace
} // namespace tallowmere::test
