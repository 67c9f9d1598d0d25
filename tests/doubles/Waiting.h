// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <unistd.h>

#include <chrono>
#include <condition_variable>
#include <fstream>
#include <functional>
#include <mutex>
#include <sstream>
#include <string>
#include <thread>

namespace tallowmere::test {

inline constexpr std::chrono::seconds kGenerousLimit{30};

/// Something that happens once; whoever waits for it gives up after a generous limit.
class Event final
{
public:
    void set()
    {
        const std::lock_guard lock(m_mutex);
        m_set = true;
        m_changed.notify_all();
    }
    [[nodiscard]] bool wait()
    {
        std::unique_lock lock(m_mutex);
        // Against the system's clock: the thread sanitizer of GCC 12 does not know how the steady one is waited on.
        return m_changed.wait_until(lock, std::chrono::system_clock::now() + kGenerousLimit, [this] { return m_set; });
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_set = false;
};

/// Looks until @p condition holds. False when the limit passes first.
[[nodiscard]] inline bool eventually(const std::function<bool()> &condition)
{
    const auto end = std::chrono::steady_clock::now() + kGenerousLimit;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        std::this_thread::yield();
    }
    return true;
}

/// As the kernel has it.
[[nodiscard]] inline std::string threadName()
{
    std::ifstream file("/proc/self/task/" + std::to_string(::gettid()) + "/comm");
    std::string name;
    std::getline(file, name);
    return name;
}

/// The 19th field of the thread's stat file.
[[nodiscard]] inline int niceOfThisThread()
{
    std::ifstream file("/proc/self/task/" + std::to_string(::gettid()) + "/stat");
    std::string line;
    std::getline(file, line);
    std::istringstream fields(line.substr(line.rfind(')') + 1)); // the name may hold blanks
    std::string field;
    for (int i = 3; i <= 18; ++i)
        fields >> field;
    int nice = 0;
    fields >> nice;
    return nice;
}

} // namespace tallowmere::test
