// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/FileContents.h"

#include "tests/doubles/OrdinaryUser.h"
#include "tests/doubles/TestFolder.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <cstring>

namespace tallowmere {
namespace {

using test::TestFolder;

QByteArray text(const FileContents &contents)
{
    return {reinterpret_cast<const char *>(contents.bytes().data()), static_cast<qsizetype>(contents.bytes().size())};
}

TEST(FileContents, areTheWholeFile)
{
    const TestFolder folder;
    for (const qsizetype size : {1, 300'000, 5'000'001}) { // the last on large pages
        QByteArray bytes;
        for (qsizetype i = 0; i < size; ++i)
            bytes.append(static_cast<char>(i * 7 + i / 4096));
        const auto contents = FileContents::read(folder.write("gr\xFC\xDF.jpg", bytes));
        ASSERT_TRUE(contents.has_value());
        EXPECT_EQ(text(*contents), bytes);
    }
}

TEST(FileContents, ofAnEmptyFileAreEmpty)
{
    const TestFolder folder;
    const auto contents = FileContents::read(folder.write("empty", QByteArray()));
    ASSERT_TRUE(contents.has_value());
    EXPECT_TRUE(contents->bytes().empty());
}

TEST(FileContents, followALink)
{
    const TestFolder folder;
    folder.write("a.jpg", "picture");
    ASSERT_EQ(::symlink("a.jpg", folder.at("link.jpg").path().constData()), 0);
    const auto contents = FileContents::read(folder.at("link.jpg"));
    ASSERT_TRUE(contents.has_value());
    EXPECT_EQ(text(*contents), "picture");
}

TEST(FileContents, ofWhatIsMissingAreNone)
{
    const TestFolder folder;
    EXPECT_FALSE(FileContents::read(folder.at("gone")).has_value());
    EXPECT_FALSE(FileContents::read({}).has_value());
    ASSERT_EQ(::symlink("gone", folder.at("dangling").path().constData()), 0);
    EXPECT_FALSE(FileContents::read(folder.at("dangling")).has_value());
}

TEST(FileContents, ofAFifoAreNoneWithoutWaiting)
{
    const TestFolder folder;
    ASSERT_EQ(::mkfifo(folder.at("fifo.jpg").path().constData(), 0600), 0);
    EXPECT_FALSE(FileContents::read(folder.at("fifo.jpg")).has_value());
}

TEST(FileContents, ofFoldersAndDevicesAreNone)
{
    const TestFolder folder;
    EXPECT_FALSE(FileContents::read(folder.makeFolder("set.jpg")).has_value());
    EXPECT_FALSE(FileContents::read(FileURL::fromPath("/dev/zero")).has_value());
}

TEST(FileContents, largerThanAllowedAreNone)
{
    const TestFolder folder;
    const FileURL file = folder.write("a.jpg", QByteArray(1000, 'x'));
    EXPECT_FALSE(FileContents::read(file, 999).has_value());
    EXPECT_TRUE(FileContents::read(file, 1000).has_value());
    ASSERT_EQ(::truncate(file.path().constData(), (off_t{3} << 30)), 0); // a hole; takes no room
    EXPECT_FALSE(FileContents::read(file).has_value());
}

void exitAfterReadingAForbiddenFile(const FileURL &file)
{
    test::becomeOrdinaryUser();
    _exit(FileContents::read(file) ? 1 : 0);
}

TEST(FileContents, ofAForbiddenFileAreNone)
{
    const TestFolder folder;
    const FileURL file = folder.write("secret.jpg");
    ASSERT_EQ(::chmod(file.path().constData(), 0), 0);
    EXPECT_EXIT(exitAfterReadingAForbiddenFile(file), testing::ExitedWithCode(0), "");
}

TEST(FileContents, moveFromHandToHand)
{
    const TestFolder folder;
    auto first = FileContents::read(folder.write("a", "first"));
    auto second = FileContents::read(folder.write("b", "second"));
    ASSERT_TRUE(first && second);
    *first = std::move(*second);
    EXPECT_EQ(text(*first), "second");
    const FileContents third(std::move(*first));
    EXPECT_EQ(text(third), "second");
    EXPECT_TRUE(first->bytes().empty());
}

} // namespace
} // namespace tallowmere
