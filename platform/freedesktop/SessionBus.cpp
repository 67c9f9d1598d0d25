// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "platform/freedesktop/SessionBus.h"

#include <poll.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <ctime>

namespace tallowmere {

namespace {

using Clock = std::chrono::steady_clock;

/// How long poll() may sleep: until @p deadline or the connection's own next time-out, in ms, rounded up.
int pollTimeout(sd_bus *bus, Clock::time_point deadline)
{
    constexpr std::int64_t kLongest = 60'000;
    const auto untilDeadline = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
    std::int64_t wait = std::clamp<std::int64_t>(untilDeadline, 0, kLongest);
    std::uint64_t busTime = UINT64_MAX;
    if (sd_bus_get_timeout(bus, &busTime) >= 0 && busTime != UINT64_MAX) {
        timespec now{};
        clock_gettime(CLOCK_MONOTONIC, &now);
        const auto nowMicroseconds =
            static_cast<std::uint64_t>(now.tv_sec) * 1'000'000 + static_cast<std::uint64_t>(now.tv_nsec) / 1000;
        const std::uint64_t left = busTime > nowMicroseconds ? (busTime - nowMicroseconds + 999) / 1000 : 0;
        wait = std::min(wait, static_cast<std::int64_t>(std::min<std::uint64_t>(left, kLongest)));
    }
    return static_cast<int>(wait);
}

} // namespace

BusPtr openSessionBus(const QByteArray &address)
{
    sd_bus *raw = nullptr;
    if (address.isEmpty())
        return BusPtr(sd_bus_open_user(&raw) < 0 ? nullptr : raw);
    if (sd_bus_new(&raw) < 0)
        return nullptr;
    BusPtr bus(raw);
    if (sd_bus_set_address(raw, address.constData()) < 0 || sd_bus_set_bus_client(raw, 1) < 0 || sd_bus_start(raw) < 0)
        return nullptr;
    return bus;
}

bool serveUntil(sd_bus *bus, Clock::time_point deadline, int wakeFd, const std::function<bool()> &done)
{
    for (;;) {
        int processed = 0;
        do {
            processed = sd_bus_process(bus, nullptr);
            if (done())
                return true;
        } while (processed > 0);
        if (processed < 0 || Clock::now() >= deadline)
            return false;

        const int events = sd_bus_get_events(bus);
        if (events < 0)
            return false;
        std::array<pollfd, 2> polled{{{sd_bus_get_fd(bus), static_cast<short>(events), 0}, {wakeFd, POLLIN, 0}}};
        poll(polled.data(), polled.size(), pollTimeout(bus, deadline)); // interrupted: simply goes round again
    }
}

} // namespace tallowmere
