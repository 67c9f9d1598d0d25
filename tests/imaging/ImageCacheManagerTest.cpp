// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/ImageCacheManager.h"

#include "tests/imaging/Pipeline.h"

#include <gmock/gmock.h>

namespace tallowmere {
namespace {

using enum QualityOfService;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::SizeIs;

class Prefetch : public test::SteppedPipeline
{
protected:
    /// Names only; nothing is on the disk.
    [[nodiscard]] QList<FileURL> absent(int count) const
    {
        QList<FileURL> list;
        for (int i = 0; i < count; ++i)
            list.append(m_folder.at(QByteArray::number(i) + ".jpg"));
        return list;
    }
    void request(const QList<FileURL> &list, qint64 index)
    {
        m_cache->prefetchImages(list, index);
        m_sync.runAll();
    }
    /// The files that running every waiting operation asks access to, in order.
    [[nodiscard]] std::vector<QByteArray> filesTried()
    {
        const std::size_t before = m_scope.log().size();
        m_operations.runAll();
        std::vector<QByteArray> files;
        const auto log = m_scope.log();
        for (std::size_t i = before; i < log.size(); ++i) {
            if (log[i].startsWith("start "))
                files.push_back(log[i].sliced(log[i].lastIndexOf('/') + 1));
        }
        return files;
    }
    [[nodiscard]] static std::vector<QByteArray> names(std::initializer_list<int> indices)
    {
        std::vector<QByteArray> result;
        for (const int index : indices)
            result.push_back(QByteArray::number(index) + ".jpg");
        return result;
    }
};

TEST_F(Prefetch, countsStartAtTwoBackAndTwentyAhead)
{
    EXPECT_EQ(m_cache->prefetchBefore, 2);
    EXPECT_EQ(m_cache->prefetchAfter, 20);
    EXPECT_EQ(ImageCacheManager::maxCacheCount, 200);
    EXPECT_EQ(ImageCacheManager::maxConcurrentPrefetches, 3);
}

TEST_F(Prefetch, fromTheFirstOfTenTheOthersFollowInOrderWithFallingPriority)
{
    request(absent(10), 0);
    EXPECT_THAT(m_operations.qualities(), ElementsAre(userInitiated, userInitiated, standard, standard, standard,
                                                      utility, utility, utility, utility));
    EXPECT_THAT(filesTried(), ElementsAreArray(names({1, 2, 3, 4, 5, 6, 7, 8, 9})));
}

TEST_F(Prefetch, inTheMiddleOfAHundredTheNearestComeFirst)
{
    request(absent(100), 50);
    EXPECT_THAT(filesTried(), ElementsAreArray(names({49, 51, 48, 52, 53, 54, 55, 56, 57, 58, 59,
                                                      60, 61, 62, 63, 64, 65, 66, 67, 68, 69, 70})));
}

TEST_F(Prefetch, aWindowOfNothingSchedulesNothingButStillCancels)
{
    request(absent(10), 4);
    ASSERT_GT(m_operations.waiting(), 0U);
    m_cache->prefetchBefore = 0;
    m_cache->prefetchAfter = 0;
    request(absent(10), 5);
    EXPECT_EQ(m_operations.waiting(), 0U);
    EXPECT_EQ(m_operations.cancellations(), 2);
}

TEST_F(Prefetch, theSameListAndIndexAgainDoNothingNotEvenCancel)
{
    request(absent(10), 3);
    const std::size_t waiting = m_operations.waiting();
    m_cache->prefetchImages(absent(10), 3);
    EXPECT_EQ(m_sync.waiting(), 0U);
    m_sync.runAll();
    EXPECT_EQ(m_operations.cancellations(), 1);
    EXPECT_EQ(m_operations.waiting(), waiting);
}

TEST_F(Prefetch, aChangedIndexCancelsWhatWaitsAndSchedulesAnew)
{
    request(absent(10), 3);
    request(absent(10), 4);
    EXPECT_EQ(m_operations.cancellations(), 2);
    EXPECT_THAT(filesTried(), ElementsAreArray(names({3, 5, 2, 6, 7, 8, 9})));
}

TEST_F(Prefetch, aChangedListWithTheSameIndexIsNew)
{
    request(absent(10), 3);
    request(absent(9), 3);
    EXPECT_EQ(m_operations.cancellations(), 2);
    auto reordered = absent(9);
    reordered.swapItemsAt(7, 8);
    request(reordered, 3);
    EXPECT_EQ(m_operations.cancellations(), 3);
}

TEST_F(Prefetch, onlyTheLastRequestCountsAsRepeated)
{
    request(absent(10), 3);
    request(absent(10), 4);
    request(absent(10), 3);
    EXPECT_EQ(m_operations.cancellations(), 3);
}

TEST_F(Prefetch, aNeighbourThatIsCachedGetsNoOperation)
{
    const auto list = absent(5);
    m_cache->imageCache.insert(list[1], anyImage(), 0);
    request(list, 0);
    EXPECT_THAT(filesTried(), ElementsAreArray(names({2, 3, 4})));
}

TEST_F(Prefetch, aNeighbourWhoseColourAloneIsMissingGetsNone)
{
    const auto list = absent(3);
    m_cache->imageCache.insert(list[1], anyImage(), 0);
    m_cache->averageColorCache.insert(list[2], std::make_shared<const Color>(), 0);
    request(list, 0);
    EXPECT_THAT(filesTried(), ElementsAreArray(names({2}))) << "a colour without its image is no reason to skip";
}

TEST_F(Prefetch, aChangedCountTakesEffectAtTheNextStep)
{
    request(absent(100), 10);
    EXPECT_THAT(filesTried(), SizeIs(22));
    m_cache->prefetchAfter = 50;
    request(absent(100), 10);
    EXPECT_EQ(m_operations.waiting(), 0U);
    EXPECT_EQ(m_operations.cancellations(), 1);
    request(absent(100), 11);
    EXPECT_THAT(filesTried(), SizeIs(52));
}

TEST_F(Prefetch, countsAreReadWhenTheWorkIsScheduled)
{
    m_cache->prefetchImages(absent(100), 10);
    m_cache->prefetchBefore = 0;
    m_cache->prefetchAfter = 1;
    m_sync.runAll();
    EXPECT_THAT(filesTried(), ElementsAreArray(names({11})));
}

TEST_F(Prefetch, anEmptyListOnlyCancels)
{
    request(absent(10), 3);
    request({}, 0);
    EXPECT_EQ(m_operations.cancellations(), 2);
    EXPECT_EQ(m_operations.waiting(), 0U);
}

TEST_F(Prefetch, anIndexOutsideTheListSchedulesNothing)
{
    request(absent(10), 40);
    EXPECT_EQ(m_operations.waiting(), 0U);
    EXPECT_EQ(m_operations.cancellations(), 1);
}

TEST_F(Prefetch, theRepeatTestRunsAtOnceAndTheSchedulingLater)
{
    m_cache->prefetchImages(absent(10), 0);
    EXPECT_EQ(m_sync.syncs(), 1);
    EXPECT_EQ(m_sync.waiting(), 1U);
    EXPECT_EQ(m_operations.cancellations(), 0);
    m_sync.runAll();
    EXPECT_EQ(m_operations.cancellations(), 1);
    EXPECT_EQ(m_operations.waiting(), 9U);
}

TEST_F(Prefetch, oneThatRunsWhenCancelledFinishesAndFillsTheCaches)
{
    const FileURL neighbour = picture("1.png");
    const QList<FileURL> list{picture("0.png"), neighbour};
    request(list, 0);
    const Job running = m_operations.begin();
    ASSERT_TRUE(running);
    request({}, 0);
    running();
    m_main.runAll();
    EXPECT_TRUE(m_cache->imageCache.contains(neighbour));
    EXPECT_TRUE(m_cache->averageColorCache.contains(neighbour));
}

TEST_F(Prefetch, theImageIsPostedFirstAndItsColourAfterwards)
{
    const FileURL neighbour = picture("1.png", {200, 100, 50, 255});
    request({picture("0.png"), neighbour}, 0);
    m_operations.runAll();
    EXPECT_EQ(m_main.waiting(), 2U);
    EXPECT_FALSE(m_cache->imageCache.contains(neighbour)) << "written on the main queue only";
    m_main.runNext();
    EXPECT_TRUE(m_cache->imageCache.contains(neighbour));
    EXPECT_FALSE(m_cache->averageColorCache.contains(neighbour));
    m_main.runNext();
    const auto colour = m_cache->averageColorCache.find(neighbour);
    ASSERT_NE(colour, nullptr);
    EXPECT_EQ(*colour, (Color{200 / 255.0, 100 / 255.0, 50 / 255.0, 1.0}));
}

TEST_F(Prefetch, anImageThatReachedTheCacheMeanwhileIsReplaced)
{
    const FileURL neighbour = picture("1.png");
    request({picture("0.png"), neighbour}, 0);
    const ImagePtr earlier = anyImage();
    m_cache->imageCache.insert(neighbour, earlier, 0);
    m_operations.runAll();
    m_main.runAll();
    EXPECT_NE(m_cache->imageCache.find(neighbour), earlier);
}

TEST_F(Prefetch, whatCannotBeReadOrDecodedIsSkippedAndTriedAgainByTheNextRequest)
{
    const QList<FileURL> list{picture("0.png"), m_folder.at("gone.png"), m_folder.write("text.png", "no picture")};
    request(list, 0);
    m_operations.runAll();
    EXPECT_EQ(m_main.waiting(), 0U);
    EXPECT_THAT(m_scope.log(), ElementsAre("start " + list[1].path(), "stop " + list[1].path(),
                                           "start " + list[2].path(), "stop " + list[2].path()));
    picture("gone.png");
    request(list, 1);
    request(list, 0);
    m_operations.runAll();
    m_main.runAll();
    EXPECT_TRUE(m_cache->imageCache.contains(list[1]));
    EXPECT_FALSE(m_cache->imageCache.contains(list[2]));
}

TEST_F(Prefetch, decodesWithinFourThousandPixels)
{
    const FileURL large = m_folder.write("1.jpg", test::jpegOf(5000, 100, {10, 20, 30, 255}));
    request({picture("0.png"), large}, 0);
    m_operations.runAll();
    m_main.runAll();
    const auto image = m_cache->imageCache.find(large);
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->size(), QSizeF(4000, 80));
}

TEST_F(Prefetch, everyImageIsPreparedBeforeItIsPosted)
{
    std::vector<std::size_t> waitingThen;
    m_cache->setPreparation([&](const ImagePtr &image, const auto &) {
        EXPECT_NE(image, nullptr);
        waitingThen.push_back(m_main.waiting());
    });
    request({picture("0.png"), picture("1.png"), m_folder.at("gone.png")}, 0);
    m_operations.runAll();
    EXPECT_THAT(waitingThen, ElementsAre(0U));
}

TEST_F(Prefetch, withoutItsManagerNothingHappens)
{
    const QList<FileURL> list{picture("0.png"), picture("1.png"), picture("2.png")};
    request(list, 0);
    const Job first = m_operations.begin();
    const Job second = m_operations.begin();
    first();
    m_cache->prefetchImages(list, 1);
    m_loader.reset();
    m_cache.reset();
    m_sync.runAll();
    second();
    EXPECT_THAT(m_scope.log(), SizeIs(2)) << "only the first was read";
    m_main.runAll();
}

TEST_F(Prefetch, aLoaderThatIsGoneIsNoReasonToCrash)
{
    request({picture("0.png"), picture("1.png")}, 0);
    m_loader.reset();
    m_operations.runAll();
    EXPECT_EQ(m_main.waiting(), 0U);
}

class Caches : public test::SteppedPipeline
{
protected:
    [[nodiscard]] ImagePtr imageOf(std::uint32_t width, std::uint32_t height) const
    {
        DecodedImage decoded;
        decoded.pixels = PixelBuffer::allocate({width, height});
        return std::make_shared<const Image>(std::move(decoded));
    }
    [[nodiscard]] FileURL file(int number) const { return m_folder.at(QByteArray::number(number)); }
};

TEST_F(Caches, theTwoHundredAndFirstImageLeavesTwoHundred)
{
    for (int i = 0; i < 201; ++i) {
        m_cache->insertImage(file(i), anyImage());
        m_cache->averageColorCache.insert(file(i), std::make_shared<const Color>(), 0);
    }
    EXPECT_EQ(m_cache->imageCache.count(), 200U);
    EXPECT_EQ(m_cache->averageColorCache.count(), 200U);
    EXPECT_TRUE(m_cache->imageCache.contains(file(200)));
    EXPECT_FALSE(m_cache->imageCache.contains(file(0)));
}

TEST_F(Caches, plentifulMemoryLeavesTheCountAsTheOnlyBound)
{
    for (int i = 0; i < 30; ++i)
        m_cache->insertImage(file(i), imageOf(4000, 4000)); // pages nobody touched take no room
    EXPECT_EQ(m_cache->imageCache.count(), 30U);
    EXPECT_EQ(m_cache->imageCache.bytes(), std::size_t{30} * 4000 * 4000 * 4);
}

TEST_F(Caches, shortMemoryEvictsTheLeastRecentlyUsedDownToTheBudget)
{
    for (int i = 0; i < 6; ++i)
        m_cache->insertImage(file(i), imageOf(2048, 2048)); // 16 MiB each
    m_memory.budget = std::size_t{50} << 20;
    ASSERT_NE(m_cache->imageCache.find(file(0)), nullptr);
    m_cache->insertImage(file(6), imageOf(2048, 2048));
    EXPECT_EQ(m_cache->imageCache.count(), 3U);
    EXPECT_TRUE(m_cache->imageCache.contains(file(0)));
    EXPECT_TRUE(m_cache->imageCache.contains(file(5)));
    EXPECT_TRUE(m_cache->imageCache.contains(file(6)));
}

TEST_F(Caches, evictedBuffersGoBackAtOnce)
{
    std::weak_ptr<const Image> evicted;
    {
        const ImagePtr image = imageOf(2048, 2048);
        evicted = image;
        m_cache->insertImage(file(0), image);
    }
    m_memory.budget = 0;
    m_cache->insertImage(file(1), imageOf(2048, 2048));
    m_launcher.runAll();
    EXPECT_TRUE(evicted.expired());
    EXPECT_EQ(m_cache->imageCache.count(), 1U) << "the newest stays";
}

TEST_F(Caches, theSystemIsAskedNoMoreOftenThanItPays)
{
    for (int i = 0; i < 100; ++i)
        m_cache->insertImage(file(i), imageOf(16, 16));
    EXPECT_EQ(m_memory.asked, 0) << "icons don't fill a memory";
    for (int i = 0; i < 4; ++i)
        m_cache->insertImage(file(i), imageOf(2048, 2048));
    EXPECT_EQ(m_memory.asked, 4);
    m_memory.budget = std::size_t{1} << 30;
    m_cache->insertImage(file(4), imageOf(2048, 2048));
    m_cache->insertImage(file(5), imageOf(16, 16));
    EXPECT_EQ(m_memory.asked, 6) << "while memory is short, each time";
}

TEST_F(Caches, theFirstImageComesToTheScreenWithoutAsking)
{
    m_cache->insertImage(file(0), imageOf(4000, 4000));
    EXPECT_EQ(m_memory.asked, 0);
    m_cache->insertImage(file(1), imageOf(16, 16));
    EXPECT_EQ(m_memory.asked, 1) << "its bytes count all the same";
}

TEST_F(Caches, pressureFromOutsideShrinksTheImages)
{
    for (int i = 0; i < 4; ++i)
        m_cache->insertImage(file(i), imageOf(256, 256));
    m_cache->averageColorCache.insert(file(0), std::make_shared<const Color>(), sizeof(Color));
    m_cache->shrinkTo(std::size_t{2} * 256 * 256 * 4);
    EXPECT_EQ(m_cache->imageCache.count(), 2U);
    EXPECT_EQ(m_cache->averageColorCache.count(), 1U);
}

TEST_F(Caches, whatIsEvictedIsFreedInTheBackgroundAndThenTold)
{
    int told = 0;
    m_cache->setEvictionHandler([&] { ++told; });
    std::weak_ptr<const Image> oldest;
    for (int i = 0; i < 3; ++i) {
        ImagePtr image = imageOf(256, 256);
        if (i == 0)
            oldest = image;
        m_cache->insertImage(file(i), std::move(image));
    }
    m_cache->shrinkTo(0);
    EXPECT_FALSE(m_cache->imageCache.contains(file(0)));
    EXPECT_FALSE(oldest.expired());
    EXPECT_EQ(told, 0);
    m_launcher.runAll();
    EXPECT_TRUE(oldest.expired());
    EXPECT_EQ(told, 1);
    m_cache->shrinkTo(0);
    m_launcher.runAll();
    EXPECT_EQ(told, 1) << "there was nothing to evict";
}

TEST_F(Caches, theOneImageTooManyIsFreedInTheBackground)
{
    std::weak_ptr<const Image> oldest;
    for (int i = 0; i <= ImageCacheManager::maxCacheCount; ++i) {
        ImagePtr image = imageOf(4, 4);
        if (i == 0)
            oldest = image;
        m_cache->insertImage(file(i), std::move(image));
    }
    EXPECT_EQ(m_cache->imageCache.count(), 200U);
    EXPECT_FALSE(oldest.expired());
    m_launcher.runAll();
    EXPECT_TRUE(oldest.expired());
}

} // namespace
} // namespace tallowmere
