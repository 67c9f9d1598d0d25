// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "platform/freedesktop/StatxAttributes.h"

#include "tests/doubles/TestFolder.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

namespace tallowmere {
namespace {

using test::TestFolder;

TEST(StatxAttributes, tellTheSizeBeyondWhatThirtyTwoBitsHold)
{
    const TestFolder folder;
    const FileURL file = folder.write("a.jpg", "12345");
    const StatxAttributesReader reader;
    EXPECT_EQ(reader.attributes(file).value_or(FileAttributes{}).size, 5);
    ASSERT_EQ(::truncate(file.path().constData(), 5'000'000'000), 0);
    EXPECT_EQ(reader.attributes(file).value_or(FileAttributes{}).size, 5'000'000'000);
}

TEST(StatxAttributes, tellWhenTheFileCameIntoBeingWhereTheFileSystemKeepsIt)
{
    using namespace std::chrono;
    // The kernel stamps files with a clock that moves on in ticks only.
    const FileTime before = floor<milliseconds>(system_clock::now()) - seconds(1);
    const TestFolder folder;
    const auto attributes = StatxAttributesReader().attributes(folder.write("a.jpg"));
    ASSERT_TRUE(attributes);
    if (!attributes->creationDate)
        GTEST_SKIP() << "the temporary folder's file system keeps no creation dates";
    EXPECT_GE(*attributes->creationDate, before);
    EXPECT_LE(*attributes->creationDate, floor<milliseconds>(system_clock::now()) + seconds(1));
}

TEST(StatxAttributes, leaveTheDateOutOnAFileSystemWithoutCreationDates)
{
    const auto attributes = StatxAttributesReader().attributes(FileURL::fromPath("/proc/self/status"));
    ASSERT_TRUE(attributes);
    EXPECT_EQ(attributes->creationDate, std::nullopt);
}

TEST(StatxAttributes, areNoneForAVanishedFile)
{
    const TestFolder folder;
    const StatxAttributesReader reader;
    EXPECT_EQ(reader.attributes(folder.at("vanished.jpg")), std::nullopt);
    EXPECT_EQ(reader.attributes(folder.write("a.jpg").appending("below-a-file.jpg")), std::nullopt);
    EXPECT_EQ(reader.attributes(FileURL()), std::nullopt);
}

TEST(StatxAttributes, ofAFifoAreToldWithoutWaitingForAWriter)
{
    const TestFolder folder;
    const FileURL fifo = folder.at("pipe.jpg");
    ASSERT_EQ(::mkfifo(fifo.path().constData(), 0600), 0);
    EXPECT_EQ(StatxAttributesReader().attributes(fifo).value_or(FileAttributes{-1, {}}).size, 0);
}

TEST(StatxAttributes, followALinkAndRefuseALoop)
{
    const TestFolder folder;
    const FileURL file = folder.write("a.jpg", "12345");
    const FileURL link = folder.at("link.jpg");
    ASSERT_EQ(::symlink(file.path().constData(), link.path().constData()), 0);
    EXPECT_EQ(StatxAttributesReader().attributes(link).value_or(FileAttributes{}).size, 5);
    const FileURL loop = folder.at("loop.jpg");
    ASSERT_EQ(::symlink("loop.jpg", loop.path().constData()), 0);
    EXPECT_EQ(StatxAttributesReader().attributes(loop), std::nullopt);
}

} // namespace
} // namespace tallowmere
