// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "platform/LinuxMemoryStatus.h"
#include "tests/doubles/TestFolder.h"

#include <gtest/gtest.h>

namespace tallowmere {
namespace {

using test::TestFolder;

constexpr std::uint64_t operator""_MiB(unsigned long long count)
{
    return count << 20;
}
constexpr std::uint64_t operator""_GiB(unsigned long long count)
{
    return count << 30;
}

TEST(MachineRoom, isReadFromMeminfo)
{
    const auto room = machineRoom("MemTotal:       16308040 kB\n"
                                  "MemFree:          520112 kB\n"
                                  "MemAvailable:    9114912 kB\n"
                                  "SwapTotal:       2097148 kB\n");
    EXPECT_EQ(room, (MemoryRoom{std::uint64_t{9114912} * 1024, std::uint64_t{16308040} * 1024}));
}

TEST(MachineRoom, isUnknownWithoutBothFigures)
{
    EXPECT_FALSE(machineRoom("").has_value());
    EXPECT_FALSE(machineRoom("MemTotal: 16308040 kB\nMemFree: 1 kB\n").has_value());
    EXPECT_FALSE(machineRoom("MemTotal: lots kB\nMemAvailable: some kB\n").has_value());
}

TEST(CgroupPath, isThatOfTheUnifiedHierarchy)
{
    EXPECT_EQ(unifiedCgroupPath("0::/user.slice/app.scope\n"), "/user.slice/app.scope");
    EXPECT_EQ(unifiedCgroupPath("4:memory:/other\n0::/a\n1:name=systemd:/b\n"), "/a");
    EXPECT_EQ(unifiedCgroupPath("0::/\n"), "/");
    EXPECT_EQ(unifiedCgroupPath("4:memory:/docker/x\n"), "");
    EXPECT_EQ(unifiedCgroupPath(""), "");
}

TEST(CgroupRoom, isTheLimitLessWhatIsHeld)
{
    EXPECT_EQ(cgroupRoom("1000\n", "max\n", "900\n", ""), (MemoryRoom{100, 1000}));
    EXPECT_EQ(cgroupRoom("max\n", "800\n", "900\n", ""), (MemoryRoom{0, 800}));
    EXPECT_EQ(cgroupRoom("1000\n", "800\n", "300\n", ""), (MemoryRoom{500, 800})) << "the lower limit binds";
}

TEST(CgroupRoom, countsIdleFileCacheAsFree)
{
    EXPECT_EQ(cgroupRoom("1000", "max", "900", "anon 100\ninactive_file 750\nactive_file 20\n"),
              (MemoryRoom{850, 1000}));
    EXPECT_EQ(cgroupRoom("1000", "max", "900", "inactive_file 5000\n"), (MemoryRoom{1000, 1000}));
}

TEST(CgroupRoom, isUnknownWithoutALimit)
{
    EXPECT_FALSE(cgroupRoom("max\n", "max\n", "900\n", "").has_value());
    EXPECT_FALSE(cgroupRoom("", "", "", "").has_value());
    EXPECT_FALSE(cgroupRoom("1000", "max", "", "").has_value());
}

TEST(MemoryRoom, isShortUnderATenthOfTheWhole)
{
    EXPECT_FALSE((MemoryRoom{100, 1000}.isShort()));
    EXPECT_TRUE((MemoryRoom{99, 1000}.isShort()));
    EXPECT_FALSE((MemoryRoom{0, 0}.isShort()));
}

TEST(OwnBytes, areResidentPagesThatNobodyShares)
{
    EXPECT_EQ(ownBytes("5000 300 100 10 0 200 0\n", 4096), 200U * 4096);
    EXPECT_EQ(ownBytes("5000 100 300 10 0 200 0\n", 4096), 0U);
    EXPECT_EQ(ownBytes("", 4096), 0U);
}

TEST(CacheBudget, isUnlimitedWhileNothingIsShort)
{
    EXPECT_FALSE(cacheBudgetFor({}, 1_GiB).has_value());
    EXPECT_FALSE(cacheBudgetFor({{2_GiB, 16_GiB}, {1_GiB, 4_GiB}}, 1_GiB).has_value());
}

TEST(CacheBudget, leavesAFifthOfTheWholeFree)
{
    // 5 GiB ours and half a GiB left of 10: keeping 3.5 GiB gives 2 GiB of room.
    EXPECT_EQ(cacheBudgetFor({{512_MiB, 10_GiB}}, 5_GiB), 5_GiB + 512_MiB - 2_GiB);
}

TEST(CacheBudget, followsTheTightestBound)
{
    EXPECT_EQ(cacheBudgetFor({{50_MiB, 4000_MiB}, {900_MiB, 10_GiB}, {1_GiB, 4_GiB}}, 4000_MiB),
              4000_MiB + 900_MiB - 2_GiB);
}

TEST(CacheBudget, keepsRoomForOneImageHoweverShortMemoryIs)
{
    EXPECT_EQ(cacheBudgetFor({{0, 16_GiB}}, 100_MiB), 64_MiB);
}

class Files : public testing::Test
{
protected:
    Files()
    {
        (void)m_folder.makeFolder("proc/self");
        (void)m_folder.makeFolder("cgroup/user.slice/app.scope");
        m_folder.write("proc/self/statm", "900000 262144 0 0 0 0 0\n"); // 1 GiB in pages of 4 KiB
        m_folder.write("proc/self/cgroup", "0::/user.slice/app.scope\n");
        writeMachine("8388608", "16777216");
    }
    void writeMachine(const QByteArray &available, const QByteArray &total) const
    {
        m_folder.write("proc/meminfo", "MemTotal: " + total + " kB\nMemAvailable: " + available + " kB\n");
    }
    void writeCgroup(const QByteArray &path, const QByteArray &max, const QByteArray &current) const
    {
        m_folder.write("cgroup" + path + "/memory.max", max);
        m_folder.write("cgroup" + path + "/memory.high", "max\n");
        m_folder.write("cgroup" + path + "/memory.current", current);
        m_folder.write("cgroup" + path + "/memory.stat", "inactive_file 0\n");
    }
    [[nodiscard]] bool isShort() const
    {
        return LinuxMemoryStatus(m_folder.path() + "/proc", m_folder.path() + "/cgroup").cacheBudget().has_value();
    }

