// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/PrefetchPlan.h"

#include <algorithm>
#include <limits>

namespace tallowmere {
namespace {

std::int64_t saturatedSum(std::int64_t left, std::int64_t right)
{
    std::int64_t sum = 0;
    if (!__builtin_add_overflow(left, right, &sum))
        return sum;
    return right < 0 ? std::numeric_limits<std::int64_t>::min() : std::numeric_limits<std::int64_t>::max();
}

std::uint64_t distanceBetween(std::int64_t left, std::int64_t right)
{
    const auto difference = static_cast<std::uint64_t>(left) - static_cast<std::uint64_t>(right);
    return left >= right ? difference : 0 - difference;
}

} // namespace

QualityOfService prefetchQuality(std::uint64_t distance)
{
    if (distance <= 2)
        return QualityOfService::userInitiated;
    return distance <= 5 ? QualityOfService::standard : QualityOfService::utility;
}

std::vector<PlannedPrefetch> prefetchPlan(std::int64_t count, std::int64_t currentIndex, int before, int after,
                                          const std::function<bool(std::int64_t)> &cached)
{
    const std::int64_t lower = std::max<std::int64_t>(saturatedSum(currentIndex, -std::int64_t{before}), 0);
    const std::int64_t upper = std::min(saturatedSum(currentIndex, after), count - 1);
    std::vector<PlannedPrefetch> plan;
    for (std::int64_t index = lower; index <= upper; ++index) {
        if (index != currentIndex && !cached(index))
            plan.push_back({index, prefetchQuality(distanceBetween(index, currentIndex))});
    }
    std::stable_sort(plan.begin(), plan.end(), [&](const PlannedPrefetch &left, const PlannedPrefetch &right) {
        return distanceBetween(left.index, currentIndex) < distanceBetween(right.index, currentIndex);
    });
    return plan;
}

} // namespace tallowmere
