// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "platform/LinuxMemoryStatus.h"

#include <QList>

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <utility>

namespace tallowmere {
namespace {

std::optional<std::uint64_t> number(QByteArrayView text)
{
    bool ok = false;
    const qulonglong value = text.trimmed().toULongLong(&ok);
    return ok ? std::optional<std::uint64_t>(value) : std::nullopt;
}

/// The number that follows @p name at the beginning of a line.
std::optional<std::uint64_t> entry(QByteArrayView text, QByteArrayView name)
{
    while (!text.isEmpty()) {
        const qsizetype lineFeed = text.indexOf('\n');
        const QByteArrayView line = lineFeed < 0 ? text : text.first(lineFeed);
        text = lineFeed < 0 ? QByteArrayView() : text.sliced(lineFeed + 1);
        if (!line.startsWith(name))
            continue;
        const QByteArrayView rest = line.sliced(name.size()).trimmed();
        const qsizetype blank = rest.indexOf(' ');
        return number(blank < 0 ? rest : rest.first(blank));
    }
    return std::nullopt;
}

QByteArray contents(const QByteArray &path)
{
    const int file = ::open(path.constData(), O_RDONLY | O_CLOEXEC);
    if (file < 0)
        return {};
    QByteArray text(16 * 1024, Qt::Uninitialized); // more than any of these files holds
    const ssize_t size = ::read(file, text.data(), static_cast<std::size_t>(text.size()));
    ::close(file);
    text.truncate(std::max<ssize_t>(size, 0));
    return text;
}

QByteArray parent(const QByteArray &cgroupPath)
{
    return cgroupPath == "/" ? QByteArray() : cgroupPath.first(std::max<qsizetype>(cgroupPath.lastIndexOf('/'), 1));
}

} // namespace

std::optional<MemoryRoom> machineRoom(QByteArrayView meminfo)
{
    const auto total = entry(meminfo, "MemTotal:");
    const auto available = entry(meminfo, "MemAvailable:");
    if (!total || !available)
        return std::nullopt;
    return MemoryRoom{*available * 1024, *total * 1024};
}

QByteArray unifiedCgroupPath(QByteArrayView cgroup)
{
    constexpr QByteArrayView kVersion2("0::");
    while (!cgroup.isEmpty()) {
        const qsizetype lineFeed = cgroup.indexOf('\n');
        const QByteArrayView line = lineFeed < 0 ? cgroup : cgroup.first(lineFeed);
        cgroup = lineFeed < 0 ? QByteArrayView() : cgroup.sliced(lineFeed + 1);
        if (line.startsWith(kVersion2))
            return line.sliced(kVersion2.size()).toByteArray();
    }
    return {};
}

std::optional<MemoryRoom> cgroupRoom(QByteArrayView max, QByteArrayView high, QByteArrayView current,
                                     QByteArrayView stat)
{
    // "max" is no number and stands for no limit.
    const auto hard = number(max);
    const auto soft = number(high);
    const auto used = number(current);
    if (!used || (!hard && !soft))
        return std::nullopt;
    const std::uint64_t limit = std::min(hard.value_or(UINT64_MAX), soft.value_or(UINT64_MAX));
    const std::uint64_t idleCache = entry(stat, "inactive_file ").value_or(0);
    const std::uint64_t held = *used - std::min(*used, idleCache);
    return MemoryRoom{limit - std::min(limit, held), limit};
}

std::uint64_t ownBytes(QByteArrayView statm, std::uint64_t pageBytes)
{
    const QList<QByteArray> pages = statm.toByteArray().split(' ');
    if (pages.size() < 3)
        return 0;
    const std::uint64_t resident = number(pages[1]).value_or(0);
    const std::uint64_t shared = number(pages[2]).value_or(0);
    return (resident - std::min(resident, shared)) * pageBytes;
}

std::optional<std::size_t> cacheBudgetFor(const std::vector<MemoryRoom> &rooms, std::uint64_t own)
{
    constexpr std::uint64_t kLeastBytes = std::uint64_t{64} << 20;
    std::optional<std::size_t> budget;
    for (const MemoryRoom &room : rooms) {
        if (!room.isShort())
            continue;
        const std::uint64_t reach = own + room.available;
        const std::uint64_t wanted = room.whole / 5;
        const std::uint64_t keep = std::max(reach - std::min(reach, wanted), kLeastBytes);
        budget = std::min<std::size_t>(budget.value_or(SIZE_MAX), keep);
    }
    return budget;
}

LinuxMemoryStatus::LinuxMemoryStatus(QByteArray proc, QByteArray cgroupRoot)
    : m_proc(std::move(proc)), m_cgroupRoot(std::move(cgroupRoot))
{}

std::optional<std::size_t> LinuxMemoryStatus::cacheBudget()
{
    std::vector<MemoryRoom> rooms;
    if (const auto machine = machineRoom(contents(m_proc + "/meminfo")))
        rooms.push_back(*machine);

    // A limit anywhere above binds as well, and in a cgroup namespace the root itself may have one. Version 1
    // hierarchies have no such path: there the machine's figure stands.
    for (QByteArray path = unifiedCgroupPath(contents(m_proc + "/self/cgroup")); !path.isEmpty(); path = parent(path)) {
        const QByteArray folder = m_cgroupRoot + (path == "/" ? QByteArray() : path);
        const QByteArray max = contents(folder + "/memory.max");
        const QByteArray high = contents(folder + "/memory.high");
        if (!number(max) && !number(high))
            continue;
        const auto room =
            cgroupRoom(max, high, contents(folder + "/memory.current"), contents(folder + "/memory.stat"));
        if (room)
            rooms.push_back(*room);
    }
    const bool anyShort =
        std::any_of(rooms.begin(), rooms.end(), [](const MemoryRoom &room) { return room.isShort(); });
    if (!anyShort)
        return std::nullopt;
    const auto pageBytes = static_cast<std::uint64_t>(::sysconf(_SC_PAGESIZE));
    return cacheBudgetFor(rooms, ownBytes(contents(m_proc + "/self/statm"), pageBytes));
}

} // namespace tallowmere
