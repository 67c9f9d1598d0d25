// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/PrefetchPlan.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace tallowmere {
namespace {

using enum QualityOfService;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

bool nothing(std::int64_t)
{
    return false;
}

std::vector<std::int64_t> indices(const std::vector<PlannedPrefetch> &plan)
{
    std::vector<std::int64_t> result;
    for (const auto &entry : plan)
        result.push_back(entry.index);
    return result;
}

TEST(PrefetchPlan, fromTheFirstOfTenGoesForwardWithFallingPriority)
{
    EXPECT_THAT(prefetchPlan(10, 0, 2, 20, nothing),
                ElementsAre(PlannedPrefetch{1, userInitiated}, PlannedPrefetch{2, userInitiated},
                            PlannedPrefetch{3, standard}, PlannedPrefetch{4, standard}, PlannedPrefetch{5, standard},
                            PlannedPrefetch{6, utility}, PlannedPrefetch{7, utility}, PlannedPrefetch{8, utility},
                            PlannedPrefetch{9, utility}));
}

TEST(PrefetchPlan, inTheMiddleOfAHundredAlternatesThenGoesOnAhead)
{
    std::vector<std::int64_t> expected{49, 51, 48, 52};
    for (std::int64_t index = 53; index <= 70; ++index)
        expected.push_back(index);
    EXPECT_THAT(indices(prefetchPlan(100, 50, 2, 20, nothing)), ElementsAreArray(expected));
}

TEST(PrefetchPlan, bothSidesHaveThePriorityOfTheirDistance)
{
    for (const auto &[index, quality] : prefetchPlan(100, 50, 7, 7, nothing)) {
        const auto distance = std::abs(index - 50);
        EXPECT_EQ(quality, distance <= 2 ? userInitiated : distance <= 5 ? standard : utility) << index;
    }
}

TEST(PrefetchPlan, aWindowOfNothingPlansNothing)
{
    EXPECT_THAT(prefetchPlan(10, 5, 0, 0, nothing), IsEmpty());
}

TEST(PrefetchPlan, stopsAtBothEndsOfTheList)
{
    EXPECT_THAT(indices(prefetchPlan(5, 4, 2, 20, nothing)), ElementsAre(3, 2));
    EXPECT_THAT(indices(prefetchPlan(3, 1, 2, 20, nothing)), ElementsAre(0, 2));
}

TEST(PrefetchPlan, skipsWhatIsCached)
{
    const auto even = [](std::int64_t index) { return index % 2 == 0; };
    EXPECT_THAT(indices(prefetchPlan(10, 4, 2, 4, even)), ElementsAre(3, 5, 7));
}

TEST(PrefetchPlan, priorityGoesByDistanceNotByPlaceInTheOrder)
{
    const auto near = [](std::int64_t index) { return index < 7; };
    EXPECT_THAT(prefetchPlan(10, 0, 2, 20, near),
                ElementsAre(PlannedPrefetch{7, utility}, PlannedPrefetch{8, utility}, PlannedPrefetch{9, utility}));
}

TEST(PrefetchPlan, anIndexBeyondTheListPlansNothing)
{
    EXPECT_THAT(prefetchPlan(10, 13, 2, 20, nothing), IsEmpty());
    EXPECT_THAT(prefetchPlan(0, 0, 2, 20, nothing), IsEmpty());
    EXPECT_THAT(prefetchPlan(10, -21, 2, 20, nothing), IsEmpty());
}

TEST(PrefetchPlan, anIndexJustOutsideStillReachesIntoTheList)
{
    EXPECT_THAT(indices(prefetchPlan(10, 10, 2, 20, nothing)), ElementsAre(9, 8));
    EXPECT_THAT(indices(prefetchPlan(10, -1, 2, 3, nothing)), ElementsAre(0, 1, 2));
}

TEST(PrefetchPlan, extremeIndicesDoNotOverflow)
{
    constexpr auto kLeast = std::numeric_limits<std::int64_t>::min();
    constexpr auto kMost = std::numeric_limits<std::int64_t>::max();
    EXPECT_THAT(prefetchPlan(10, kLeast, 100, 100, nothing), IsEmpty());
    EXPECT_THAT(prefetchPlan(10, kMost, 100, 100, nothing), IsEmpty());
    EXPECT_THAT(prefetchPlan(3, 1, std::numeric_limits<int>::max(), std::numeric_limits<int>::max(), nothing),
                testing::SizeIs(2));
    EXPECT_THAT(prefetchPlan(3, 1, -5, -5, nothing), IsEmpty());
}

} // namespace
} // namespace tallowmere
