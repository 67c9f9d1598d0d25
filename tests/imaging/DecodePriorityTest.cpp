// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/imaging/Pipeline.h"

#include <atomic>
#include <future>
#include <thread>

namespace tallowmere {
namespace {

using test::Delivered;

TEST(DecodePriority, nobodyWaitsWithoutAnUrgentDecode)
{
    DecodePriority priority;
    priority.letUrgentPass();
    {
        const DecodePriority::Urgent urgent(priority);
    }
    priority.letUrgentPass();
}

TEST(DecodePriority, theOthersGoOnWhenTheLastUrgentOneHasEnded)
{
    DecodePriority priority;
    std::atomic<bool> ended{false};
    std::promise<void> begun;
    auto first = std::make_unique<DecodePriority::Urgent>(priority);
    auto second = std::make_unique<DecodePriority::Urgent>(priority);
    std::thread other([&] {
        begun.set_value();
        priority.letUrgentPass();
        EXPECT_TRUE(ended);
    });
    begun.get_future().wait();
    first.reset();
    std::this_thread::yield();
    ended = true;
    second.reset();
    other.join();
}

class PrefetchBehindALoad : public test::SteppedPipeline
{};

TEST_F(PrefetchBehindALoad, decodesOnlyWhenTheLoadIsThrough)
{
    const FileURL urgent = picture("a.png");
    const FileURL neighbour = picture("b.png");
    std::atomic<bool> loaded{false};
    std::thread prefetch;
    m_cache->setPreparation([&](const ImagePtr &, const auto &) { EXPECT_TRUE(loaded); });
    // Runs in the middle of the load, which is still to be delivered.
    m_loader->setPreparation([&](const ImagePtr &) {
        std::promise<void> begun;
        prefetch = std::thread([&] {
            begun.set_value();
            m_operations.runAll();
        });
        begun.get_future().wait();
        std::this_thread::yield();
        loaded = true;
    });
    m_cache->prefetchImages({urgent, neighbour}, 0);
    m_sync.runAll();
    Delivered delivered;
    m_loader->loadImage(urgent, kMaxSize, delivered.completion());
    m_launcher.runAll();
    ASSERT_TRUE(prefetch.joinable());
    prefetch.join();
    m_main.runAll();
    EXPECT_EQ(delivered.times, 1);
    EXPECT_TRUE(m_cache->imageCache.contains(neighbour)) << "it came in the end";
}

TEST_F(PrefetchBehindALoad, doesNotWaitForALoadThatHasNotBegun)
{
    const FileURL urgent = picture("a.png");
    const FileURL neighbour = picture("b.png");
    Delivered delivered;
    m_loader->loadImage(urgent, kMaxSize, delivered.completion());
    m_cache->prefetchImages({urgent, neighbour}, 0);
    m_sync.runAll();
    m_operations.runAll();
    m_main.runAll();
    EXPECT_TRUE(m_cache->imageCache.contains(neighbour));
}

} // namespace
} // namespace tallowmere
