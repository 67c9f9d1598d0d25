// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "settings/IniDefaultsStore.h"

#include "tests/doubles/OrdinaryUser.h"
#include "tests/doubles/ScopedEnvironment.h"
#include "tests/doubles/TestFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

namespace tallowmere {
namespace {

using namespace Qt::Literals::StringLiterals;
using test::ScopedEnvironment;
using test::TestFolder;

class IniStore : public testing::Test
{
protected:
    [[nodiscard]] QByteArray path() const { return m_folder.path() + "/config/tallowmere/tallowmere.ini"; }
    void writeFile(const QByteArray &text) const
    {
        (void)m_folder.makeFolder("config/tallowmere");
        m_folder.write("config/tallowmere/tallowmere.ini", text);
    }
    [[nodiscard]] QByteArray fileText() const { return m_folder.read("config/tallowmere/tallowmere.ini"); }

    const TestFolder m_folder;
};

TEST_F(IniStore, livesInTheUsersConfigurationFolder)
{
    const ScopedEnvironment config("XDG_CONFIG_HOME", "/somewhere/config");
    EXPECT_EQ(IniDefaultsStore::userPath(), "/somewhere/config/tallowmere/tallowmere.ini");
}

TEST_F(IniStore, anAbsentKeyIsToldApartFromAStoredFalse)
{
    IniDefaultsStore store(path());
    EXPECT_FALSE(store.contains("ShowFileSize"));
    EXPECT_FALSE(store.boolForKey("ShowFileSize"));
    EXPECT_TRUE(store.stringForKey("ShowFileSize").isNull());
    store.setBool("ShowFileSize", false);
    EXPECT_TRUE(store.contains("ShowFileSize"));
    EXPECT_FALSE(store.boolForKey("ShowFileSize"));
}

TEST_F(IniStore, readingCreatesNothing)
{
    const IniDefaultsStore store(path());
    EXPECT_FALSE(store.contains("ShowFileSize"));
    EXPECT_NE(::access((m_folder.path() + "/config").constData(), F_OK), 0);
}

TEST_F(IniStore, aWriteReachesTheDiskAtOnceAsPlainText)
{
    IniDefaultsStore store(path());
    store.setBool("ShowFileSize", false);
    store.setString("FileNameDisplayLocation", u"inCorner"_s);
    EXPECT_EQ(fileText(), "[General]\nFileNameDisplayLocation=inCorner\nShowFileSize=false\n");
    const IniDefaultsStore another(path());
    EXPECT_TRUE(another.contains("ShowFileSize"));
    EXPECT_EQ(another.stringForKey("FileNameDisplayLocation"), u"inCorner"_s);
}

TEST_F(IniStore, theFolderItMakesIsTheUsersAlone)
{
    IniDefaultsStore store(path());
    store.setBool("ShowFileSize", true);
    struct stat status = {};
    ASSERT_EQ(::stat((m_folder.path() + "/config/tallowmere").constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0700U);
}

TEST_F(IniStore, whatAnotherWriterStoredIsSeenByTheNextRead)
{
    IniDefaultsStore store(path());
    IniDefaultsStore another(path());
    store.setBool("ShowFileSize", true);
    EXPECT_TRUE(another.boolForKey("ShowFileSize"));
    another.setBool("ShowFileSize", false);
    EXPECT_FALSE(store.boolForKey("ShowFileSize"));
    writeFile("[General]\nShowFileSize=true\nShowFileTag=true\n");
    EXPECT_TRUE(store.boolForKey("ShowFileSize"));
    EXPECT_TRUE(store.boolForKey("ShowFileTag"));
}

TEST_F(IniStore, writingTheStoredValueAgainLeavesTheFileAlone)
{
    IniDefaultsStore store(path());
    store.setBool("ShowFileSize", false);
    struct stat before = {};
    struct stat after = {};
    ASSERT_EQ(::stat(path().constData(), &before), 0);
    store.setBool("ShowFileSize", false);
    ASSERT_EQ(::stat(path().constData(), &after), 0);
    EXPECT_EQ(before.st_ino, after.st_ino) << "a write replaces the file";
    store.setBool("ShowFileSize", true);
    EXPECT_EQ(fileText(), "[General]\nShowFileSize=true\n");
}

TEST_F(IniStore, keysAreCaseSensitive)
{
    writeFile("[General]\nshowfilesize=true\n");
    const IniDefaultsStore store(path());
    EXPECT_FALSE(store.contains("ShowFileSize"));
}

TEST_F(IniStore, entriesItDoesNotKnowAreKept)
{
    writeFile("[General]\nFromTheFuture=7\n\n[Window]\nx=3\n");
    IniDefaultsStore store(path());
    store.setBool("ShowFileSize", true);
    EXPECT_THAT(fileText().toStdString(), testing::HasSubstr("FromTheFuture=7"));
    EXPECT_THAT(fileText().toStdString(), testing::HasSubstr("[Window]\nx=3"));
}

TEST_F(IniStore, readsTheSpellingsOfABoolean)
{
    const std::pair<const char *, bool> spellings[] = {
        {"true", true}, {"TRUE", true},        {"True", true},       {"YES", true}, {"yes", true},
        {"1", true},    {"\"true\"", true},    {"false", false},     {"NO", false}, {"no", false},
        {"0", false},   {"abc", false},        {"2", false},         {"10", false}, {"on", false},
        {"", false},    {"true, true", false}, {"@Invalid()", false}};
    for (const auto &[text, expected] : spellings) {
        writeFile(QByteArray("[General]\nShowFileSize=") + text + "\n");
        const IniDefaultsStore store(path());
        EXPECT_EQ(store.boolForKey("ShowFileSize"), expected) << text;
    }
}

TEST_F(IniStore, aFileFullOfGarbageReadsAsEmptyAndCanBeWritten)
{
    QByteArray garbage;
    for (int i = 0; i < 4096; ++i)
        garbage.append(static_cast<char>(i * 131 + 7));
    writeFile(garbage);
    IniDefaultsStore store(path());
    EXPECT_FALSE(store.contains("ShowFileSize"));
    store.setBool("ShowFileSize", true);
    EXPECT_TRUE(store.boolForKey("ShowFileSize"));
    const IniDefaultsStore another(path());
    EXPECT_TRUE(another.boolForKey("ShowFileSize"));
}

TEST_F(IniStore, aPlaceThatCannotBeWrittenKeepsTheValueForThisRun)
{
    m_folder.write("config", "a file where the folder should be"); // refused to root as well
    IniDefaultsStore store(path());
    store.setBool("ShowFileSize", false);
    store.setString("TransparencyBackground", u"checkers"_s);
    EXPECT_TRUE(store.contains("ShowFileSize"));
    EXPECT_FALSE(store.boolForKey("ShowFileSize"));
    EXPECT_EQ(store.stringForKey("TransparencyBackground"), u"checkers"_s);
    EXPECT_EQ(m_folder.read("config"), "a file where the folder should be");
}

TEST_F(IniStore, aFifoInItsPlaceIsNotWaitedFor)
{
    (void)m_folder.makeFolder("config/tallowmere");
    ASSERT_EQ(::mkfifo(path().constData(), 0600), 0);
    IniDefaultsStore store(path());
    EXPECT_FALSE(store.contains("ShowFileSize"));
    store.setBool("ShowFileSize", true);
    EXPECT_TRUE(store.boolForKey("ShowFileSize"));
}

TEST_F(IniStore, aLockLeftBehindOnAnotherMachineIsNotWaitedForUntilItIsStale)
{
    (void)m_folder.makeFolder("config/tallowmere");
    const QByteArray lock = "1\ntallowmere\nanother-machine\n0123456789abcdef\nfedcba9876543210\n";
    m_folder.write("config/tallowmere/tallowmere.ini.lock", lock);
    IniDefaultsStore store(path());
    store.setBool("ShowFileSize", true);
    EXPECT_TRUE(store.boolForKey("ShowFileSize"));
    EXPECT_EQ(m_folder.read("config/tallowmere/tallowmere.ini.lock"), lock) << "it was taken away";
    EXPECT_EQ(fileText(), "") << "it was written past the lock";
    ASSERT_EQ(::unlink((path() + ".lock").constData()), 0);
    store.setBool("ShowFileTag", true);
    EXPECT_TRUE(fileText().contains("ShowFileSize=true")) << "the next write brings it along";
}

TEST_F(IniStore, whatCouldNotBeWrittenIsTriedAgainWithTheNextWrite)
{
    m_folder.write("config", "in the way");
    IniDefaultsStore store(path());
    store.setBool("ShowFileSize", false);
    m_folder.remove("config");
    store.setBool("ShowFileTag", true);
    EXPECT_EQ(fileText(), "[General]\nShowFileSize=false\nShowFileTag=true\n");
    writeFile("[General]\nShowFileSize=true\n");
    EXPECT_TRUE(store.boolForKey("ShowFileSize")) << "and others are heard again";
}

void exitAfterWritingToAForeignFile(const QByteArray &path)
{
    test::becomeOrdinaryUser();
    IniDefaultsStore store(path);
    const bool read = store.boolForKey("ShowFileTag");
    store.setBool("ShowFileTag", false);
    store.setBool("ShowFileSize", false);
    const bool kept = !store.boolForKey("ShowFileTag") && store.contains("ShowFileSize");
    _exit(read && kept ? 0 : 1);
}

TEST_F(IniStore, aReadOnlyFileIsReadAndTheNewValueLivesOn)
{
    writeFile("[General]\nShowFileTag=true\n");
    for (const char *name : {"", "/config", "/config/tallowmere"})
        ASSERT_EQ(::chmod((m_folder.path() + name).constData(), 0555), 0);
    ASSERT_EQ(::chmod(path().constData(), 0444), 0);
    EXPECT_EXIT(exitAfterWritingToAForeignFile(path()), testing::ExitedWithCode(0), "");
    EXPECT_EQ(fileText(), "[General]\nShowFileTag=true\n");
    for (const char *name : {"", "/config", "/config/tallowmere"})
        ::chmod((m_folder.path() + name).constData(), 0755);
}

TEST(IniStoreWithoutAPath, keepsValuesForThisRun)
{
    IniDefaultsStore store({});
    EXPECT_FALSE(store.contains("ShowFileSize"));
    store.setBool("ShowFileSize", true);
    EXPECT_TRUE(store.boolForKey("ShowFileSize"));
}

} // namespace
} // namespace tallowmere
