// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "support/ThreadQueues.h"
#include "tests/doubles/OrdinaryUser.h"
#include "tests/doubles/Waiting.h"

#include <gtest/gtest.h>

#include <pthread.h>
#include <unistd.h>

#include <algorithm>
#include <vector>

namespace tallowmere {
namespace {

void exitAfterMixedPriorities()
{
    test::becomeOrdinaryUser();
    const int own = test::niceOfThisThread();
    ThreadOperationQueue queue("com.tallowmere.imageprefetch", 1);
    std::vector<int> increments;
    test::Event finished;
    for (const auto quality : {QualityOfService::utility, QualityOfService::userInitiated, QualityOfService::standard})
        queue.addOperation(quality, [&] { increments.push_back(test::niceOfThisThread() - own); });
    queue.addOperation(QualityOfService::userInitiated, [&] { finished.set(); });
    const bool ended = finished.wait();
    const auto capped = [own](int increment) { return std::min(own + increment, 19) - own; };
    _exit(ended && increments == std::vector{capped(10), 0, capped(5)} ? 0 : 1);
}

// Only for an ordinary user does a thread that went up in nice value stay there, and its children with it.
TEST(ThreadOperationQueueOfAnOrdinaryUser, importantOperationsStayImportantAfterUnimportantOnes)
{
    EXPECT_EXIT(exitAfterMixedPriorities(), testing::ExitedWithCode(0), "");
}

void refuseFurtherThreads()
{
    // No address space has room for such a stack.
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, std::size_t{1} << 50);
    if (pthread_setattr_default_np(&attributes) != 0)
        _exit(3);
}

void exitAfterQueuesWithoutThreads()
{
    refuseFurtherThreads();
    std::vector<int> ran;
    ThreadLauncher launcher;
    launcher.launch("com.tallowmere.test", QualityOfService::utility, [&] { ran.push_back(1); });
    {
        ThreadSerialQueue serial("com.tallowmere.test");
        serial.async([&] {
            ran.push_back(2);
            serial.async([&] { ran.push_back(3); });
        });
        serial.sync([&] { ran.push_back(4); });
    }
    bool operationRan = false;
    {
        ThreadOperationQueue operations("com.tallowmere.test", 3);
        operations.addOperation(QualityOfService::utility, [&] { operationRan = true; });
        operations.cancelAllOperations();
        operations.addOperation(QualityOfService::utility, [&] { operationRan = true; });
    }
    _exit(ran == std::vector{1, 2, 3, 4} && !operationRan ? 0 : 1);
}

TEST(QueuesWithoutThreads, runJobsInTheCallersAndLeaveSpeculativeOnesWaiting)
{
    EXPECT_EXIT(exitAfterQueuesWithoutThreads(), testing::ExitedWithCode(0), "");
}

} // namespace
} // namespace tallowmere
