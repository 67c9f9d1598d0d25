// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "platform/freedesktop/MemoryPressureWatcher.h"

#include "tests/platform/freedesktop/PrivateBus.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <atomic>

namespace tallowmere {

namespace {

using namespace std::chrono_literals;
using test::eventually;

/// A pair of connected sockets: urgent data sent at one end is POLLPRI at the other, as a pressure event is.
std::array<int, 2> socketsWithUrgentData()
{
    const int listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    EXPECT_EQ(bind(listener, reinterpret_cast<const sockaddr *>(&address), size), 0);
    EXPECT_EQ(listen(listener, 1), 0);
    EXPECT_EQ(getsockname(listener, reinterpret_cast<sockaddr *>(&address), &size), 0);
    const int sender = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    EXPECT_EQ(connect(sender, reinterpret_cast<const sockaddr *>(&address), size), 0);
    const int receiver = accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
    close(listener);
    return {sender, receiver};
}

} // namespace

TEST(PressureAverage10, isTheShareOfTimeInWhichSomeProcessStalled)
{
    EXPECT_EQ(pressureAverage10("some avg10=12.34 avg60=1.00 avg300=0.10 total=99\n"
                                "full avg10=3.00 avg60=0.00 avg300=0.00 total=9\n"),
              12.34);
    EXPECT_EQ(pressureAverage10("some avg10=0.00 avg60=0.00 avg300=0.00 total=0\n"), 0.0);
}

TEST(PressureAverage10, textOfAnotherShapeSaysNothing)
{
    for (const char *text : {"", "some", "some avg10=", "some avg10=x avg60=0", "full avg10=3.00"})
        EXPECT_EQ(pressureAverage10(text), std::nullopt) << text;
}

TEST(MemoryPressureWatcher, tellsWhenTheKernelReportsPressure)
{
    const auto [sender, receiver] = socketsWithUrgentData();
    std::atomic<int> told{0};
    {
        MemoryPressureWatcher watcher(
            {[fd = receiver] { return std::vector<int>{fd}; }, [] { return false; }}, [] { return true; },
            [&told] { ++told; });
        ASSERT_EQ(send(sender, "!", 1, MSG_OOB), 1);
        EXPECT_TRUE(eventually([&told] { return told > 0; }));
    }
    EXPECT_EQ(fcntl(receiver, F_GETFD), -1); // the watcher owned it
    close(sender);
}

TEST(MemoryPressureWatcher, looksFromTimeToTimeWhereTheKernelRefuses)
{
    std::atomic<bool> isShort{false};
    std::atomic<int> looked{0};
    std::atomic<int> told{0};
    MemoryPressureWatcher watcher(
        {[] { return std::vector<int>(); },
         [&] {
        ++looked;
        return isShort.load();
         }},
        [] { return true; }, [&told] { ++told; }, 1ms);
    ASSERT_TRUE(eventually([&looked] { return looked >= 3; }));
    EXPECT_EQ(told, 0);
    isShort = true;
    EXPECT_TRUE(eventually([&told] { return told >= 2; }));
}

TEST(MemoryPressureWatcher, aSmallCacheIsNeitherLookedAfterNorShrunk)
{
    std::atomic<int> asked{0};
    std::atomic<int> looked{0};
    std::atomic<int> told{0};
    {
        MemoryPressureWatcher watcher(
            {[] { return std::vector<int>(); },
             [&looked] {
            ++looked;
            return true;
             }},
            [&asked] {
            ++asked;
            return false;
        },
            [&told] { ++told; }, 1ms);
        ASSERT_TRUE(eventually([&asked] { return asked >= 3; }));
    }
    EXPECT_EQ(looked, 0);
    EXPECT_EQ(told, 0);
}

TEST(MemoryPressureWatcher, aTriggerThatGoesAwayIsNoPressure)
{
    // A closed pipe reports an error, as a cgroup that was removed does.
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe2(ends.data(), O_CLOEXEC), 0);
    close(ends[0]);
    const auto [sender, receiver] = socketsWithUrgentData();
    std::atomic<int> told{0};
    {
        MemoryPressureWatcher watcher(
            {[broken = ends[1], fd = receiver] {
            return std::vector<int>{broken, fd};
             },
             [] { return true; }},
            [] { return true; }, [&told] { ++told; });
        ASSERT_EQ(send(sender, "!", 1, MSG_OOB), 1);
        EXPECT_TRUE(eventually([&told] { return told > 0; }));
    }
    EXPECT_EQ(fcntl(ends[1], F_GETFD), -1);
    close(sender);
}

TEST(MemoryPressureWatcher, endsAtOnceWhateverItWaitsFor)
{
    const MemoryPressureWatcher watcher(
        {[] { return std::vector<int>(); }, [] { return true; }}, [] { return true; }, [] {}, 1h);
}

} // namespace tallowmere
