// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/ImageLoader.h"

#include "tests/imaging/Pipeline.h"

#include <gmock/gmock.h>

#include <sys/stat.h>

namespace tallowmere {
namespace {

using test::Delivered;
using test::Rgba;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr Rgba kRed{255, 0, 0, 255};
constexpr Rgba kBlue{0, 0, 255, 255};

class ImageLoading : public test::SteppedPipeline
{
protected:
    [[nodiscard]] ImagePtr loaded(const FileURL &file)
    {
        Delivered delivered;
        m_loader->loadImage(file, kMaxSize, delivered.completion());
        m_launcher.runAll();
        m_main.runAll();
        EXPECT_EQ(delivered.times, 1);
        return delivered.image;
    }
    /// B, G, R, A of one pixel.
    static std::array<int, 4> pixel(const Image &image, std::uint32_t x, std::uint32_t y)
    {
        const std::byte *at = image.decoded().pixels.row(y) + std::size_t{4} * x;
        return {std::to_integer<int>(at[0]), std::to_integer<int>(at[1]), std::to_integer<int>(at[2]),
                std::to_integer<int>(at[3])};
    }
};

TEST_F(ImageLoading, aLargeJpegLoadsAtFourThousandPoints)
{
    const auto image = loaded(m_folder.write("large.jpg", test::jpegOf(8000, 6000, {200, 100, 50, 255})));
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->size(), QSizeF(4000, 3000));
    EXPECT_EQ(image->pixelSize(), (PixelSize{4000, 3000}));
}

TEST_F(ImageLoading, tellsHowFarTheDecodeHasCome)
{
    const FileURL file = m_folder.write("a.png", test::pngOf(80, 640, kRed));
    Delivered delivered;
    const auto progress = m_loader->loadImage(file, kMaxSize, delivered.completion());
    ASSERT_NE(progress, nullptr);
    EXPECT_EQ(progress->fraction(), std::nullopt) << "not yet begun";
    m_launcher.runAll();
    EXPECT_EQ(progress->fraction(), 1.0);
    m_main.runAll();
    EXPECT_EQ(m_loader->loadImage(file, kMaxSize, delivered.completion()), nullptr) << "cached";
}

TEST_F(ImageLoading, aSmallPngLoadsAtItsOwnSize)
{
    const auto image = loaded(m_folder.write("small.png", test::pngOf(800, 600, kRed)));
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->size(), QSizeF(800, 600));
}

TEST_F(ImageLoading, aJpegStoredSidewaysLoadsUprightWithinTheLimit)
{
    const auto image = loaded(m_folder.write("sideways.jpg", test::halvedJpegOf(6000, 4000, kRed, kBlue, 6)));
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->size().height(), 4000);
    EXPECT_NEAR(image->size().width(), 2667, 1);
    EXPECT_GT(pixel(*image, 1300, 100)[2], 200) << "the stored left side is on top: red";
    EXPECT_GT(pixel(*image, 1300, 3900)[0], 200) << "blue below";
}

TEST_F(ImageLoading, anAnimatedWebpLoadsItsFirstFrame)
{
    const auto image = loaded(m_folder.write("animated.webp", test::animatedWebpOf(20, 10, {kRed, kBlue})));
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->size(), QSizeF(20, 10));
    EXPECT_EQ(pixel(*image, 5, 5), (std::array{0, 0, 255, 255}));
}

TEST_F(ImageLoading, aTextFileNamedLikeAPictureGivesNoneAndIsTriedAgain)
{
    const FileURL file = m_folder.write("note.jpg", "this is no picture");
    EXPECT_EQ(loaded(file), nullptr);
    EXPECT_EQ(m_launcher.launched().size(), 1U);
    EXPECT_EQ(loaded(file), nullptr);
    EXPECT_EQ(m_launcher.launched().size(), 2U);
    picture("note.jpg");
    EXPECT_NE(loaded(file), nullptr);
}

TEST_F(ImageLoading, aCachedImageIsDeliveredBeforeLoadImageReturns)
{
    const FileURL file = m_folder.at("cached.jpg"); // which does not even exist
    const ImagePtr cached = anyImage();
    m_cache->imageCache.insert(file, cached, 0);
    Delivered delivered;
    m_loader->loadImage(file, kMaxSize, delivered.completion());
    EXPECT_EQ(delivered.times, 1);
    EXPECT_EQ(delivered.image, cached) << "the very same, not a copy";
    EXPECT_THAT(m_launcher.launched(), IsEmpty());
    EXPECT_EQ(m_main.waiting(), 0U);
}

