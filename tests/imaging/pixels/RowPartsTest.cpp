// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/pixels/RowParts.h"

#include <gtest/gtest.h>

#include <atomic>
#include <new>
#include <thread>
#include <utility>
#include <vector>

namespace tallowmere {
namespace {

constexpr std::uint64_t kFew = 100;
constexpr std::uint64_t kMany = 1'000'000;

TEST(RowParts, coverEveryRowOnce)
{
    for (const std::uint64_t pixels : {kFew, kMany}) {
        for (const std::uint32_t rows : {0U, 1U, 2U, 5U, 6U, 7U, 1000U}) {
            std::vector<std::atomic<int>> seen(rows);
            EXPECT_TRUE(workOnRowParts(rows, pixels, {}, [&](const RowPart &part) {
                for (std::uint32_t y = part.first; y < part.end && part.goesOn(); ++y)
                    ++seen[y];
            }));
            for (const auto &times : seen)
                ASSERT_EQ(times, 1) << rows;
        }
    }
}

TEST(RowParts, areGivenUpWhenCancelled)
{
    for (const std::uint64_t pixels : {kFew, kMany}) {
        std::atomic<int> worked = 0;
        EXPECT_FALSE(workOnRowParts(
            60'000, pixels, [&] { return worked > 0; },
            [&](const RowPart &part) {
            // The last of the rows is never reached: the questions of one thread end the work of both.
            for (std::uint32_t y = part.first; part.goesOn(); y = y + 1 < part.end ? y + 1 : part.first)
                ++worked;
            }));
    }
}

TEST(RowParts, restWhileAQuestionIsNotAnswered)
{
    std::atomic<int> worked = 0;
    bool isAsked = false;
    int whenAsked = 0;
    int afterwards = 0;
    const auto question = [&] {
        if (!std::exchange(isAsked, true)) {
            // The other thread has begun at most one row more.
            whenAsked = worked;
            for (int i = 0; i < 1000; ++i)
                std::this_thread::yield();
            afterwards = worked;
        }
        return false;
    };
    EXPECT_TRUE(workOnRowParts(60'000, kMany, question, [&](const RowPart &part) {
        for (std::uint32_t y = part.first; y < part.end && part.goesOn(); ++y)
            ++worked;
    }));
    EXPECT_LE(afterwards, whenAsked + 1);
    EXPECT_EQ(worked, 60'000);
}

TEST(RowParts, areGivenUpWhereThereIsNoRoom)
{
    for (const std::uint64_t pixels : {kFew, kMany})
        EXPECT_FALSE(workOnRowParts(60, pixels, {}, [](const RowPart &) { throw std::bad_alloc(); }));
}

} // namespace
} // namespace tallowmere
