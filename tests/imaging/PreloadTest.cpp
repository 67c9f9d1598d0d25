// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/imaging/Pipeline.h"

#include <gmock/gmock.h>

namespace tallowmere {
namespace {

using test::Delivered;
using testing::ElementsAre;
using testing::IsEmpty;

class Preload : public test::SteppedPipeline
{};

TEST_F(Preload, beginsOnAThreadOfItsOwnAndCachesNothingByItself)
{
    const FileURL file = picture("a.png");
    m_loader->preload(file, kMaxSize);
    ASSERT_EQ(m_launcher.launched().size(), 1U);
    EXPECT_EQ(m_launcher.launched()[0].label, "com.tallowmere.imageLoading");
    EXPECT_EQ(m_launcher.launched()[0].quality, QualityOfService::userInitiated);
    m_launcher.runAll();
    m_main.runAll();
    EXPECT_FALSE(m_cache->imageCache.contains(file));
}

TEST_F(Preload, aFinishedOneIsDeliveredThroughTheMainQueue)
{
    const FileURL file = picture("a.png");
    m_loader->preload(file, kMaxSize);
    m_launcher.runAll();
    Delivered delivered;
    m_loader->loadImage(file, kMaxSize, delivered.completion());
    EXPECT_EQ(delivered.times, 0) << "only a cached image comes at once";
    m_main.runAll();
    EXPECT_EQ(delivered.times, 1);
    ASSERT_NE(delivered.image, nullptr);
    EXPECT_EQ(m_cache->imageCache.find(file), delivered.image);
    EXPECT_EQ(m_launcher.launched().size(), 1U) << "decoded once";
}

TEST_F(Preload, aRunningOneIsTakenOver)
{
    const FileURL file = picture("a.png");
    m_loader->preload(file, kMaxSize);
    Delivered delivered;
    m_loader->loadImage(file, kMaxSize, delivered.completion());
    EXPECT_EQ(m_launcher.launched().size(), 1U);
    m_launcher.runAll();
    EXPECT_EQ(delivered.times, 0);
    m_main.runAll();
    EXPECT_EQ(delivered.times, 1);
    EXPECT_NE(delivered.image, nullptr);
    EXPECT_TRUE(m_cache->imageCache.contains(file));
}

TEST_F(Preload, tellsWhoTakesItOverHowFarItHasCome)
{
    const FileURL file = m_folder.write("tall.png", test::pngOf(8, 640, {200, 100, 50, 255}));
    m_loader->preload(file, kMaxSize);
    m_launcher.runAll();
    Delivered delivered;
    const auto progress = m_loader->loadImage(file, kMaxSize, delivered.completion());
    ASSERT_NE(progress, nullptr);
    EXPECT_EQ(progress->fraction(), 1.0);
}

TEST_F(Preload, isTakenOverOnce)
{
    const FileURL file = picture("a.png");
    m_loader->preload(file, kMaxSize);
    Delivered first;
    Delivered second;
    m_loader->loadImage(file, kMaxSize, first.completion());
    m_loader->loadImage(file, kMaxSize, second.completion());
    EXPECT_EQ(m_launcher.launched().size(), 2U) << "overlapping loads both decode";
    m_launcher.runAll();
    m_main.runAll();
    EXPECT_EQ(first.times, 1);
    EXPECT_EQ(second.times, 1);
    EXPECT_NE(first.image, second.image);
}

TEST_F(Preload, anotherFileOrSizeIsNoneOfItsBusiness)
{
    m_loader->preload(picture("a.png"), kMaxSize);
    m_loader->loadImage(picture("b.png"), kMaxSize, [](const ImagePtr &) {});
    m_loader->loadImage(m_folder.at("a.png"), 100, [](const ImagePtr &) {});
    EXPECT_EQ(m_launcher.launched().size(), 3U);
}

TEST_F(Preload, aFailureIsNotRemembered)
{
    const FileURL file = m_folder.at("late.png");
    m_loader->preload(file, kMaxSize);
    m_launcher.runAll();
    picture("late.png");
    Delivered delivered;
    m_loader->loadImage(file, kMaxSize, delivered.completion());
    m_launcher.runAll();
    m_main.runAll();
    EXPECT_NE(delivered.image, nullptr);
    EXPECT_EQ(m_launcher.launched().size(), 2U);
}

TEST_F(Preload, aFailureThatWasTakenOverGivesNone)
{
    const FileURL file = m_folder.at("gone.png");
    m_loader->preload(file, kMaxSize);
    Delivered delivered;
    m_loader->loadImage(file, kMaxSize, delivered.completion());
    m_launcher.runAll();
    m_main.runAll();
    EXPECT_EQ(delivered.times, 1);
    EXPECT_EQ(delivered.image, nullptr);
}

TEST_F(Preload, aDroppedOneIsNeitherReadNorDelivered)
{
    const FileURL file = picture("a.png");
    m_loader->preload(file, kMaxSize);
    m_loader->dropPreload();
    m_launcher.runAll();
    EXPECT_THAT(m_scope.log(), IsEmpty());
    Delivered delivered;
    m_loader->loadImage(file, kMaxSize, delivered.completion());
    EXPECT_EQ(m_launcher.launched().size(), 2U) << "a load of its own";
    m_launcher.runAll();
    m_main.runAll();
    EXPECT_NE(delivered.image, nullptr);
}

TEST_F(Preload, aDroppedOneGivesItsImageBack)
{
    std::weak_ptr<const Image> seen;
    m_loader->setPreparation([&](const ImagePtr &image) { seen = image; });
    m_loader->preload(picture("a.png"), kMaxSize);
    m_launcher.runAll();
    EXPECT_FALSE(seen.expired());
    m_loader->dropPreload();
    EXPECT_TRUE(seen.expired());
}

TEST_F(Preload, whatWasTakenOverIsNotDropped)
{
    const FileURL file = picture("a.png");
    m_loader->preload(file, kMaxSize);
    Delivered delivered;
    m_loader->loadImage(file, kMaxSize, delivered.completion());
    m_loader->dropPreload();
    m_launcher.runAll();
    m_main.runAll();
    EXPECT_NE(delivered.image, nullptr);
}

TEST_F(Preload, oneTakenOverFromALoaderThatIsGoneGivesNone)
{
    const FileURL file = picture("a.png");
    m_loader->preload(file, kMaxSize);
    Delivered delivered;
    m_loader->loadImage(file, kMaxSize, delivered.completion());
    m_loader.reset();
    m_launcher.runAll();
    m_main.runAll();
    EXPECT_EQ(delivered.times, 1);
    EXPECT_EQ(delivered.image, nullptr);
}

TEST_F(Preload, aCachedFileNeedsNone)
{
    const FileURL file = picture("a.png");
    m_cache->imageCache.insert(file, anyImage(), 0);
    m_loader->preload(file, kMaxSize);
    EXPECT_THAT(m_launcher.launched(), IsEmpty());
}

TEST_F(Preload, anImageIsPreparedWhereItIsDecoded)
{
    int prepared = 0;
    m_loader->setPreparation([&](const ImagePtr &) { ++prepared; });
    m_loader->preload(picture("a.png"), kMaxSize);
    EXPECT_EQ(prepared, 0);
    m_launcher.runAll();
    EXPECT_EQ(prepared, 1);
    m_loader->loadImage(m_folder.at("a.png"), kMaxSize, [](const ImagePtr &) {});
    m_main.runAll();
    EXPECT_EQ(prepared, 1);
}

} // namespace
} // namespace tallowmere
