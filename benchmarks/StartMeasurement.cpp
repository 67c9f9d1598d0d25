// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "benchmarks/Measurements.h"
#include "benchmarks/PlainDecoders.h"

#include <algorithm>

namespace tallowmere::bench {
namespace {

constexpr std::size_t kLargeFolder = 2000;

/// What the floor window and a plain decode take, one after the other.
std::optional<double> floorOf(const Station &station, const Photo &photo)
{
    const auto window = station.timeToVisible(floorWindow(), kMarkers.front());
    if (!window)
        return std::nullopt;
    return *window + timePlainDecode(photo.file);
}

/// The peers read no more than JPEG everywhere, and are asked for the two sizes that cameras and phones make most.
bool isForPeers(const Photo &photo)
{
    return photo.label == "12 MP JPEG" || photo.label == "24 MP JPEG";
}

} // namespace

void measureStarts(const Station &station, const PhotoStore &store, const std::vector<Viewer> &peers, int round,
                   Results &results)
{
    auto photos = store.photos();
    photos.push_back(store.among(kLargeFolder));
    for (const Photo &photo : photos) {
        const Row row{"Start to visible, " + nameOf(station.mode), photo.label};
        if (!results.wants(row))
            continue;
        std::vector<Viewer> viewers{ownViewer()};
        if (isForPeers(photo))
            viewers.insert(viewers.end(), peers.begin(), peers.end());
        // Everybody is once behind everybody: who starts behind a slow one may find another machine.
        std::ranges::rotate(viewers, viewers.begin() + round % static_cast<int>(viewers.size()));
        for (const Viewer &viewer : viewers) {
            if (results.wants(row, viewer.name))
                results.add(row, viewer.name, station.timeToVisible(viewer.command(photo.file), photo.centre));
        }
        results.add(row, kFloor, floorOf(station, photo));
    }
}

} // namespace tallowmere::bench