TEST_F(ImageLoading, anUncachedLoadReturnsAtOnceAndIsDeliveredThroughTheMainQueue)
{
    const FileURL file = picture("a.png");
    Delivered delivered;
    m_loader->loadImage(file, kMaxSize, delivered.completion());
    EXPECT_EQ(delivered.times, 0);
    EXPECT_THAT(m_scope.log(), IsEmpty()) << "reading belongs to the background";
    ASSERT_EQ(m_launcher.launched().size(), 1U);
    EXPECT_EQ(m_launcher.launched()[0].label, "com.tallowmere.imageLoading");
    EXPECT_EQ(m_launcher.launched()[0].quality, QualityOfService::userInitiated);

    m_launcher.run(0);
    EXPECT_EQ(delivered.times, 0);
    EXPECT_FALSE(m_cache->imageCache.contains(file)) << "the cache is written on the main queue only";
    EXPECT_EQ(m_main.waiting(), 1U);

    m_main.runAll();
    EXPECT_EQ(delivered.times, 1);
    EXPECT_EQ(m_cache->imageCache.find(file), delivered.image);
}

TEST_F(ImageLoading, theImageIsInTheCacheWhenItsCompletionRuns)
{
    const FileURL file = picture("a.png");
    bool cached = false;
    m_loader->loadImage(file, kMaxSize, [&](const ImagePtr &) { cached = m_cache->imageCache.contains(file); });
    m_launcher.runAll();
    m_main.runAll();
    EXPECT_TRUE(cached);
}

TEST_F(ImageLoading, overlappingLoadsOfOneFileBothDecodeAndTheLaterStoreWins)
{
    const FileURL file = picture("a.png");
    Delivered first;
    Delivered second;
    m_loader->loadImage(file, kMaxSize, first.completion());
    m_loader->loadImage(file, kMaxSize, second.completion());
    EXPECT_EQ(m_launcher.launched().size(), 2U);
    m_launcher.run(1);
    m_launcher.run(0);
    m_main.runAll();
    ASSERT_NE(first.image, nullptr);
    ASSERT_NE(second.image, nullptr);
    EXPECT_NE(first.image, second.image);
    EXPECT_EQ(m_cache->imageCache.find(file), first.image) << "it was posted last";
}

TEST_F(ImageLoading, resultsAreDeliveredInTheOrderTheyFinish)
{
    std::vector<int> order;
    for (int i = 0; i < 3; ++i)
        m_loader->loadImage(picture(QByteArray::number(i) + ".png"), kMaxSize,
                            [&order, i](const ImagePtr &) { order.push_back(i); });
    m_launcher.run(2);
    m_launcher.run(0);
    m_launcher.run(1);
    m_main.runAll();
    EXPECT_THAT(order, ElementsAre(2, 0, 1));
}

TEST_F(ImageLoading, accessIsHeldForReadingAndDecodingOnly)
{
    const FileURL file = picture("a.png");
    m_loader->loadImage(file, kMaxSize, [](const ImagePtr &) {});
    m_launcher.runAll();
    EXPECT_THAT(m_scope.log(), ElementsAre("start " + file.path(), "stop " + file.path()));
    m_main.runAll();
    EXPECT_EQ(m_scope.log().size(), 2U);
}

TEST_F(ImageLoading, whatCannotBeReadGivesNone)
{
    EXPECT_EQ(loaded(m_folder.at("gone.jpg")), nullptr);
    EXPECT_EQ(loaded(m_folder.makeFolder("folder.jpg")), nullptr);
    ASSERT_EQ(::mkfifo(m_folder.at("fifo.jpg").path().constData(), 0600), 0);
    EXPECT_EQ(loaded(m_folder.at("fifo.jpg")), nullptr);
    EXPECT_EQ(loaded(m_folder.write("empty.jpg", QByteArray())), nullptr);
    EXPECT_EQ(m_cache->imageCache.count(), 0U);
    EXPECT_THAT(m_scope.log(), testing::SizeIs(8)) << "access is given back after a failure, too";
}

TEST_F(ImageLoading, withoutItsLoaderALoadGivesNone)
{
    Delivered delivered;
    m_loader->loadImage(picture("a.png"), kMaxSize, delivered.completion());
    m_loader.reset();
    m_launcher.runAll();
    m_main.runAll();
    EXPECT_EQ(delivered.times, 1);
    EXPECT_EQ(delivered.image, nullptr);
    EXPECT_THAT(m_scope.log(), IsEmpty());
}

TEST_F(ImageLoading, aLoadRunsToItsEndAndFillsTheCacheWhoeverHasMovedOn)
{
    const FileURL left = picture("left.png");
    m_loader->loadImage(left, kMaxSize, [](const ImagePtr &) {});
    m_loader->loadImage(picture("current.png"), kMaxSize, [](const ImagePtr &) {});
    m_loader->dropPreload();
    m_launcher.runAll();
    m_main.runAll();
    EXPECT_TRUE(m_cache->imageCache.contains(left));
}

