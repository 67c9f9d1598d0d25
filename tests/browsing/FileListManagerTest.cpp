// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "browsing/FileListManager.h"

#include "settings/SettingsManager.h"
#include "tests/doubles/CapturedOutput.h"
#include "tests/doubles/MemoryDefaultsStore.h"
#include "tests/doubles/OrdinaryUser.h"
#include "tests/doubles/RecordingScope.h"
#include "tests/doubles/ScopedEnvironment.h"
#include "tests/doubles/TestFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

namespace tallowmere {
namespace {

using test::CapturedOutput;
using test::MemoryDefaultsStore;
using test::RecordingScope;
using test::ScopedEnvironment;
using test::TestFolder;
using testing::ElementsAre;
using testing::IsEmpty;

class FileList : public testing::Test
{
protected:
    [[nodiscard]] std::vector<QByteArray> names() const
    {
        std::vector<QByteArray> result;
        for (const FileURL &url : m_list.fileURLs)
            result.push_back(url.lastPathComponent());
        return result;
    }
    void giveFiles(int count)
    {
        m_list.fileURLs.clear();
        for (int i = 0; i < count; ++i)
            m_list.fileURLs.append(FileURL::fromPath("/photos/" + QByteArray::number(i) + ".jpg"));
    }

    const ScopedEnvironment m_language{"LC_ALL", "C"};
    const TestFolder m_folder;
    SettingsManager m_settings{std::make_unique<MemoryDefaultsStore>()};
    RecordingScope m_scope;
    FileListManager m_list{m_settings, m_scope};
};

TEST_F(FileList, isEmptyAtFirst)
{
    EXPECT_TRUE(m_list.fileURLs.isEmpty());
    EXPECT_EQ(m_list.currentIndex, 0);
}

TEST_F(FileList, dropsHiddenAndForeignFilesAndOrdersTheRestForPeople)
{
    for (const char *name : {"b.jpg", "A.PNG", "c.txt", ".hidden.jpg", "img10.jpg", "img2.jpg"})
        m_folder.write(name);
    EXPECT_TRUE(m_list.reloadFiles(m_folder.url()));
    EXPECT_THAT(names(), ElementsAre("A.PNG", "b.jpg", "img2.jpg", "img10.jpg"));
}

TEST_F(FileList, loadingAFileGoesToItsPosition)
{
    for (const char *name : {"a.jpg", "b.jpg", "c.jpg"})
        m_folder.write(name);
    EXPECT_TRUE(m_list.loadFiles(m_folder.at("b.jpg")));
    EXPECT_EQ(m_list.currentIndex, 1);
    EXPECT_EQ(m_list.fileURLs.at(1), m_folder.at("b.jpg"));
}

TEST_F(FileList, aFileOfASwitchedOffFormatIsNotFoundButItsFolderIsListed)
{
    m_folder.write("x.png");
    m_folder.write("a.jpg");
    m_folder.write("b.jpg");
    m_settings.setPngSupportEnabled(false);
    m_list.currentIndex = 5;
    const CapturedOutput output;
    EXPECT_FALSE(m_list.loadFiles(m_folder.at("x.png")));
    EXPECT_THAT(names(), ElementsAre("a.jpg", "b.jpg"));
    EXPECT_EQ(m_list.currentIndex, 0);
    EXPECT_EQ(output.text(), "") << "nothing failed";
}

TEST_F(FileList, aHiddenFileIsNotFoundInItsOwnFolder)
{
    m_folder.write(".hidden.jpg");
    m_folder.write("a.jpg");
    EXPECT_FALSE(m_list.loadFiles(m_folder.at(".hidden.jpg")));
    EXPECT_THAT(names(), ElementsAre("a.jpg"));
}

TEST_F(FileList, aSubfolderNamedLikeAnImageIsListedAsOne)
{
    (void)m_folder.makeFolder("set.jpeg");
    m_folder.write("set.jpeg/inside.jpg");
    m_folder.write("a.jpg");
    EXPECT_TRUE(m_list.reloadFiles(m_folder.url()));
    EXPECT_THAT(names(), ElementsAre("a.jpg", "set.jpeg"));
}

TEST_F(FileList, takesEveryEnabledExtensionInAnyCaseAndNoOther)
{
    for (const char *name : {"a.jpg", "b.JPEG", "c.Png", "d.webp", "e.AVIF", "f.heic", "g.HEIF", "h.gif", "i.jpgx",
                             "jpg", "k.jpg.txt", "l."})
        m_folder.write(name);
    EXPECT_TRUE(m_list.reloadFiles(m_folder.url()));
    EXPECT_THAT(names(), ElementsAre("a.jpg", "b.JPEG", "c.Png", "d.webp", "e.AVIF", "f.heic", "g.HEIF"));
}

TEST_F(FileList, namesThatAreNotUtf8AreListedAndFound)
{
    m_folder.write("gr\xFC\xDF.jpg");
    m_folder.write("a.jpg");
    EXPECT_TRUE(m_list.loadFiles(m_folder.at("gr\xFC\xDF.jpg")));
    EXPECT_EQ(m_list.currentIndex, 1);
}

TEST_F(FileList, namesThatCompareEqualKeepOneOrder)
{
    for (const char *name : {"b.jpg", "A.jpg", "a.jpg", "B.jpg"})
        m_folder.write(name);
    EXPECT_TRUE(m_list.reloadFiles(m_folder.url()));
    EXPECT_THAT(names(), ElementsAre("A.jpg", "a.jpg", "B.jpg", "b.jpg"));
}

TEST_F(FileList, everyLoadListsAfreshAndReadsTheFormatsAgain)
{
    m_folder.write("a.jpg");
    m_folder.write("b.png");
    EXPECT_TRUE(m_list.loadFiles(m_folder.at("a.jpg")));
    EXPECT_THAT(names(), ElementsAre("a.jpg", "b.png"));
    m_folder.write("c.jpg");
    m_settings.setPngSupportEnabled(false);
    EXPECT_TRUE(m_list.loadFiles(m_folder.at("a.jpg")));
    EXPECT_THAT(names(), ElementsAre("a.jpg", "c.jpg"));
}

TEST_F(FileList, steppingBeyondEitherEndWrapsAround)
{
    giveFiles(3);
    m_list.currentIndex = 2;
    EXPECT_EQ(m_list.nextFileURL(), m_list.fileURLs.first());
    EXPECT_EQ(m_list.currentIndex, 0);
    EXPECT_EQ(m_list.previousFileURL(), m_list.fileURLs.last());
    EXPECT_EQ(m_list.currentIndex, 2);
}

TEST_F(FileList, stepsInBothDirections)
{
    giveFiles(3);
    EXPECT_EQ(m_list.nextFileURL(), m_list.fileURLs.at(1));
    EXPECT_EQ(m_list.nextFileURL(), m_list.fileURLs.at(2));
    EXPECT_EQ(m_list.previousFileURL(), m_list.fileURLs.at(1));
    EXPECT_EQ(m_list.currentIndex, 1);
}

TEST_F(FileList, withOneFileBothStepsReturnIt)
{
    giveFiles(1);
    EXPECT_EQ(m_list.nextFileURL(), m_list.fileURLs.first());
    EXPECT_EQ(m_list.currentIndex, 0);
    EXPECT_EQ(m_list.previousFileURL(), m_list.fileURLs.first());
    EXPECT_EQ(m_list.currentIndex, 0);
}

TEST_F(FileList, withAnEmptyListBothStepsReturnNoneAndChangeNothing)
{
    m_list.currentIndex = 7;
    EXPECT_TRUE(m_list.nextFileURL().empty());
    EXPECT_EQ(m_list.currentIndex, 7);
    EXPECT_TRUE(m_list.previousFileURL().empty());
    EXPECT_EQ(m_list.currentIndex, 7);
}

TEST_F(FileList, withTheIndexAtMinusThreeAndThreeFilesTheStepsGoToMinusTwoAndToTheLast)
{
    giveFiles(3);
    m_list.currentIndex = -3;
    EXPECT_TRUE(m_list.nextFileURL().empty());
    EXPECT_EQ(m_list.currentIndex, -2);
    m_list.currentIndex = -3;
    EXPECT_EQ(m_list.previousFileURL(), m_list.fileURLs.last());
    EXPECT_EQ(m_list.currentIndex, 2);
}

TEST_F(FileList, anIndexBeyondTheEndStepsAsFarAsTheRuleGoes)
{
    giveFiles(3);
    m_list.currentIndex = 5;
    EXPECT_TRUE(m_list.previousFileURL().empty());
    EXPECT_EQ(m_list.currentIndex, 4) << "the changed index is kept";
    m_list.currentIndex = 3;
    EXPECT_EQ(m_list.previousFileURL(), m_list.fileURLs.last());
    m_list.currentIndex = 9;
    EXPECT_EQ(m_list.nextFileURL(), m_list.fileURLs.first());
    m_list.currentIndex = -1;
    EXPECT_EQ(m_list.nextFileURL(), m_list.fileURLs.first());
}

TEST_F(FileList, steppingDoesNotLookWhetherTheFileStillExists)
{
    m_folder.write("a.jpg");
    m_folder.write("b.jpg");
    ASSERT_TRUE(m_list.loadFiles(m_folder.at("a.jpg")));
    m_folder.remove("b.jpg");
    EXPECT_EQ(m_list.nextFileURL(), m_folder.at("b.jpg"));
}

TEST_F(FileList, reloadingAFolderWithoutImagesSucceedsWithAnEmptyList)
{
    giveFiles(3);
    m_list.currentIndex = 2;
    m_folder.write("readme.txt");
    EXPECT_TRUE(m_list.reloadFiles(m_folder.url()));
    EXPECT_THAT(names(), IsEmpty());
    EXPECT_EQ(m_list.currentIndex, 0);
}

TEST_F(FileList, reloadingGoesToTheFirstEntry)
{
    m_folder.write("a.jpg");
    m_folder.write("b.jpg");
    m_list.currentIndex = 1;
    EXPECT_TRUE(m_list.reloadFiles(m_folder.url()));
    EXPECT_EQ(m_list.currentIndex, 0);
}

TEST_F(FileList, aFailedReloadPrintsItsLineAndLeavesTheOldList)
{
    giveFiles(3);
    m_list.currentIndex = 2;
    const auto before = m_list.fileURLs;
    const CapturedOutput output;
    EXPECT_FALSE(m_list.reloadFiles(m_folder.at("gone")));
    EXPECT_EQ(output.text(), "⚠️ Failed to reload files from directory: " + m_folder.path() + "/gone\n");
    EXPECT_EQ(m_list.fileURLs, before);
    EXPECT_EQ(m_list.currentIndex, 2);
}

TEST_F(FileList, aFailedLoadPrintsItsLineAndLeavesTheOldList)
{
    giveFiles(3);
    m_list.currentIndex = 2;
    const auto before = m_list.fileURLs;
    const CapturedOutput output;
    EXPECT_FALSE(m_list.loadFiles(m_folder.at("gone/x.jpg")));
    EXPECT_EQ(output.text(), "⚠️ Failed to load files from directory: " + m_folder.path() + "/gone\n");
    EXPECT_EQ(m_list.fileURLs, before);
    EXPECT_EQ(m_list.currentIndex, 2);
}

TEST_F(FileList, aFileIsNoFolder)
{
    m_folder.write("a.jpg");
    const CapturedOutput output;
    EXPECT_FALSE(m_list.reloadFiles(m_folder.at("a.jpg")));
    EXPECT_TRUE(output.text().startsWith("⚠️ Failed to reload"));
}

TEST_F(FileList, aFifoInPlaceOfTheFolderIsRefusedWithoutWaiting)
{
    ASSERT_EQ(::mkfifo(m_folder.at("fifo").path().constData(), 0600), 0);
    const CapturedOutput output;
    EXPECT_FALSE(m_list.reloadFiles(m_folder.at("fifo")));
}

void exitAfterListingAForbiddenFolder(const FileURL &file)
{
    test::becomeOrdinaryUser();
    const SettingsManager settings(std::make_unique<MemoryDefaultsStore>());
    NoSecurityScope scope;
    FileListManager list(settings, scope);
    const CapturedOutput output;
    const bool loaded = list.loadFiles(file);
    _exit(!loaded && list.fileURLs.isEmpty() && output.text().startsWith("⚠️ Failed to load") ? 0 : 1);
}

TEST_F(FileList, aFolderThatMayNotBeListedFails)
{
    const FileURL folder = m_folder.makeFolder("closed");
    const FileURL file = m_folder.write("closed/a.jpg");
    ASSERT_EQ(::chmod(folder.path().constData(), 0311), 0); // may be entered, not listed
    EXPECT_EXIT(exitAfterListingAForbiddenFolder(file), testing::ExitedWithCode(0), "");
    ::chmod(folder.path().constData(), 0755);
}

TEST_F(FileList, loadingHoldsAccessToFileAndFolderForTheListingOnly)
{
    const QByteArray file = m_folder.write("a.jpg").path();
    const QByteArray &folder = m_folder.path();
    EXPECT_TRUE(m_list.loadFiles(m_folder.at("a.jpg")));
    EXPECT_THAT(m_scope.log(), ElementsAre("start " + file, "start " + folder, "stop " + file, "stop " + folder));
}

TEST_F(FileList, reloadingHoldsAccessToTheFolderOnly)
{
    EXPECT_TRUE(m_list.reloadFiles(m_folder.url()));
    EXPECT_THAT(m_scope.log(), ElementsAre("start " + m_folder.path(), "stop " + m_folder.path()));
}

TEST_F(FileList, accessIsGivenBackWhenTheListingFails)
{
    const CapturedOutput output;
    EXPECT_FALSE(m_list.loadFiles(m_folder.at("gone/x.jpg")));
    EXPECT_THAT(m_scope.log(), testing::UnorderedElementsAre(
                                   "start " + m_folder.path() + "/gone/x.jpg", "start " + m_folder.path() + "/gone",
                                   "stop " + m_folder.path() + "/gone/x.jpg", "stop " + m_folder.path() + "/gone"));
}

TEST_F(FileList, accessThatDidNotStartIsNotStopped)
{
    RecordingScope refusing(false);
    FileListManager list(m_settings, refusing);
    m_folder.write("a.jpg");
    EXPECT_TRUE(list.loadFiles(m_folder.at("a.jpg"))) << "the listing is tried anyway";
    EXPECT_THAT(refusing.log(), ElementsAre("start " + m_folder.path() + "/a.jpg", "start " + m_folder.path()));
}

} // namespace
} // namespace tallowmere
