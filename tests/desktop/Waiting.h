// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdlib>
#include <thread>

namespace tallowmere::desktop {

/// How long anything is waited for before it counts as never happening: a loaded machine is slow, not wrong.
/// TALLOWMERE_PATIENCE, in seconds, shortens it for whoever is at work on a failing test.
[[nodiscard]] inline std::chrono::milliseconds patience()
{
    constexpr std::chrono::seconds kUsual{60};
    const char *seconds = std::getenv("TALLOWMERE_PATIENCE");
    return seconds ? std::chrono::seconds{std::atoi(seconds)} : kUsual;
}

/// True as soon as @p condition holds; false when it did not within @p limit.
template <typename Condition>
[[nodiscard]] bool waitUntil(Condition condition, std::chrono::milliseconds limit = patience())
{
    const auto deadline = std::chrono::steady_clock::now() + limit;
    while (!condition()) {
        if (std::chrono::steady_clock::now() >= deadline)
            return condition();
        std::this_thread::sleep_for(std::chrono::milliseconds{10});
    }
    return true;
}

} // namespace tallowmere::desktop