TEST_F(ImageLoading, theCompletionDiesOnTheMainQueue)
{
    const auto owned = std::make_shared<int>(0);
    m_loader->loadImage(picture("a.png"), kMaxSize, [owned](const ImagePtr &) {});
    const Job job = m_launcher.take(0);
    job();
    EXPECT_EQ(owned.use_count(), 2) << "in the posted result and nowhere else";
    m_main.runAll();
    EXPECT_EQ(owned.use_count(), 1) << "although the worker's job still lives";
}

TEST_F(ImageLoading, thePreparationSeesTheImageOnTheDecodingThreadBeforeItIsDelivered)
{
    ImagePtr prepared;
    m_loader->setPreparation([&](const ImagePtr &image) {
        EXPECT_EQ(m_main.waiting(), 0U);
        prepared = image;
    });
    Delivered delivered;
    m_loader->loadImage(picture("a.png"), kMaxSize, delivered.completion());
    EXPECT_EQ(prepared, nullptr);
    m_launcher.runAll();
    EXPECT_NE(prepared, nullptr);
    m_main.runAll();
    EXPECT_EQ(delivered.image, prepared);
    EXPECT_EQ(loaded(m_folder.at("gone.jpg")), nullptr);
    EXPECT_EQ(delivered.image, prepared) << "a failure is not prepared";
}

TEST_F(ImageLoading, decodingNeverEnlargesAndRefusesASizeOfNothing)
{
    const QByteArray file = test::pngOf(40, 20, kRed);
    ASSERT_NE(m_loader->decodeImage(bytes(file), 4000), nullptr);
    EXPECT_EQ(m_loader->decodeImage(bytes(file), 4000)->size(), QSizeF(40, 20));
    EXPECT_EQ(m_loader->decodeImage(bytes(file), 40)->size(), QSizeF(40, 20));
    EXPECT_EQ(m_loader->decodeImage(bytes(file), 10)->size(), QSizeF(10, 5));
    EXPECT_EQ(m_loader->decodeImage(bytes(file), 0), nullptr);
    EXPECT_EQ(m_loader->decodeImage(bytes(file), -1), nullptr);
    EXPECT_EQ(m_loader->decodeImage({}, 4000), nullptr);
    EXPECT_EQ(m_loader->decodeImage(bytes("no picture"), 4000), nullptr);
}

TEST_F(ImageLoading, theAverageOfOneSolidColourIsThatColour)
{
    const auto image = m_loader->decodeImage(bytes(test::pngOf(64, 48, {200, 100, 50, 255})), 4000);
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(m_loader->calculateAverageColor(*image), (Color{200 / 255.0, 100 / 255.0, 50 / 255.0, 1.0}));
}

TEST_F(ImageLoading, anImageComesInTheColoursOfTheScreen)
{
    const auto image = m_loader->decodeImage(bytes(test::inDisplayP3(test::pngOf(64, 48, {200, 60, 60, 255}))), 4000);
    ASSERT_NE(image, nullptr);
    // The same light: sRGB's red reaches less far, and its blue and green must be taken back a little.
    const std::byte *pixel = image->decoded().pixels.row(20) + 4 * std::size_t{20};
    EXPECT_NEAR(std::to_integer<int>(pixel[2]), 217, 1);
    EXPECT_NEAR(std::to_integer<int>(pixel[1]), 42, 1);
    EXPECT_NEAR(std::to_integer<int>(pixel[0]), 52, 1);
    EXPECT_EQ(std::to_integer<int>(pixel[3]), 255);
}

TEST_F(ImageLoading, theAverageIsThatOfTheStoredValuesWhateverTheProfile)
{
    const auto image = m_loader->decodeImage(bytes(test::inDisplayP3(test::pngOf(64, 48, {200, 60, 60, 255}))), 4000);
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(m_loader->calculateAverageColor(*image), (Color{200 / 255.0, 60 / 255.0, 60 / 255.0, 1.0}));
}

TEST_F(ImageLoading, theAverageOfATransparentImageHasAlphaZero)
{
    const auto image = m_loader->decodeImage(bytes(test::pngOf(16, 16, {200, 100, 50, 0}, true)), 4000);
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(m_loader->calculateAverageColor(*image), (Color{0, 0, 0, 0}));
}

TEST_F(ImageLoading, anImageWithoutABitmapHasNoAverage)
{
    EXPECT_FALSE(m_loader->calculateAverageColor(Image(QSizeF(100, 100))).has_value());
}

} // namespace
} // namespace tallowmere
