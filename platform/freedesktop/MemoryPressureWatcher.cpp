// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "platform/freedesktop/MemoryPressureWatcher.h"

#include "platform/LinuxMemoryStatus.h"

#include <QByteArray>

#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <array>
#include <charconv>
#include <string_view>

namespace tallowmere {

namespace {

constexpr const char *kMachinePressure = "/proc/pressure/memory";
/// 150 ms of stalls in 2 s. An ordinary user is given only windows that are multiples of 2 s.
constexpr std::string_view kTrigger = "some 150000 2000000";
/// The same share, in percent, for the average that is read where the trigger is refused.
constexpr double kShortFromAverage = 7.5;

QByteArray readSmallFile(const QByteArray &path)
{
    const int fd = open(path.constData(), O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return {};
    std::array<char, 4096> buffer{};
    const ssize_t size = read(fd, buffer.data(), buffer.size());
    close(fd);
    return size > 0 ? QByteArray(buffer.data(), size) : QByteArray();
}

/// The machine's file and, in a container or a desktop's slice, that of our own cgroup.
std::vector<QByteArray> pressureFiles()
{
    std::vector<QByteArray> files{kMachinePressure};
    const QByteArray cgroup = unifiedCgroupPath(readSmallFile("/proc/self/cgroup"));
    if (!cgroup.isEmpty())
        files.push_back("/sys/fs/cgroup" + cgroup + "/memory.pressure");
    return files;
}

std::vector<int> openPressureTriggers()
{
    std::vector<int> triggers;
    for (const QByteArray &file : pressureFiles()) {
        const int fd = open(file.constData(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
        if (fd < 0)
            continue;
        if (write(fd, kTrigger.data(), kTrigger.size()) < 0)
            close(fd);
        else
            triggers.push_back(fd);
    }
    return triggers;
}

bool averageIsShort()
{
    for (const QByteArray &file : pressureFiles()) {
        if (pressureAverage10(readSmallFile(file)).value_or(0.0) >= kShortFromAverage)
            return true;
    }
    return false;
}

} // namespace

std::optional<double> pressureAverage10(QByteArrayView text)
{
    constexpr std::string_view kKey = "some avg10=";
    const std::string_view all(text.data(), static_cast<std::size_t>(text.size()));
    const std::size_t key = all.find(kKey);
    if (key == std::string_view::npos)
        return std::nullopt;
    const std::string_view number = all.substr(key + kKey.size());
    double value = 0.0;
    if (std::from_chars(number.data(), number.data() + number.size(), value).ec != std::errc())
        return std::nullopt;
    return value;
}

MemoryPressureWatcher::Source MemoryPressureWatcher::systemSource(MemoryStatus &status)
{
    return {openPressureTriggers, [&status] { return averageIsShort() || status.cacheBudget().has_value(); }};
}

MemoryPressureWatcher::MemoryPressureWatcher(Source source, std::function<bool()> cacheIsBig,
                                             std::function<void()> shortNow, std::chrono::milliseconds interval)
    : m_source(std::move(source)), m_cacheIsBig(std::move(cacheIsBig)), m_shortNow(std::move(shortNow)),
      m_interval(interval), m_stopFd(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)), m_thread([this] { watch(); })
{}

MemoryPressureWatcher::~MemoryPressureWatcher()
{
    eventfd_write(m_stopFd, 1);
    m_thread.join();
    close(m_stopFd);
}

void MemoryPressureWatcher::watch() const
{
    pthread_setname_np(pthread_self(), "tallowmere.mem");
    const std::vector<int> triggers = m_source.openTriggers();
    const int timeout = triggers.empty() ? static_cast<int>(m_interval.count()) : -1;
    std::vector<pollfd> polled{{m_stopFd, POLLIN, 0}};
    for (const int trigger : triggers)
        polled.push_back({trigger, POLLPRI, 0});

    for (;;) {
        if (poll(polled.data(), polled.size(), timeout) < 0)
            continue; // interrupted
        if (polled[0].revents != 0)
            break;
        bool isShort = false;
        for (std::size_t i = 1; i < polled.size(); ++i) {
            isShort = isShort || (polled[i].revents & POLLPRI) != 0;
            if (polled[i].revents & (POLLERR | POLLNVAL))
                polled[i].fd = -1; // the cgroup is gone; poll() passes over it from now on
        }
        if (m_cacheIsBig() && (isShort || (triggers.empty() && m_source.isShort())))
            m_shortNow();
    }
    for (const int trigger : triggers)
        close(trigger);
}

} // namespace tallowmere