    const TestFolder m_folder;
};

TEST_F(Files, plentyEverywhereMeansNoBudget)
{
    EXPECT_FALSE(isShort());
}

TEST_F(Files, aShortMachineGivesABudget)
{
    writeMachine("1048576", "16777216");
    EXPECT_TRUE(isShort());
}

TEST_F(Files, aLimitOnTheProgramsOwnCgroupCounts)
{
    writeCgroup("/user.slice/app.scope", "2147483648\n", "2100000000\n");
    EXPECT_TRUE(isShort());
    writeCgroup("/user.slice/app.scope", "max\n", "2100000000\n");
    EXPECT_FALSE(isShort());
}

TEST_F(Files, aLimitFurtherUpCounts)
{
    writeCgroup("/user.slice/app.scope", "max\n", "1\n");
    writeCgroup("/user.slice", "2147483648\n", "2100000000\n");
    EXPECT_TRUE(isShort());
}

TEST_F(Files, insideACgroupNamespaceTheRootsLimitCounts)
{
    m_folder.write("proc/self/cgroup", "0::/\n");
    EXPECT_FALSE(isShort());
    writeCgroup("", "2147483648\n", "2100000000\n");
    EXPECT_TRUE(isShort());
}

TEST_F(Files, aSystemThatTellsNothingHasPlenty)
{
    m_folder.remove("proc");
    EXPECT_FALSE(isShort());
}

TEST(LinuxMemoryStatus, readsTheRealSystem)
{
    LinuxMemoryStatus status;
    const auto budget = status.cacheBudget();
    EXPECT_TRUE(!budget || *budget >= 64_MiB);
}

} // namespace
} // namespace tallowmere
