// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/ImageCacheManager.h"
#include "imaging/ImageLoader.h"
#include "imaging/SharedPipeline.h"
#include "tests/doubles/RealQueues.h"
#include "tests/doubles/RecordingScope.h"
#include "tests/doubles/TestFolder.h"
#include "tests/doubles/TestImages.h"
#include "tests/doubles/Waiting.h"

#include <gtest/gtest.h>

#include <atomic>
#include <set>
#include <thread>
#include <vector>

#ifdef __SANITIZE_THREAD__
// The shared pipeline is never destroyed, so its threads are never joined.
extern "C" __attribute__((visibility("default"))) const char *__tsan_default_options()
{
    return "report_thread_leaks=0";
}
#endif

namespace tallowmere {
namespace {

using test::runUntil;

/// The whole of it over real threads; only the main thread's loop is the test's own.
class RealPipeline : public testing::Test
{
protected:
    RealPipeline() { m_cache->setLoader(m_loader); }

    FileURL picture(int number) const
    {
        return m_folder.write(QByteArray::number(number) + ".png", test::pngOf(32, 24, {200, 100, 50, 255}));
    }
    QList<FileURL> pictures(int count) const
    {
        QList<FileURL> list;
        for (int i = 0; i < count; ++i)
            list.append(picture(i));
        return list;
    }
    static void noteMost(std::atomic<int> &most, int now)
    {
        for (int seen = most; now > seen && !most.compare_exchange_weak(seen, now);) {
        }
    }

