// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "benchmarks/Measurements.h"
#include "tests/desktop/Folders.h"

#include <sstream>
#include <thread>

namespace tallowmere::bench {
namespace {

/// In millions of bytes; nothing when the process is gone.
std::optional<double> proportionalSetSize(pid_t process)
{
    std::istringstream lines(desktop::readFile("/proc/" + std::to_string(process) + "/smaps_rollup"));
    for (std::string word; lines >> word;) {
        double kibibytes = 0;
        if (word == "Pss:" && lines >> kibibytes)
            return kibibytes * 1024 / 1e6;
    }
    return std::nullopt;
}

std::optional<double> memoryOf(const Station &station, const std::vector<std::string> &command,
                               const desktop::Colour &colour)
{
    station.waitForBareScreen();
    const auto process = station.start(command);
    if (!station.watch.until(colour, Clock::now(), [&] { return !process->running(); }))
        return std::nullopt;
    // The time is part of what is measured: caches that are given back by then do not count.
    std::this_thread::sleep_for(std::chrono::seconds{2});
    return proportionalSetSize(process->id());
}

} // namespace

void measureMemory(const Station &station, const PhotoStore &store, const std::vector<Viewer> &peers, Results &results)
{
    const Row row{"Memory (PSS) two seconds after one picture stands", "12 MP JPEG, " + nameOf(station.mode), "MB"};
    if (!results.wants(row))
        return;
    const Photo &photo = store.photo("12 MP JPEG");
    std::vector<Viewer> viewers{ownViewer()};
    viewers.insert(viewers.end(), peers.begin(), peers.end());
    for (const Viewer &viewer : viewers) {
        if (results.wants(row, viewer.name))
            results.add(row, viewer.name, memoryOf(station, viewer.command(photo.file), photo.centre));
    }
    results.add(row, kFloor, memoryOf(station, floorWindow(), kMarkers.front()));
}

} // namespace tallowmere::bench
