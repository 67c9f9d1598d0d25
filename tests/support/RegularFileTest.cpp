// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "support/RegularFile.h"

#include "tests/doubles/LeasedFile.h"
#include "tests/doubles/TestFolder.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <future>

namespace tallowmere {
namespace {

TEST(RegularFile, isOpenForReadingAndKnowsItsSize)
{
    const test::TestFolder folder;
    const auto file = RegularFile::open(folder.write("a.jpg", QByteArray("12345")));
    ASSERT_TRUE(file);
    EXPECT_EQ(file->size, 5U);
    char first = 0;
    EXPECT_EQ(::read(file->descriptor.number(), &first, 1), 1);
    EXPECT_EQ(first, '1');
}

TEST(RegularFile, isNoFolderNoFifoNoDeviceAndNothingMissing)
{
    const test::TestFolder folder;
    const FileURL fifo = folder.at("pipe.jpg");
    ASSERT_EQ(::mkfifo(fifo.path().constData(), 0600), 0);
    EXPECT_FALSE(RegularFile::open(fifo));
    EXPECT_FALSE(RegularFile::open(folder.url()));
    EXPECT_FALSE(RegularFile::open(FileURL::fromPath("/dev/null")));
    EXPECT_FALSE(RegularFile::open(folder.at("missing.jpg")));
}

TEST(RegularFile, thatAnotherHoldsALeaseOnIsWaitedFor)
{
    const test::TestFolder folder;
    const FileURL url = folder.write("a.jpg", QByteArray("12345"));
    test::LeasedFile lease(url.path().constData());
    if (!lease.held())
        GTEST_SKIP() << "this file system knows no leases";
    auto opened = std::async(std::launch::async, [&] { return RegularFile::open(url); });
    // Whether it has come to wait by now or not: it must not have been refused.
    EXPECT_NE(opened.wait_for(std::chrono::milliseconds(20)), std::future_status::ready);
    lease.release();
    const auto file = opened.get();
    ASSERT_TRUE(file);
    EXPECT_EQ(file->size, 5U);
}

} // namespace
} // namespace tallowmere
