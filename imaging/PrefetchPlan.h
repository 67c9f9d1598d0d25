// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "support/Queues.h"

#include <cstdint>
#include <functional>
#include <vector>

namespace tallowmere {

/// One neighbour to be decoded ahead of time.
struct PlannedPrefetch
{
    std::int64_t index = 0;
    QualityOfService quality = QualityOfService::utility;

    friend bool operator==(const PlannedPrefetch &, const PlannedPrefetch &) = default;
};

/// The neighbours of @p currentIndex among @p count files, nearest first, at equal distance the one before it first:
/// at most @p before and @p after of them to either side, without itself and without those that are @p cached. An
/// index outside the list is allowed; what lies around it still counts.
[[nodiscard]] std::vector<PlannedPrefetch> prefetchPlan(std::int64_t count, std::int64_t currentIndex, int before,
                                                        int after, const std::function<bool(std::int64_t)> &cached);

/// How much a neighbour at @p distance (1 or more) matters.
[[nodiscard]] QualityOfService prefetchQuality(std::uint64_t distance);

} // namespace tallowmere
