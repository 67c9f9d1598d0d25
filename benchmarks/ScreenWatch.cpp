// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "benchmarks/ScreenWatch.h"

#include "benchmarks/PhotoStore.h"
#include "tests/desktop/Folders.h"

#include <sys/socket.h>
#include <xcb/xcb.h>

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <thread>

namespace tallowmere::bench {
namespace {

constexpr std::chrono::microseconds kShortestPause{200};
constexpr int kPauseShare = 500;
constexpr std::chrono::seconds kLimit{10};
constexpr int kLooksPerQuestion = 64;

/// Nanoseconds of processor time.
double processorTimeOf(pid_t process)
{
    return std::strtod(desktop::readFile("/proc/" + std::to_string(process) + "/schedstat").c_str(), nullptr);
}

double ownProcessorTime()
{
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e9 + static_cast<double>(time.tv_nsec);
}

pid_t serverOf(const desktop::VirtualDesktop &desktop)
{
    ucred peer{};
    socklen_t size = sizeof peer;
    ::getsockopt(xcb_get_file_descriptor(desktop.connection()), SOL_SOCKET, SO_PEERCRED, &peer, &size);
    return peer.pid;
}

} // namespace

ScreenWatch::ScreenWatch(const desktop::VirtualDesktop &desktop)
    : m_desktop(desktop), m_screen(desktop), m_middle(desktop.screen().centre())
{}

bool ScreenWatch::shows(const desktop::Colour &colour) const
{
    return alike(m_screen.at(m_middle), colour, kMarkerTolerance);
}

std::optional<double> ScreenWatch::until(const desktop::Colour &colour, Clock::time_point since,
                                         const std::function<bool()> &hopeless) const
{
    for (int looks = 1;; ++looks) {
        if (shows(colour))
            return millisecondsSince(since);
        const auto passed = Clock::now() - since;
        if (passed > kLimit || (hopeless && looks % kLooksPerQuestion == 0 && hopeless()))
            return std::nullopt;
        std::this_thread::sleep_for(std::max<Clock::duration>(kShortestPause, passed / kPauseShare));
    }
}

WatchCost ScreenWatch::cost() const
{
    const pid_t server = serverOf(m_desktop);
    const double ownBefore = ownProcessorTime();
    const double serverBefore = processorTimeOf(server);
    const auto begin = Clock::now();
    int looks = 0;
    constexpr double kDuration = 1000;
    for (; millisecondsSince(begin) < kDuration; ++looks) {
        [[maybe_unused]] const bool seen = shows({1, 2, 3});
        std::this_thread::sleep_for(kShortestPause);
    }
    const double passed = millisecondsSince(begin);
    constexpr double kNanosecondsPerMillisecond = 1e6;
    return {passed / looks, (ownProcessorTime() - ownBefore) / (passed * kNanosecondsPerMillisecond),
            (processorTimeOf(server) - serverBefore) / (passed * kNanosecondsPerMillisecond)};
}

} // namespace tallowmere::bench
