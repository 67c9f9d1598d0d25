// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "support/MemoryCache.h"

#include <gtest/gtest.h>

namespace tallowmere {
namespace {

FileURL file(int number)
{
    return FileURL::fromPath("/f" + QByteArray::number(number));
}

std::shared_ptr<const int> value(int number)
{
    return std::make_shared<const int>(number);
}

TEST(MemoryCache, answersWhatWasInserted)
{
    MemoryCache<int> cache(10);
    cache.insert(file(1), value(7), 0);
    ASSERT_NE(cache.find(file(1)), nullptr);
    EXPECT_EQ(*cache.find(file(1)), 7);
    EXPECT_EQ(cache.find(file(2)), nullptr);
    EXPECT_TRUE(cache.contains(file(1)));
    EXPECT_FALSE(cache.contains(file(2)));
}

TEST(MemoryCache, holdsAtMostItsCountAndForgetsTheLeastRecentlyUsed)
{
    MemoryCache<int> cache(3);
    for (int i = 1; i <= 3; ++i)
        cache.insert(file(i), value(i), 0);
    ASSERT_NE(cache.find(file(1)), nullptr); // used again
    cache.insert(file(4), value(4), 0);
    EXPECT_EQ(cache.count(), 3U);
    EXPECT_TRUE(cache.contains(file(1)));
    EXPECT_FALSE(cache.contains(file(2)));
}

TEST(MemoryCache, askingWhetherItContainsIsNoUse)
{
    MemoryCache<int> cache(2);
    cache.insert(file(1), value(1), 0);
    cache.insert(file(2), value(2), 0);
    EXPECT_TRUE(cache.contains(file(1)));
    cache.insert(file(3), value(3), 0);
    EXPECT_FALSE(cache.contains(file(1)));
}

TEST(MemoryCache, aLaterInsertionReplacesAnEarlierOne)
{
    MemoryCache<int> cache(3);
    cache.insert(file(1), value(1), 100);
    cache.insert(file(2), value(2), 10);
    cache.insert(file(1), value(3), 30);
    EXPECT_EQ(*cache.find(file(1)), 3);
    EXPECT_EQ(cache.count(), 2U);
    EXPECT_EQ(cache.bytes(), 40U);
}

TEST(MemoryCache, bytesAloneEvictNothing)
{
    MemoryCache<int> cache(3);
    cache.insert(file(1), value(1), std::size_t{1} << 40);
    cache.insert(file(2), value(2), std::size_t{1} << 40);
    EXPECT_EQ(cache.count(), 2U);
}

TEST(MemoryCache, shrinksFromTheLeastRecentlyUsed)
{
    MemoryCache<int> cache(10);
    for (int i = 1; i <= 5; ++i)
        cache.insert(file(i), value(i), 100);
    ASSERT_NE(cache.find(file(1)), nullptr);
    cache.shrinkTo(250);
    EXPECT_EQ(cache.bytes(), 200U);
    EXPECT_TRUE(cache.contains(file(1)));
    EXPECT_TRUE(cache.contains(file(5)));
    cache.shrinkTo(200);
    EXPECT_EQ(cache.count(), 2U);
}

TEST(MemoryCache, leavesItToTheCallerToFreeWhatHadToGo)
{
    MemoryCache<int> cache(2);
    EXPECT_TRUE(cache.insert(file(1), value(1), 100).empty());
    const auto replaced = cache.insert(file(1), value(2), 100);
    ASSERT_EQ(replaced.size(), 1U);
    EXPECT_EQ(*replaced[0], 1);
    EXPECT_TRUE(cache.insert(file(2), value(3), 100).empty());
    const auto tooMany = cache.insert(file(3), value(4), 100);
    ASSERT_EQ(tooMany.size(), 1U);
    EXPECT_EQ(*tooMany[0], 2);
    const auto shrunk = cache.shrinkTo(100);
    ASSERT_EQ(shrunk.size(), 1U);
    EXPECT_EQ(*shrunk[0], 3);
}

TEST(MemoryCache, theNewestEntryStaysHoweverLittleIsAllowed)
{
    MemoryCache<int> cache(10);
    cache.insert(file(1), value(1), 100);
    cache.insert(file(2), value(2), 100);
    cache.shrinkTo(0);
    EXPECT_EQ(cache.count(), 1U);
    EXPECT_TRUE(cache.contains(file(2)));
    cache.shrinkTo(0);
    EXPECT_EQ(cache.count(), 1U);
}

TEST(MemoryCache, aValueOutlivesItsEvictionInTheHandsOfWhoHasIt)
{
    MemoryCache<int> cache(1);
    cache.insert(file(1), value(1), 0);
    const auto held = cache.find(file(1));
    cache.insert(file(2), value(2), 0);
    EXPECT_EQ(*held, 1);
    EXPECT_EQ(held.use_count(), 1);
}

} // namespace
} // namespace tallowmere
