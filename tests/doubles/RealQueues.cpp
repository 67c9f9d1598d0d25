// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/doubles/RealQueues.h"

#include <poll.h>

namespace tallowmere::test {

bool runUntil(PostedMainQueue &queue, const std::function<bool()> &done, std::chrono::seconds limit)
{
    // Woken at intervals as well: @p done may turn true without a job.
    constexpr int kLookAgainMilliseconds = 20;
    const auto end = std::chrono::steady_clock::now() + limit;
    while (!done()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        pollfd wake{queue.wakeDescriptor(), POLLIN, 0};
        ::poll(&wake, 1, kLookAgainMilliseconds);
        queue.runTurn();
    }
    return true;
}

} // namespace tallowmere::test
