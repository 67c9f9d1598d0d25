// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/DecodePriority.h"

namespace tallowmere {

DecodePriority::Urgent::Urgent(DecodePriority &priority) : m_priority(priority)
{
    const std::lock_guard lock(m_priority.m_mutex);
    ++m_priority.m_urgent;
}

DecodePriority::Urgent::~Urgent()
{
    {
        const std::lock_guard lock(m_priority.m_mutex);
        --m_priority.m_urgent;
    }
    m_priority.m_passed.notify_all();
}

bool DecodePriority::letUrgentPass()
{
    std::unique_lock lock(m_mutex);
    const bool waits = m_urgent > 0;
    m_passed.wait(lock, [this] { return m_urgent == 0; });
    return waits;
}

} // namespace tallowmere
