// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <condition_variable>
#include <mutex>

namespace tallowmere {

/// Lets the decodes that the user waits for go before those made ahead of time: side by side on a machine with few
/// cores, they would take several times as long. Threads: any.
class DecodePriority final
{
public:
    /// One decode that the user waits for. Must not itself wait for one made ahead of time.
    class Urgent final
    {
    public:
        explicit Urgent(DecodePriority &priority);
        ~Urgent();
        Urgent(const Urgent &) = delete;
        Urgent &operator=(const Urgent &) = delete;

    private:
        DecodePriority &m_priority;
    };

    /// Returns once no urgent decode is running, and whether one was. To be called now and then by the others.
    bool letUrgentPass();

private:
    std::mutex m_mutex;
    std::condition_variable m_passed;
    int m_urgent = 0;
};

} // namespace tallowmere
