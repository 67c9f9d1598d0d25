// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "support/Queues.h"

#include <condition_variable>
#include <list>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace tallowmere {

/// Names the calling thread after @p label and gives it the nice value of @p quality, counted from the main
/// thread's. Once per thread: an ordinary user's thread can go up in nice value but never down again.
void enterJobThread(const std::string &label, QualityOfService quality);

/// A fresh thread for every job, since a used one can't be made more important again. Any thread.
class JobThreads final
{
public:
    JobThreads() = default;
    /// Waits for every job to end.
    ~JobThreads();
    JobThreads(const JobThreads &) = delete;
    JobThreads &operator=(const JobThreads &) = delete;

    /// False when the system gives no thread: @p job is untouched. The new thread begins with the caller's nice
    /// value, so the caller's is not above that of the main thread.
    [[nodiscard]] bool start(const std::string &label, QualityOfService quality, Job &job);

private:
    void joinEnded();

    std::mutex m_mutex;
    std::condition_variable m_ended;
    std::list<std::thread> m_running;
    std::vector<std::thread> m_toJoin;
};

} // namespace tallowmere
