// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArrayView>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <thread>
#include <vector>

namespace tallowmere {

class MemoryStatus;

/// Percent of the last ten seconds in which some process stalled for memory, from the text of a PSI file.
[[nodiscard]] std::optional<double> pressureAverage10(QByteArrayView text);

/// Tells when memory has become short, on a thread of its own that sleeps in between.
///
/// The kernel wakes it (PSI trigger); where it refuses to, the watcher looks every two seconds, but only while there
/// is a cache worth shrinking.
class MemoryPressureWatcher final
{
public:
    /// What it asks of the system; a test puts in its own.
    struct Source
    {
        /// Descriptors that report POLLPRI when memory is short; owned by the watcher. Empty: the kernel refuses.
        std::function<std::vector<int>()> openTriggers;
        /// Asked only without triggers.
        std::function<bool()> isShort;
    };
    /// The machine's and our cgroup's pressure, and @p status, which outlives the watcher.
    [[nodiscard]] static Source systemSource(MemoryStatus &status);

    /// Both functions run on the watcher's thread. @p shortNow: at most once per @p interval and only while
    /// @p cacheIsBig answers true.
    MemoryPressureWatcher(Source source, std::function<bool()> cacheIsBig, std::function<void()> shortNow,
                          std::chrono::milliseconds interval = std::chrono::milliseconds(2000));
    ~MemoryPressureWatcher();
    MemoryPressureWatcher(const MemoryPressureWatcher &) = delete;
    MemoryPressureWatcher &operator=(const MemoryPressureWatcher &) = delete;

private:
    void watch() const;

    const Source m_source;
    const std::function<bool()> m_cacheIsBig;
    const std::function<void()> m_shortNow;
    const std::chrono::milliseconds m_interval;
    const int m_stopFd;
    std::thread m_thread;
};

} // namespace tallowmere
