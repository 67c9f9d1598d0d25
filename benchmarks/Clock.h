// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>

namespace tallowmere::bench {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

[[nodiscard]] inline double millisecondsSince(Clock::time_point begin)
{
    return Milliseconds(Clock::now() - begin).count();
}

/// How long @p work takes, in milliseconds.
template <typename Work>
[[nodiscard]] double timeOf(Work work)
{
    const auto begin = Clock::now();
    work();
    return millisecondsSince(begin);
}

} // namespace tallowmere::bench
