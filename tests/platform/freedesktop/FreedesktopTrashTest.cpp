// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/platform/freedesktop/ChildProcess.h"
#include "tests/platform/freedesktop/TrashFolders.h"

#include <QDateTime>

#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstring>
#include <thread>

namespace tallowmere::test {
namespace {

using FreedesktopTrashTest = TrashTest;

TEST_F(FreedesktopTrashTest, movesTheFileAndNotesWhereItWasAndWhen)
{
    const FileURL file = add("a.jpg");
    const QDateTime before = QDateTime::currentDateTime();
    const Trash::Moved moved = trash.trashItem(file);
    ASSERT_TRUE(moved.succeeded) << moved.error.toStdString();
    EXPECT_EQ(moved.resultingURL, folder.at("data/Trash/files/a.jpg"));
    EXPECT_EQ(contents(moved.resultingURL), QByteArray("picture"));
    EXPECT_EQ(pictures(), QList<QByteArray>());
    const QList<QByteArray> lines = note("a.jpg").split('\n');
    ASSERT_EQ(lines.size(), 4);
    EXPECT_EQ(lines[0], QByteArray("[Trash Info]"));
    EXPECT_EQ(lines[1], "Path=" + file.path());
    ASSERT_TRUE(lines[2].startsWith("DeletionDate=")) << lines[2].toStdString();
    const QDateTime deleted = QDateTime::fromString(QString::fromLatin1(lines[2].sliced(13)), Qt::ISODate);
    EXPECT_LE(before.secsTo(deleted), 60);
    EXPECT_GE(before.secsTo(deleted), -1);
}

TEST_F(FreedesktopTrashTest, makesTheTrashForTheUserAlone)
{
    FreedesktopTrash deep(folder.at("not/yet/there").path());
    ASSERT_TRUE(deep.trashItem(add("a.jpg")).succeeded);
    for (const char *part : {"", "/files", "/info"})
        EXPECT_EQ(modeOf(folder.at("not/yet/there/Trash").path() + part) & 07777U, 0700U) << part;
}

TEST_F(FreedesktopTrashTest, takesBackWhatItMovedAndItsNoteToo)
{
    const FileURL file = add("a.jpg");
    const Trash::Moved moved = trash.trashItem(file);
    EXPECT_EQ(trash.restoreItem(moved.resultingURL, file), std::nullopt);
    EXPECT_EQ(contents(file), QByteArray("picture"));
    EXPECT_EQ(binned(), QList<QByteArray>());
    EXPECT_EQ(notes(), QList<QByteArray>());
}

TEST_F(FreedesktopTrashTest, aNameThatIsTakenGivesAFreshOneForBoth)
{
    for (const char *text : {"one", "two", "three"})
        ASSERT_TRUE(trash.trashItem(add("a.jpg", text)).succeeded);
    EXPECT_EQ(binned(), (QList<QByteArray>{"a.2.jpg", "a.3.jpg", "a.jpg"}));
    EXPECT_EQ(notes(), (QList<QByteArray>{"a.2.jpg.trashinfo", "a.3.jpg.trashinfo", "a.jpg.trashinfo"}));
    EXPECT_EQ(note("a.2.jpg").split('\n')[1], "Path=" + folder.at("pictures/a.jpg").path());
    EXPECT_EQ(trash.restoreItem(folder.at("data/Trash/files/a.2.jpg"), folder.at("pictures/a.jpg")), std::nullopt);
    EXPECT_EQ(folder.read("pictures/a.jpg"), QByteArray("two"));
    EXPECT_EQ(notes(), (QList<QByteArray>{"a.3.jpg.trashinfo", "a.jpg.trashinfo"}));
}

TEST_F(FreedesktopTrashTest, aFileWithoutANoteIsNotReplacedNorANoteWithoutAFile)
{
    ASSERT_TRUE(trash.trashItem(add("first.jpg")).succeeded);
    folder.write("data/Trash/files/a.jpg", "stray file");
    folder.write("data/Trash/info/a.2.jpg.trashinfo", "stray note");
    const Trash::Moved moved = trash.trashItem(add("a.jpg"));
    EXPECT_EQ(moved.resultingURL.lastPathComponent(), QByteArray("a.3.jpg"));
    EXPECT_EQ(folder.read("data/Trash/files/a.jpg"), QByteArray("stray file"));
    EXPECT_EQ(folder.read("data/Trash/info/a.2.jpg.trashinfo"), QByteArray("stray note"));
    EXPECT_EQ(notes(), (QList<QByteArray>{"a.2.jpg.trashinfo", "a.3.jpg.trashinfo", "first.jpg.trashinfo"}));
}

TEST_F(FreedesktopTrashTest, thereIsNoLimitToTheNumberOfFilesOfOneName)
{
    ASSERT_TRUE(trash.trashItem(add("a.jpg")).succeeded);
    for (int i = 2; i <= 300; ++i)
        folder.write("data/Trash/info/a." + QByteArray::number(i) + ".jpg.trashinfo");
    const Trash::Moved moved = trash.trashItem(add("a.jpg"));
    ASSERT_TRUE(moved.succeeded) << moved.error.toStdString();
    EXPECT_FALSE(note(moved.resultingURL.lastPathComponent()).isEmpty());
}

TEST_F(FreedesktopTrashTest, namesAreBytes)
{
    for (const QByteArray &name : {QByteArray("na\xEFve.jpg"), QByteArray("a\nb.jpg"), QByteArray("100%25 ä#?.jpg"),
                                   QByteArray("<b>x<b>.jpg"), QByteArray("-rf.jpg")}) {
        const FileURL file = add(name);
        const Trash::Moved moved = trash.trashItem(file);
        ASSERT_TRUE(moved.succeeded) << name.toStdString();
        EXPECT_EQ(moved.resultingURL.lastPathComponent(), name);
        EXPECT_EQ(note(name).split('\n')[1], "Path=" + file.encoded().sliced(7));
        EXPECT_EQ(trash.restoreItem(moved.resultingURL, file), std::nullopt);
        EXPECT_EQ(pictures(), QList<QByteArray>{name});
        folder.remove("pictures/" + name);
    }
}

TEST_F(FreedesktopTrashTest, theLongestNamesAreShortenedInTheTrashAndComeBackWhole)
{
    const FileURL file = add(QByteArray(251, 'n') + ".jpg");
    const Trash::Moved moved = trash.trashItem(file);
    ASSERT_TRUE(moved.succeeded) << moved.error.toStdString();
    EXPECT_TRUE(moved.resultingURL.lastPathComponent().endsWith("n.jpg"));
    EXPECT_EQ(note(moved.resultingURL.lastPathComponent()).split('\n')[1], "Path=" + file.path());
    EXPECT_EQ(trash.restoreItem(moved.resultingURL, file), std::nullopt);
    EXPECT_EQ(contents(file), QByteArray("picture"));
    EXPECT_EQ(notes(), QList<QByteArray>());
}

TEST_F(FreedesktopTrashTest, aLinkIsMovedItselfWhereverItLeads)
{
    const FileURL link = folder.at("pictures/link.jpg");
    ASSERT_EQ(::symlink("nowhere", link.path().constData()), 0);
    const Trash::Moved moved = trash.trashItem(link);
    ASSERT_TRUE(moved.succeeded) << moved.error.toStdString();
    EXPECT_TRUE(S_ISLNK(modeOf(moved.resultingURL.path())));
    EXPECT_EQ(trash.restoreItem(moved.resultingURL, link), std::nullopt);
    EXPECT_TRUE(S_ISLNK(modeOf(link.path())));
}

TEST_F(FreedesktopTrashTest, aFolderNamedLikeAPictureIsMovedWithWhatItHolds)
{
    folder.makeFolder("pictures/a.jpg");
    const FileURL inner = add("a.jpg/inner.jpg");
    const Trash::Moved moved = trash.trashItem(folder.at("pictures/a.jpg"));
    ASSERT_TRUE(moved.succeeded) << moved.error.toStdString();
    EXPECT_EQ(trash.restoreItem(moved.resultingURL, folder.at("pictures/a.jpg")), std::nullopt);
    EXPECT_EQ(contents(inner), QByteArray("picture"));
}

TEST_F(FreedesktopTrashTest, aFileThatIsGoneIsSaidToBeGoneAndNothingIsMade)
{
    const Trash::Moved moved = trash.trashItem(folder.at("pictures/a.jpg"));
    EXPECT_FALSE(moved.succeeded);
    EXPECT_EQ(moved.error, QStringLiteral("“a.jpg” no longer exists."));
    EXPECT_EQ(namesIn(folder.path()), QList<QByteArray>{"pictures"});
    EXPECT_EQ(trash.trashItem(folder.at("missing/a.jpg")).error, QStringLiteral("“a.jpg” no longer exists."));
}

TEST_F(FreedesktopTrashTest, whatLiesInTheTrashAlreadyStaysAsItIs)
{
    const FileURL trashed = trash.trashItem(add("a.jpg")).resultingURL;
    EXPECT_EQ(trash.trashItem(trashed).error, QStringLiteral("“a.jpg” is in the Trash already."));
    EXPECT_EQ(binned(), QList<QByteArray>{"a.jpg"});
    EXPECT_EQ(notes(), QList<QByteArray>{"a.jpg.trashinfo"});
}

TEST_F(FreedesktopTrashTest, aRestoreNeverReplacesAFile)
{
    const FileURL file = add("a.jpg", "old");
    const FileURL trashed = trash.trashItem(file).resultingURL;
    (void)add("a.jpg", "new");
    EXPECT_EQ(trash.restoreItem(trashed, file), QStringLiteral("A file already exists at the original location."));
    EXPECT_EQ(contents(file), QByteArray("new"));
    EXPECT_EQ(contents(trashed), QByteArray("old"));
    EXPECT_EQ(notes(), QList<QByteArray>{"a.jpg.trashinfo"});
}

TEST_F(FreedesktopTrashTest, aRestoreIntoAFolderThatIsGoneSaysSo)
{
    const FileURL file = add("a.jpg");
    const FileURL trashed = trash.trashItem(file).resultingURL;
    folder.remove("pictures");
    EXPECT_EQ(trash.restoreItem(trashed, file), QStringLiteral("The folder “pictures” no longer exists."));
    EXPECT_EQ(contents(trashed), QByteArray("picture"));
    EXPECT_EQ(notes(), QList<QByteArray>{"a.jpg.trashinfo"});
}

TEST_F(FreedesktopTrashTest, aRestoreFromAnEmptiedTrashSaysSo)
{
    const FileURL file = add("a.jpg");
    const FileURL trashed = trash.trashItem(file).resultingURL;
    folder.remove("data/Trash/files/a.jpg");
    EXPECT_EQ(trash.restoreItem(trashed, file), QStringLiteral("“a.jpg” no longer exists."));
    folder.remove("data/Trash");
    EXPECT_EQ(trash.restoreItem(trashed, file), QStringLiteral("“a.jpg” no longer exists."));
    EXPECT_EQ(pictures(), QList<QByteArray>());
}

TEST_F(FreedesktopTrashTest, whenItIsFinishedNoNoteIsLeftWithoutItsFileAndNothingBegins)
{
    constexpr int kFiles = 40;
    for (int i = 0; i < kFiles; ++i)
        (void)add(QByteArray::number(i) + ".jpg");
    const FileURL late = add("late.jpg");
    inChild([&] {
        std::atomic<int> moved{0};
        std::thread([&] {
            for (int i = 0; i < kFiles; ++i, ++moved)
                (void)trash.trashItem(folder.at("pictures").appending(QByteArray::number(i) + ".jpg"));
        }).detach();
        while (moved < 3)
            std::this_thread::yield();
        trash.finish(std::chrono::seconds{30});
        std::atomic<bool> asked{false};
        std::thread([&] {
            asked = true;
            (void)trash.trashItem(late);
        }).detach();
        for (int turns = 0; !asked || turns < 10'000; ++turns)
            std::this_thread::yield(); // time enough for it to be moved, were it not held
        _exit(0);                      // as the program ends: whoever is at work is cut off
    });
    QList<QByteArray> noted = notes();
    for (QByteArray &each : noted)
        each.chop(static_cast<qsizetype>(std::strlen(".trashinfo")));
    EXPECT_EQ(noted, binned());
    EXPECT_GE(noted.size(), 3);
    EXPECT_TRUE(pictures().contains("late.jpg")) << "it was not to begin";
}

TEST_F(FreedesktopTrashTest, longNamesAreShortenedInMessagesAndKeptOnOneLine)
{
    const QString error = trash.trashItem(folder.at("pictures/a\n" + QByteArray(200, 'n') + "z.jpg")).error;
    EXPECT_TRUE(error.startsWith(QStringLiteral("“a nnn"))) << error.toStdString();
    EXPECT_TRUE(error.contains(QStringLiteral("nz.jpg” no longer exists"))) << error.toStdString();
    EXPECT_LT(error.size(), 100);
}

} // namespace
} // namespace tallowmere::test
