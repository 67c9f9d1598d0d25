// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/MemoryStatus.h"

#include <QByteArray>
#include <QByteArrayView>

#include <cstdint>
#include <optional>
#include <vector>

namespace tallowmere {

/// What one bound on memory, the machine's or a cgroup's, has left. Bytes.
struct MemoryRoom
{
    std::uint64_t available = 0;
    std::uint64_t whole = 0;

    /// Under a tenth of the whole is left.
    [[nodiscard]] bool isShort() const { return available < whole / 10; }
    friend bool operator==(const MemoryRoom &, const MemoryRoom &) = default;
};

/// From the text of /proc/meminfo. Nothing when it lacks MemTotal or MemAvailable.
[[nodiscard]] std::optional<MemoryRoom> machineRoom(QByteArrayView meminfo);
/// The path of the version 2 hierarchy in the text of /proc/self/cgroup; empty when there is none.
[[nodiscard]] QByteArray unifiedCgroupPath(QByteArrayView cgroup);
/// From the texts of one cgroup's memory.max, memory.high, memory.current and memory.stat. File cache that is not in
/// use counts as room, since the kernel drops it first. Nothing when the cgroup has no limit.
[[nodiscard]] std::optional<MemoryRoom> cgroupRoom(QByteArrayView max, QByteArrayView high, QByteArrayView current,
                                                   QByteArrayView stat);
/// From the text of /proc/self/statm: bytes that are this process's alone.
[[nodiscard]] std::uint64_t ownBytes(QByteArrayView statm, std::uint64_t pageBytes);
/// How much a cache may keep so that a fifth of every bound that is short becomes free again, given that the process
/// holds @p own bytes, most of them that cache. Never under 64 MiB, the largest single image. Nothing when none is
/// short.
[[nodiscard]] std::optional<std::size_t> cacheBudgetFor(const std::vector<MemoryRoom> &rooms, std::uint64_t own);

/// Asks /proc and the version 2 cgroup hierarchy. Reads a few small files at each call, well under a millisecond.
class LinuxMemoryStatus final : public MemoryStatus
{
public:
    /// Where the two file systems are mounted; tests put up their own.
    explicit LinuxMemoryStatus(QByteArray proc = "/proc", QByteArray cgroupRoot = "/sys/fs/cgroup");

    [[nodiscard]] std::optional<std::size_t> cacheBudget() override;

private:
    const QByteArray m_proc;
    const QByteArray m_cgroupRoot;
};

} // namespace tallowmere
