// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/platform/freedesktop/ChildProcess.h"
#include "tests/platform/freedesktop/TrashFolders.h"

#include <sys/syscall.h>

#include <cerrno>

namespace tallowmere::test {
namespace {

/// How a file system moves a file: what it refuses leads to the next best.
enum class Way
{
    exclusiveRename,
    hardLink,
    placeholder,
};

std::string nameOf(Way way)
{
    switch (way) {
    case Way::exclusiveRename:
        return "byExclusiveRename";
    case Way::hardLink:
        return "byHardLink";
    default:
        return "byPlaceholder";
    }
}

void PrintTo(Way way, std::ostream *stream)
{
    *stream << nameOf(way);
}

/// The process is killed before each of the system calls in turn; the file has to be whole somewhere each time.
class TrashCrash : public testing::TestWithParam<Way>
{
protected:
    static constexpr int kMoreThanEver = 2000;

    static void limit()
    {
        if (GetParam() != Way::exclusiveRename)
            refuseSystemCalls({{SYS_renameat2, EINVAL}});
        if (GetParam() == Way::placeholder)
            refuseSystemCalls({{SYS_linkat, EPERM}});
    }

    /// True once it ran to its end, which it does when fewer than @p stop system calls are made.
    [[nodiscard]] static bool survives(int stop, bool restore)
    {
        const TrashFolders folders;
        const FileURL file = folders.add("a.jpg", kPicture);
        const FileURL trashed = folders.folder.at("data/Trash/files/a.jpg");
        FreedesktopTrash trash(folders.folder.at("data").path());
        if (restore) {
            EXPECT_TRUE(trash.trashItem(file).succeeded);
        }
        const std::optional<bool> killed = killedAtSystemCall(stop, [&] {
            limit();
            if (restore)
                (void)trash.restoreItem(trashed, file);
            else
                (void)trash.trashItem(file);
        });
        if (!killed) {
            m_refused = true;
            return true;
        }
        expectWhole(folders, file, trashed, stop);
        if (!*killed) {
            EXPECT_EQ(folders.contents(restore ? file : trashed), kPicture) << "it ran to its end in vain";
            EXPECT_EQ(folders.contents(restore ? trashed : file), QByteArray());
        }
        return !*killed;
    }

    static void expectWhole(const TrashFolders &folders, const FileURL &file, const FileURL &trashed, int stop)
    {
        const bool here = folders.contents(file) == kPicture;
        const bool there = folders.contents(trashed) == kPicture;
        EXPECT_TRUE(here || there) << "lost at system call " << stop;
        if (GetParam() != Way::hardLink) {
            EXPECT_FALSE(here && there) << "at both places at system call " << stop;
        }
        // A file in the Trash that isn't at home, too, can be brought back by anybody.
        const QByteArray note = folders.note("a.jpg");
        const QByteArray beginning = "[Trash Info]\nPath=" + file.path() + "\nDeletionDate=";
        const bool noted = note.startsWith(beginning) && note.endsWith('\n');
        EXPECT_TRUE(here || noted) << "without a note at system call " << stop;
    }

    void killEverywhere(bool restore)
    {
        int stop = 1;
        while (!survives(stop, restore) && !HasFailure() && stop < kMoreThanEver)
            ++stop;
        if (m_refused)
            GTEST_SKIP() << "processes can't be traced here";
        EXPECT_GT(stop, 5) << "nothing was interrupted";
        EXPECT_LT(stop, kMoreThanEver);
        RecordProperty("systemCalls", stop - 1);
    }

    static inline const QByteArray kPicture = QByteArray(100'000, 'p');
    static inline bool m_refused = false;
};

TEST_P(TrashCrash, aMoveThatIsKilledLeavesTheFileWholeInOnePlaceOrTheOther)
{
    killEverywhere(false);
}

TEST_P(TrashCrash, aRestoreThatIsKilledLeavesTheFileWholeInOnePlaceOrTheOther)
{
    killEverywhere(true);
}

INSTANTIATE_TEST_SUITE_P(Ways, TrashCrash, testing::Values(Way::exclusiveRename, Way::hardLink, Way::placeholder),
                         [](const auto &each) { return nameOf(each.param); });

} // namespace
} // namespace tallowmere::test
