// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "support/ThreadQueues.h"

#include "tests/doubles/Waiting.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <latch>
#include <memory>
#include <vector>

namespace tallowmere {
namespace {

using test::Event;
using test::threadName;
using testing::ElementsAre;

TEST(ThreadSerialQueue, runsJobsOneByOneInOrderOffTheCallersThread)
{
    ThreadSerialQueue queue("com.tallowmere.test");
    std::vector<int> ran; // no lock: the queue must order the accesses
    std::thread::id worker;
    for (int i = 0; i < 100; ++i)
        queue.async([&ran, i] { ran.push_back(i); });
    queue.sync([&] { worker = std::this_thread::get_id(); });
    ASSERT_EQ(ran.size(), 100U);
    for (int i = 0; i < 100; ++i)
        EXPECT_EQ(ran[static_cast<std::size_t>(i)], i);
    EXPECT_NE(worker, std::this_thread::get_id());
}

TEST(ThreadSerialQueue, manyThreadsMayPostAtOnce)
{
    ThreadSerialQueue queue("com.tallowmere.test");
    int sum = 0;
    std::vector<std::thread> posters;
    for (int i = 0; i < 4; ++i) {
        posters.emplace_back([&] {
            for (int k = 0; k < 50; ++k)
                queue.async([&sum] { ++sum; });
            queue.sync([&sum] { ++sum; });
        });
    }
    for (auto &poster : posters)
        poster.join();
    queue.sync([&] { EXPECT_EQ(sum, 4 * 51); });
}

TEST(ThreadSerialQueue, dropsWhatWaitsAtItsEndAndFinishesWhatRuns)
{
    Event started;
    Event release;
    std::atomic<bool> finished{false};
    std::atomic<bool> dropped{false};
    const auto owned = std::make_shared<int>(0);
    std::thread releaser;
    {
        ThreadSerialQueue queue("com.tallowmere.test");
        queue.async([&] {
            started.set();
            EXPECT_TRUE(release.wait());
            finished = true;
        });
        queue.async([&dropped, owned] { dropped = true; });
        ASSERT_TRUE(started.wait());
        EXPECT_EQ(owned.use_count(), 2);
        // Released only once the waiting job is gone, which is the destructor's first act.
        releaser = std::thread([&] {
            EXPECT_TRUE(test::eventually([&] { return owned.use_count() == 1; }));
            release.set();
        });
    }
    releaser.join();
    EXPECT_TRUE(finished);
    EXPECT_FALSE(dropped);
}

TEST(ThreadSerialQueue, itsThreadCarriesTheLabelsLastPart)
{
    ThreadSerialQueue queue("com.tallowmere.prefetchsync");
    std::string name;
    queue.sync([&] { name = threadName(); });
    EXPECT_EQ(name, "prefetchsync");
}

TEST(ThreadOperationQueue, runsAtMostThreeAtOnceAndReallyThree)
{
    ThreadOperationQueue queue("com.tallowmere.imageprefetch", 3);
    std::atomic<int> running{0};
    std::atomic<int> most{0};
    std::atomic<int> done{0};
    Event release;
    for (int i = 0; i < 12; ++i) {
        queue.addOperation(QualityOfService::userInitiated, [&] {
            const int now = ++running;
            for (int seen = most; now > seen && !most.compare_exchange_weak(seen, now);) {
            }
            EXPECT_TRUE(release.wait());
            --running;
            ++done;
        });
    }
    EXPECT_TRUE(test::eventually([&] { return running == 3; }));
    release.set();
    EXPECT_TRUE(test::eventually([&] { return done == 12; }));
    EXPECT_EQ(most, 3);
}

TEST(ThreadOperationQueue, startsInTheOrderAdded)
{
    ThreadOperationQueue queue("com.tallowmere.test", 1);
    std::vector<int> ran;
    Event finished;
    for (int i = 0; i < 5; ++i)
        queue.addOperation(i % 2 ? QualityOfService::userInitiated : QualityOfService::utility,
                           [&ran, i] { ran.push_back(i); });
    queue.addOperation(QualityOfService::standard, [&] { finished.set(); });
    ASSERT_TRUE(finished.wait());
    EXPECT_THAT(ran, ElementsAre(0, 1, 2, 3, 4));
}

TEST(ThreadOperationQueue, cancellingDropsWhatWaitsAndLetsRunningOnesFinish)
{
    ThreadOperationQueue queue("com.tallowmere.test", 1);
    Event started;
    Event release;
    Event last;
    std::atomic<bool> finished{false};
    std::atomic<int> dropped{0};
    queue.addOperation(QualityOfService::utility, [&] {
        started.set();
        EXPECT_TRUE(release.wait());
        finished = true;
    });
    ASSERT_TRUE(started.wait());
    for (int i = 0; i < 5; ++i)
        queue.addOperation(QualityOfService::utility, [&] { ++dropped; });
    queue.cancelAllOperations();
    queue.addOperation(QualityOfService::utility, [&] { last.set(); });
    release.set();
    ASSERT_TRUE(last.wait());
    EXPECT_TRUE(finished);
    EXPECT_EQ(dropped, 0);
}

TEST(ThreadOperationQueue, itsEndDropsWhatWaitsAndJoinsWhatRuns)
{
    Event started;
    Event added;
    std::atomic<bool> finished{false};
    std::atomic<int> dropped{0};
    const auto owned = std::make_shared<int>(0);
    {
        ThreadOperationQueue queue("com.tallowmere.test", 1);
        queue.addOperation(QualityOfService::utility, [&] {
            started.set();
            EXPECT_TRUE(added.wait());
            EXPECT_TRUE(test::eventually([&] { return owned.use_count() == 1; }));
            finished = true;
        });
        ASSERT_TRUE(started.wait());
        queue.addOperation(QualityOfService::utility, [&dropped, owned] { ++dropped; });
        added.set();
    }
    EXPECT_TRUE(finished);
    EXPECT_EQ(dropped, 0);
}

TEST(ThreadOperationQueue, niceValuesFollowTheQuality)
{
    const int own = test::niceOfThisThread();
    ThreadOperationQueue queue("com.tallowmere.imageprefetch", 1);
    std::vector<int> increments;
    std::vector<std::string> names;
    Event finished;
    // Each after a more important one and after a less important one.
    for (const auto quality : {QualityOfService::userInitiated, QualityOfService::standard, QualityOfService::utility,
                               QualityOfService::standard, QualityOfService::userInitiated}) {
        queue.addOperation(quality, [&] {
            increments.push_back(test::niceOfThisThread() - own);
            names.push_back(threadName());
        });
    }
    queue.addOperation(QualityOfService::utility, [&] { finished.set(); });
    ASSERT_TRUE(finished.wait());
    const auto capped = [own](int increment) { return std::min(own + increment, 19) - own; };
    EXPECT_THAT(increments, ElementsAre(0, capped(5), capped(10), capped(5), 0));
    EXPECT_THAT(names, testing::Each("imageprefetch"));
    EXPECT_EQ(test::niceOfThisThread(), own);
}

TEST(ThreadLauncher, jobsLaunchedTogetherRunInParallel)
{
    ThreadLauncher launcher;
    std::atomic<int> arrived{0};
    std::atomic<int> met{0};
    for (int i = 0; i < 5; ++i) {
        launcher.launch("com.tallowmere.imageLoading", QualityOfService::userInitiated, [&] {
            ++arrived;
            if (test::eventually([&] { return arrived == 5; }))
                ++met;
        });
    }
    EXPECT_TRUE(test::eventually([&] { return met == 5; }));
}

TEST(ThreadLauncher, namesTheThreadAndLeavesItsNiceValueForTheUsersOwnWork)
{
    const int own = test::niceOfThisThread();
    std::string name;
    int increment = -1;
    {
        ThreadLauncher launcher;
        launcher.launch("com.tallowmere.imageLoading", QualityOfService::userInitiated, [&] {
            name = threadName();
            increment = test::niceOfThisThread() - own;
        });
    } // joins
    EXPECT_EQ(name, "imageLoading");
    EXPECT_EQ(increment, 0);
}

TEST(ThreadLauncher, joinsWhatRunsAtItsEnd)
{
    std::atomic<int> finished{0};
    {
        ThreadLauncher launcher;
        for (int i = 0; i < 20; ++i)
            launcher.launch("com.tallowmere.test", QualityOfService::utility, [&] { ++finished; });
    }
    EXPECT_EQ(finished, 20);
}

TEST(ThreadLauncher, aLabelLongerThanTheKernelKeepsIsCutShort)
{
    std::string name;
    {
        ThreadLauncher launcher;
        launcher.launch("aVeryLongLabelWithoutAnyDot", QualityOfService::userInitiated, [&] { name = threadName(); });
    }
    EXPECT_EQ(name, "aVeryLongLabelW");
}

} // namespace
} // namespace tallowmere