    const test::TestFolder m_folder;
    PostedMainQueue m_main;
    test::RecordingScope m_scope;
    PlentifulMemory m_memory;
    ThreadSerialQueue m_sync{"com.tallowmere.prefetchsync"};
    ThreadLauncher m_launcher;
    ThreadOperationQueue m_operations{"com.tallowmere.imageprefetch", ImageCacheManager::maxConcurrentPrefetches};
    std::shared_ptr<ImageCacheManager> m_cache = std::make_shared<ImageCacheManager>(
        ImageCacheManager::Surroundings{m_main, m_sync, m_operations, m_launcher, m_scope, m_memory});
    std::shared_ptr<ImageLoader> m_loader =
        std::make_shared<ImageLoader>(ImageLoader::Surroundings{m_main, m_launcher, m_scope, m_cache});
};

TEST_F(RealPipeline, loadsThatOverlapRunInParallelOnThreadsOfTheirOwn)
{
    constexpr int kLoads = 5;
    std::atomic<int> met{0};
    std::mutex mutex;
    std::set<std::thread::id> threads;
    std::set<std::string> names;
    m_loader->setPreparation([&](const ImagePtr &) {
        {
            const std::lock_guard lock(mutex);
            threads.insert(std::this_thread::get_id());
            names.insert(test::threadName());
        }
        ++met;
        EXPECT_TRUE(test::eventually([&] { return met == kLoads; })) << "nobody waits for anybody";
    });
    int delivered = 0;
    const auto list = pictures(kLoads);
    for (const FileURL &file : list) {
        m_loader->loadImage(file, 4000, [&](const ImagePtr &image) {
            EXPECT_NE(image, nullptr);
            ++delivered;
        });
    }
    EXPECT_TRUE(runUntil(m_main, [&] { return delivered == kLoads; }));
    EXPECT_EQ(threads.size(), std::size_t{kLoads});
    EXPECT_EQ(names, std::set<std::string>{"imageLoading"});
    EXPECT_EQ(m_cache->imageCache.count(), std::size_t{kLoads});
}

TEST_F(RealPipeline, atMostThreePrefetchesDecodeAtOnceAndAllArrive)
{
    std::atomic<int> running{0};
    std::atomic<int> most{0};
    m_cache->setPreparation([&](const ImagePtr &, const auto &) {
        noteMost(most, ++running);
        // Waits for two more the first time; a fourth would show.
        EXPECT_TRUE(test::eventually([&] { return most >= 3; }));
        --running;
    });
    const auto list = pictures(15);
    m_cache->prefetchImages(list, 0);
    EXPECT_TRUE(runUntil(m_main, [&] { return m_cache->averageColorCache.count() == 14; }));
    EXPECT_EQ(m_cache->imageCache.count(), 14U);
    EXPECT_FALSE(m_cache->imageCache.contains(list[0])) << "the current one is the viewer's to load";
    EXPECT_EQ(most, 3);
}

TEST_F(RealPipeline, prefetchThreadsAreNicerTheFartherTheirImageIs)
{
    const int own = test::niceOfThisThread();
    std::mutex mutex;
    std::multiset<int> increments;
    m_cache->setPreparation([&](const ImagePtr &, const auto &) {
        EXPECT_EQ(test::threadName(), "imageprefetch");
        const std::lock_guard lock(mutex);
        increments.insert(test::niceOfThisThread() - own);
    });
    m_cache->prefetchImages(pictures(10), 0);
    EXPECT_TRUE(runUntil(m_main, [&] { return m_cache->imageCache.count() == 9; }));
    const auto capped = [own](int increment) { return std::min(own + increment, 19) - own; };
    std::multiset<int> expected;
    for (int distance = 1; distance <= 9; ++distance)
        expected.insert(capped(distance <= 2 ? 0 : distance <= 5 ? 5 : 10));
    EXPECT_EQ(increments, expected);
}

TEST_F(RealPipeline, aNewRequestDropsWhatHasNotBegun)
{
    test::Event release;
    std::atomic<int> begun{0};
    m_cache->setPreparation([&](const ImagePtr &, const auto &) {
        ++begun;
        EXPECT_TRUE(release.wait());
    });
    const auto list = pictures(20);
    m_cache->prefetchImages(list, 0);
    EXPECT_TRUE(test::eventually([&] { return begun == 3; }));
    m_cache->prefetchImages({}, 0);
    m_sync.sync([] {}); // the cancellation is behind us
    release.set();
    EXPECT_TRUE(runUntil(m_main, [&] { return m_cache->averageColorCache.count() == 3; }));
    m_cache->prefetchAfter = 1;
    m_cache->prefetchBefore = 0;
    m_cache->prefetchImages(list, 18); // only 19; it would come behind anything left over
    EXPECT_TRUE(runUntil(m_main, [&] { return m_cache->averageColorCache.count() == 4; }));
    EXPECT_EQ(begun, 4);
}

TEST_F(RealPipeline, steppingWildlyEndsWithEverythingCached)
{
    const auto list = pictures(30);
    int delivered = 0;
    for (int step = 0; step < 60; ++step) {
        const qint64 index = step % 30;
        m_loader->loadImage(list[index], 4000, [&](const ImagePtr &image) { delivered += image ? 1 : 100; });
        m_cache->prefetchImages(list, index);
        m_main.runTurn();
    }
    EXPECT_TRUE(runUntil(m_main, [&] { return delivered == 60; }));
    EXPECT_EQ(m_cache->imageCache.count(), 30U);
    m_cache->prefetchImages({}, 0);
}

TEST_F(RealPipeline, aPreloadIsTakenOverWhereverItStands)
{
    for (int round = 0; round < 20; ++round) {
        const FileURL file = picture(round);
        m_loader->preload(file, 4000);
        if (round % 3 == 0)
            std::this_thread::yield();
        ImagePtr delivered;
        int times = 0;
        m_loader->loadImage(file, 4000, [&](ImagePtr image) {
            delivered = std::move(image);
            ++times;
        });
        EXPECT_EQ(times, 0);
        EXPECT_TRUE(runUntil(m_main, [&] { return times > 0; }));
        EXPECT_NE(delivered, nullptr);
        EXPECT_EQ(m_cache->imageCache.find(file), delivered);
    }
}

TEST_F(RealPipeline, aDroppedPreloadEndsAndTheFileCanBeLoadedAfterAll)
{
    for (int round = 0; round < 20; ++round) {
        const FileURL file = picture(round);
        m_loader->preload(file, 4000);
        m_loader->dropPreload();
        int times = 0;
        m_loader->loadImage(file, 4000, [&](const ImagePtr &image) { times += image ? 1 : 100; });
        EXPECT_TRUE(runUntil(m_main, [&] { return times > 0; }));
        EXPECT_EQ(times, 1);
    }
}

TEST_F(RealPipeline, everyThreadMayLookIntoTheCachesMeanwhile)
{
    const auto list = pictures(12);
    std::atomic<bool> stop{false};
    std::thread reader([&] {
        while (!stop) {
            for (const FileURL &file : list) {
                const auto image = m_cache->imageCache.find(file);
                EXPECT_TRUE(!image || image->size() == QSizeF(32, 24));
                (void)m_cache->averageColorCache.find(file);
            }
            m_cache->shrinkTo(std::size_t{8} * 32 * 24 * 4);
        }
    });
    for (int index = 0; index < 11; ++index) {
        m_cache->prefetchImages(list, index);
        EXPECT_TRUE(runUntil(m_main, [&] { return m_cache->averageColorCache.contains(list[index + 1]); }));
    }
    stop = true;
    reader.join();
}

TEST(SharedPipelineTest, isOneHoweverManyAskFirstAndItsPartsKnowEachOther)
{
    std::vector<const ImageLoader *> seen(8);
    std::vector<std::thread> threads;
    for (auto &place : seen)
        threads.emplace_back([&place] { place = ImageLoader::shared().get(); });
    for (auto &thread : threads)
        thread.join();
    for (const auto *one : seen)
        EXPECT_EQ(one, ImageLoader::shared().get());
    auto &pipeline = SharedPipeline::instance();
    EXPECT_EQ(ImageCacheManager::shared(), pipeline.imageCacheManager);

    const test::TestFolder folder;
    const FileURL current = folder.write("0.png", test::pngOf(8, 8, {1, 2, 3, 255}));
    const FileURL neighbour = folder.write("1.png", test::pngOf(8, 8, {1, 2, 3, 255}));
    int delivered = 0;
    ImageLoader::shared()->loadImage(current, 4000, [&](const ImagePtr &image) { delivered += image ? 1 : 100; });
    ImageCacheManager::shared()->prefetchImages({current, neighbour}, 0);
    EXPECT_TRUE(runUntil(pipeline.mainQueue, [&] {
        return delivered == 1 && ImageCacheManager::shared()->averageColorCache.contains(neighbour);
    }));
    EXPECT_TRUE(ImageCacheManager::shared()->imageCache.contains(current));
}

} // namespace
} // namespace tallowmere
