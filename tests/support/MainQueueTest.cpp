// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "support/MainQueuePump.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <poll.h>

#include <thread>
#include <vector>

namespace tallowmere {
namespace {

using testing::ElementsAre;

bool isReadable(int descriptor)
{
    pollfd wake{descriptor, POLLIN, 0};
    return ::poll(&wake, 1, 0) == 1;
}

TEST(PostedMainQueue, runsJobsInTheOrderPosted)
{
    PostedMainQueue queue;
    std::vector<int> ran;
    for (int i = 0; i < 3; ++i)
        queue.async([&ran, i] { ran.push_back(i); });
    EXPECT_THAT(ran, ElementsAre()) << "async() returns at once";
    EXPECT_EQ(queue.runTurn(), 3U);
    EXPECT_THAT(ran, ElementsAre(0, 1, 2));
    EXPECT_EQ(queue.runTurn(), 0U);
}

TEST(PostedMainQueue, whatAJobPostsWaitsForTheNextTurn)
{
    PostedMainQueue queue;
    std::vector<int> ran;
    queue.async([&] {
        ran.push_back(1);
        queue.async([&] { ran.push_back(3); });
    });
    queue.async([&] { ran.push_back(2); });
    EXPECT_EQ(queue.runTurn(), 2U);
    EXPECT_THAT(ran, ElementsAre(1, 2));
    EXPECT_TRUE(isReadable(queue.wakeDescriptor()));
    EXPECT_EQ(queue.runTurn(), 1U);
    EXPECT_THAT(ran, ElementsAre(1, 2, 3));
}

TEST(PostedMainQueue, wakesWhileAndOnlyWhileJobsWait)
{
    PostedMainQueue queue;
    EXPECT_FALSE(isReadable(queue.wakeDescriptor()));
    queue.async([] {});
    queue.async([&] { EXPECT_FALSE(isReadable(queue.wakeDescriptor())) << "this is the last one"; });
    EXPECT_TRUE(isReadable(queue.wakeDescriptor()));
    queue.runTurn();
    EXPECT_FALSE(isReadable(queue.wakeDescriptor()));
}

TEST(PostedMainQueue, aJobThatRunsALoopOfItsOwnHoldsUpNobody)
{
    PostedMainQueue queue;
    std::vector<int> ran;
    queue.async([&] {
        ran.push_back(1);
        EXPECT_TRUE(isReadable(queue.wakeDescriptor())) << "or the inner loop would sleep";
        EXPECT_EQ(queue.runTurn(), 2U);
        ran.push_back(4);
    });
    queue.async([&] { ran.push_back(2); });
    queue.async([&] { ran.push_back(3); });
    queue.runTurn();
    EXPECT_THAT(ran, ElementsAre(1, 2, 3, 4));
    EXPECT_EQ(queue.runTurn(), 0U);
}

TEST(PostedMainQueue, jobsAreDestroyedWhereTheyRan)
{
    PostedMainQueue queue;
    const auto owned = std::make_shared<int>(1);
    queue.async([copy = owned] {});
    EXPECT_EQ(owned.use_count(), 2);
    queue.runTurn();
    EXPECT_EQ(owned.use_count(), 1);
    {
        PostedMainQueue dropped;
        dropped.async([copy = owned] { FAIL(); });
    }
    EXPECT_EQ(owned.use_count(), 1);
}

class Pumped : public testing::Test
{
protected:
    // The program's queue fills before its application object exists.
    PostedMainQueue m_queue;
};

TEST_F(Pumped, runsWhatWasPostedBeforeAnyApplicationExisted)
{
    ASSERT_EQ(QCoreApplication::instance(), nullptr);
    QEventLoop *loop = nullptr;
    std::thread::id ranOn;
    std::thread([&] {
        m_queue.async([&] {
            ranOn = std::this_thread::get_id();
            loop->quit();
        });
    }).join();
    int argc = 0;
    const QCoreApplication application(argc, nullptr);
    const MainQueuePump pump(m_queue);
    QEventLoop own;
    loop = &own;
    own.exec();
    EXPECT_EQ(ranOn, std::this_thread::get_id());
}

TEST_F(Pumped, leavesTimersAndInputTheirTurnsHoweverMuchIsPosted)
{
    int argc = 0;
    const QCoreApplication application(argc, nullptr);
    const MainQueuePump pump(m_queue);
    QEventLoop loop;
    bool stop = false;
    const std::function<void()> again = [&] {
        if (!stop)
            m_queue.async(again);
    };
    m_queue.async(again);
    QTimer::singleShot(0, &loop, [&] {
        stop = true;
        loop.quit();
    });
    loop.exec();
    EXPECT_TRUE(stop);
    m_queue.runTurn();
}

TEST_F(Pumped, jobsPostedByThreadsArriveInsideANestedLoop)
{
    int argc = 0;
    const QCoreApplication application(argc, nullptr);
    const MainQueuePump pump(m_queue);
    QEventLoop outer;
    std::vector<int> ran;
    std::thread poster;
    m_queue.async([&] { // a dialog, say
        QEventLoop inner;
        poster = std::thread([&] {
            m_queue.async([&] { ran.push_back(2); });
            m_queue.async([&] { inner.quit(); });
        });
        ran.push_back(1);
        inner.exec();
        ran.push_back(3);
        outer.quit();
    });
    outer.exec();
    poster.join();
    EXPECT_THAT(ran, ElementsAre(1, 2, 3));
}

} // namespace
} // namespace tallowmere
