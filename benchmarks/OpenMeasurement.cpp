// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "benchmarks/Measurements.h"
#include "benchmarks/PlainDecoders.h"
#include "tests/desktop/Waiting.h"

namespace tallowmere::bench {
namespace {

std::optional<double> timeOpen(const Station &station, const Photo &photo)
{
    const auto begin = Clock::now();
    station.application().open(photo.file);
    return station.watch.until(photo.centre, begin);
}

void measureNotRunning(const Station &station, const PhotoStore &store, Results &results)
{
    for (const Photo &photo : store.photos()) {
        const Row row{"Bus Open, program not running, " + nameOf(station.mode), photo.label};
        if (!results.wants(row, kProgram))
            continue;
        station.endApplication();
        results.add(row, kProgram, timeOpen(station, photo));
        station.endApplication();
        const auto window = station.timeToVisible(floorWindow(), kMarkers.front());
        results.add(row, kFloor, window ? std::optional(*window + timePlainDecode(photo.file)) : std::nullopt);
    }
}

/// A running window's answer to a key, with a decode before it.
class RunningFloor
{
public:
    explicit RunningFloor(const Station &station) : m_key(answerToKey(station)) {}
    [[nodiscard]] std::optional<double> with(const Photo &photo) const
    {
        return m_key ? std::optional(*m_key + timePlainDecode(photo.file)) : std::nullopt;
    }

private:
    static std::optional<double> answerToKey(const Station &station)
    {
        const auto window = station.startAndRest(floorWindow(), kMarkers[0]);
        return window ? station.timeKey(desktop::key::kRight, kMarkers[1]) : std::nullopt;
    }

    std::optional<double> m_key;
};

void measureRunning(const Station &station, const PhotoStore &store, Results &results)
{
    const auto rowOf = [&](const Photo &photo) {
        return Row{"Bus Open, program running, " + nameOf(station.mode), photo.label};
    };
    std::vector<Photo> wanted = store.photos();
    std::erase_if(wanted, [&](const Photo &photo) { return !results.wants(rowOf(photo), kProgram); });
    if (wanted.empty())
        return;
    const RunningFloor floor(station);
    // Between two of them another picture is shown, or nothing could be seen to change.
    const Photo other = store.alone(1);
    const auto program = station.startAndRest(ownViewer().command(other.file), other.centre);
    for (const Photo &photo : wanted) {
        if (!program || !desktop::waitUntil([&] { return station.watch.shows(other.centre); })) {
            results.add(rowOf(photo), kProgram, std::nullopt);
            continue;
        }
        station.waitForRest(*program);
        results.add(rowOf(photo), kProgram, timeOpen(station, photo));
        results.add(rowOf(photo), kFloor, floor.with(photo));
        station.application().open(other.file);
    }
}

} // namespace

void measureOpens(const Station &station, const PhotoStore &store, Results &results)
{
    measureNotRunning(station, store, results);
    measureRunning(station, store, results);
}

} // namespace tallowmere::bench
