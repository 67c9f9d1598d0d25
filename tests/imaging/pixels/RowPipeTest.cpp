// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/pixels/RowPipe.h"

#include <gtest/gtest.h>

#include <malloc.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <thread>
#include <vector>

namespace tallowmere {
namespace {

/// Whether all of @p rows went through, in order; @p threads has where they were used.
bool goThrough(std::size_t rowBytes, std::uint32_t rows, std::vector<std::thread::id> &threads)
{
    std::uint32_t expected = 0;
    bool inOrder = true;
    RowPipe pipe(rowBytes, [&](std::byte *row) {
        std::uint32_t value;
        std::memcpy(&value, row, 4);
        inOrder = inOrder && value == expected;
        ++expected;
        threads.push_back(std::this_thread::get_id());
    });
    for (std::uint32_t i = 0; i < rows; ++i) {
        std::memcpy(pipe.nextRow(), &i, 4);
        pipe.rowDone();
    }
    pipe.finish();
    return inOrder && expected == rows;
}

TEST(RowPipe, usesRowsInAThreadOfItsOwn)
{
    std::vector<std::thread::id> threads;
    EXPECT_TRUE(goThrough(1000, 2000, threads));
    EXPECT_NE(threads.front(), std::this_thread::get_id());
    EXPECT_EQ(threads.front(), threads.back());
}

// The sanitizers reserve address space as they go, which the limit of this test would refuse them.
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)

/// Leaves the process room on its heap but none for another stack.
void takeTheRoomForThreads()
{
    mallopt(M_MMAP_THRESHOLD, 32 << 20);
    mallopt(M_TRIM_THRESHOLD, 64 << 20);
    void *volatile room = std::malloc(std::size_t{16} << 20);
    std::free(room);
    std::ifstream status("/proc/self/statm");
    std::uint64_t pages = 0;
    status >> pages;
    const rlim_t bytes = pages * static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE));
    const rlimit limit{bytes, bytes};
    if (setrlimit(RLIMIT_AS, &limit) != 0)
        std::_Exit(3);
}

TEST(RowPipeDeathTest, usesRowsAtOnceWhereNoThreadCanBeHad)
{
    // In a process of its own, which has no stack left over from an earlier thread.
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    const auto run = [] {
        std::vector<std::thread::id> threads;
        threads.reserve(2000);
        takeTheRoomForThreads();
        const bool allWent = goThrough(1000, 2000, threads);
        const bool inPlace = threads.front() == std::this_thread::get_id();
        std::_Exit(allWent ? (inPlace ? 0 : 1) : 2);
    };
    EXPECT_EXIT(run(), testing::ExitedWithCode(0), "");
}

#endif

} // namespace
} // namespace tallowmere
