// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/doubles/OrdinaryUser.h"
#include "tests/platform/freedesktop/ChildProcess.h"
#include "tests/platform/freedesktop/TrashFolders.h"

#include <sys/syscall.h>

#include <cerrno>

namespace tallowmere::test {
namespace {

/// Where the Trash can't be used, the file stays and no note of it is left.
class TrashRefusal : public TrashTest
{
protected:
    /// @p arrange makes the move fail, in a child process; the user is told a text that holds @p reason.
    void expectRefusal(const std::function<void()> &arrange, const QByteArray &reason)
    {
        const FileURL file = add("a.jpg");
        inChild([&] {
            arrange();
            const Trash::Moved moved = trash.trashItem(file);
            require(!moved.succeeded, "the move succeeded");
            require(moved.error.toUtf8().contains(reason), moved.error.toStdString());
        });
        EXPECT_EQ(contents(file), QByteArray("picture"));
        EXPECT_EQ(notes(), QList<QByteArray>());
        EXPECT_EQ(binned(), QList<QByteArray>());
    }
    void makeTrash() const
    {
        (void)folder.makeFolder("data/Trash/files");
        (void)folder.makeFolder("data/Trash/info");
    }
    void allow(const QByteArray &name, mode_t mode) const { ::chmod(folder.at(name).path().constData(), mode); }
    void link(const QByteArray &name, const QByteArray &target) const
    {
        (void)folder.makeFolder(target);
        (void)folder.makeFolder(name);
        folder.remove(name);
        ASSERT_EQ(::symlink(folder.at(target).path().constData(), folder.at(name).path().constData()), 0);
    }
};

TEST_F(TrashRefusal, aTrashThatIsALink)
{
    link("data/Trash", "elsewhere");
    expectRefusal([] {}, "data/Trash” is a symbolic link");
    EXPECT_EQ(namesIn(folder.at("elsewhere").path()), QList<QByteArray>());
}

TEST_F(TrashRefusal, aFolderInTheTrashThatIsALink)
{
    link("data/Trash/files", "elsewhere");
    expectRefusal([] {}, "data/Trash/files” is a symbolic link");
}

TEST_F(TrashRefusal, aTrashThatIsAFile)
{
    (void)folder.makeFolder("data");
    folder.write("data/Trash");
    expectRefusal([] {}, "data/Trash” is not a folder");
}

TEST_F(TrashRefusal, aTrashOfSomebodyElse)
{
    makeTrash();
    // Asked who we are, the kernel gives no answer that any folder's owner equals.
    expectRefusal([] { refuseSystemCalls({{SYS_geteuid, EPERM}}); }, "data/Trash” belongs to another user");
}

TEST_F(TrashRefusal, aTrashWeMayNotWriteTo)
{
    makeTrash();
    allow("data/Trash/info", 0500);
    expectRefusal(becomeOrdinaryUser, "data/Trash” can’t be used: Permission denied");
    allow("data/Trash/info", 0700);
}

TEST_F(TrashRefusal, aTrashWhoseFilesWeMayNotWriteTo)
{
    makeTrash();
    allow("data/Trash/files", 0500);
    expectRefusal(becomeOrdinaryUser, "You don’t have permission to move “a.jpg”");
    allow("data/Trash/files", 0700);
}

TEST_F(TrashRefusal, aFolderWeMayNotTakeTheFileFrom)
{
    allow("pictures", 0755);
    const auto lock = [&] {
        allow("pictures", 0555);
        becomeOrdinaryUser();
    };
    expectRefusal(lock, "You don’t have permission to move “a.jpg”");
    allow("pictures", 0755);
}

TEST_F(TrashRefusal, aHomeInWhichNoTrashCanBeMade)
{
    (void)folder.makeFolder("data");
    allow("data", 0500);
    expectRefusal(becomeOrdinaryUser, "data/Trash” can’t be used: Permission denied");
    allow("data", 0700);
}

TEST_F(TrashRefusal, aFullDisk)
{
    makeTrash();
    expectRefusal([] { refuseSystemCalls({{SYS_fsync, ENOSPC}}); }, "There is no room left for the Trash");
}

TEST_F(TrashRefusal, aQuotaThatIsUsedUp)
{
    makeTrash();
    expectRefusal([] { refuseSystemCalls({{SYS_fsync, EDQUOT}}); }, "There is no room left for the Trash");
}

TEST_F(TrashRefusal, aDiskThatCanOnlyBeRead)
{
    expectRefusal([] { refuseSystemCalls({{SYS_mkdirat, EROFS}}); }, "can’t be used: Read-only file system");
}

TEST_F(TrashRefusal, aDiskThatFailsInTheMove)
{
    expectRefusal([] { refuseSystemCalls({{SYS_renameat2, EIO}}); }, "“a.jpg” can’t be moved: Input/output error");
}

TEST_F(TrashRefusal, aFileSystemWithoutAnyFsyncIsNoReason)
{
    const FileURL file = add("a.jpg");
    inChild([&] {
        refuseSystemCalls({{SYS_fsync, EINVAL}});
        require(trash.trashItem(file).succeeded, "the move failed");
    });
    EXPECT_EQ(binned(), QList<QByteArray>{"a.jpg"});
}

/// File systems that rename only with replacing, with and without hard links.
struct Poverty
{
    const char *name;
    bool links;
};

void PrintTo(const Poverty &each, std::ostream *stream)
{
    *stream << each.name;
}

class TrashOnAPoorFileSystem : public TrashRefusal, public testing::WithParamInterface<Poverty>
{
protected:
    static void bePoor()
    {
        refuseSystemCalls({{SYS_renameat2, EINVAL}});
        if (!GetParam().links)
            refuseSystemCalls({{SYS_linkat, EPERM}});
    }
};

TEST_P(TrashOnAPoorFileSystem, movesAndTakesBack)
{
    const FileURL file = add("a.jpg");
    inChild([&] {
        bePoor();
        require(trash.trashItem(file).succeeded, "the move failed");
    });
    EXPECT_EQ(pictures(), QList<QByteArray>());
    EXPECT_EQ(binned(), QList<QByteArray>{"a.jpg"});
    EXPECT_EQ(folder.read("data/Trash/files/a.jpg"), QByteArray("picture"));
    inChild([&] {
        bePoor();
        require(!trash.restoreItem(folder.at("data/Trash/files/a.jpg"), file), "the restore failed");
    });
    EXPECT_EQ(contents(file), QByteArray("picture"));
    EXPECT_EQ(binned(), QList<QByteArray>());
    EXPECT_EQ(notes(), QList<QByteArray>());
}

TEST_P(TrashOnAPoorFileSystem, neverReplacesAFile)
{
    makeTrash();
    const FileURL file = add("a.jpg", "ours");
    folder.write("data/Trash/files/a.jpg", "stray");
    inChild([&] {
        bePoor();
        const Trash::Moved moved = trash.trashItem(file);
        require(moved.resultingURL.lastPathComponent() == "a.2.jpg", moved.error.toStdString());
    });
    EXPECT_EQ(folder.read("data/Trash/files/a.jpg"), QByteArray("stray"));
    EXPECT_EQ(folder.read("data/Trash/files/a.2.jpg"), QByteArray("ours"));
    (void)add("a.jpg", "new");
    inChild([&] {
        bePoor();
        require(trash.restoreItem(folder.at("data/Trash/files/a.2.jpg"), file).has_value(), "the restore succeeded");
    });
    EXPECT_EQ(contents(file), QByteArray("new"));
    EXPECT_EQ(folder.read("data/Trash/files/a.2.jpg"), QByteArray("ours"));
}

TEST_P(TrashOnAPoorFileSystem, movesFoldersToo)
{
    folder.makeFolder("pictures/a.jpg");
    (void)add("a.jpg/inner.jpg");
    inChild([&] {
        bePoor();
        require(trash.trashItem(folder.at("pictures/a.jpg")).succeeded, "the move failed");
    });
    EXPECT_EQ(folder.read("data/Trash/files/a.jpg/inner.jpg"), QByteArray("picture"));
}

TEST_P(TrashOnAPoorFileSystem, leavesNothingInTheTrashOfAFileThatMayNotGo)
{
    const auto lock = [&] {
        allow("pictures", 0555);
        becomeOrdinaryUser();
        bePoor();
    };
    expectRefusal(lock, "You don’t have permission to move “a.jpg”");
    allow("pictures", 0755);
}

INSTANTIATE_TEST_SUITE_P(All, TrashOnAPoorFileSystem,
                         testing::Values(Poverty{"withHardLinks", true}, Poverty{"withoutHardLinks", false}),
                         [](const auto &each) { return each.param.name; });

} // namespace
} // namespace tallowmere::test
