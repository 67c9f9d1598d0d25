// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "viewer/DisplayCopies.h"

#include "settings/SettingsManager.h"
#include "tests/doubles/MemoryDefaultsStore.h"
#include "viewer/DisplayPreparation.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

namespace tallowmere {
namespace {

ImagePtr plainImage(PixelSize size)
{
    DecodedImage decoded;
    decoded.pixels = PixelBuffer::allocate(size);
    return std::make_shared<const Image>(std::move(decoded));
}

TEST(DisplayCopies, makesACopyOnceAndFindsItAgain)
{
    DisplayCopies copies;
    const ImagePtr image = plainImage({40, 20});
    EXPECT_FALSE(copies.find(image, {20, 10}));
    const DisplayBitmap made = copies.make(image, {20, 10});
    ASSERT_TRUE(made);
    EXPECT_EQ(made.pixels->size(), (PixelSize{20, 10}));
    EXPECT_EQ(copies.find(image, {20, 10}).pixels, made.pixels);
    EXPECT_EQ(copies.make(image, {20, 10}).pixels, made.pixels);
    EXPECT_EQ(copies.bytes(), 20U * 10 * 4);
}

TEST(DisplayCopies, atItsOwnSizeAnImageStandsForItsCopy)
{
    DisplayCopies copies;
    const ImagePtr image = plainImage({40, 20});
    const DisplayBitmap made = copies.make(image, {40, 20});
    EXPECT_EQ(made.pixels.get(), &image->decoded().pixels);
    EXPECT_EQ(copies.bytes(), 0U);
}

TEST(DisplayCopies, forgetsWhatWasUsedLongestAgo)
{
    DisplayCopies copies(3 * 10 * 10 * 4);
    const std::vector<ImagePtr> images{plainImage({20, 20}), plainImage({20, 20}), plainImage({20, 20}),
                                       plainImage({20, 20})};
    for (int i = 0; i < 3; ++i)
        copies.make(images[i], {10, 10});
    EXPECT_TRUE(copies.find(images[0], {10, 10})) << "a use";
    copies.make(images[3], {10, 10});
    EXPECT_TRUE(copies.find(images[0], {10, 10}));
    EXPECT_FALSE(copies.find(images[1], {10, 10}));
    EXPECT_TRUE(copies.find(images[2], {10, 10}));
    EXPECT_LE(copies.bytes(), 3U * 10 * 10 * 4);
}

TEST(DisplayCopies, keepsTheNewestEvenWhenItAloneExceedsTheBudget)
{
    DisplayCopies copies(100);
    const ImagePtr image = plainImage({40, 40});
    copies.make(image, {20, 20});
    EXPECT_TRUE(copies.find(image, {20, 20}));
}

TEST(DisplayCopies, dropsTheCopiesOfImagesThatHaveDied)
{
    DisplayCopies copies;
    copies.make(plainImage({40, 20}), {20, 10});
    copies.make(plainImage({40, 20}), {4, 2});
    EXPECT_EQ(copies.bytes(), 4U * 2 * 4);
}

TEST(DisplayCopies, handsOutTheNextLargerCopyForScalingInAHurry)
{
    DisplayCopies copies;
    const ImagePtr image = plainImage({400, 200});
    EXPECT_FALSE(copies.findSimilar(image, {100, 50}));
    for (const std::uint32_t width : {40U, 200U, 120U, 60U})
        copies.make(image, {width, width / 2});
    EXPECT_EQ(copies.findSimilar(image, {100, 50}).pixels->size().width, 120U);
    EXPECT_EQ(copies.findSimilar(image, {300, 150}).pixels->size().width, 200U) << "none is large enough";
}

TEST(DisplayCopies, areEnlargedForADenserScreen)
{
    DecodedImage decoded;
    decoded.pixels = PixelBuffer::allocate({2, 1});
    auto *row = reinterpret_cast<std::uint32_t *>(decoded.pixels.row(0));
    row[0] = 0xff000000U;
    row[1] = 0xffffffffU;
    DisplayCopies copies;
    const auto image = std::make_shared<const Image>(std::move(decoded));
    const DisplayBitmap made = copies.make(image, {20, 10});
    ASSERT_TRUE(made);
    EXPECT_EQ(made.pixels->size(), (PixelSize{20, 10}));
    const QImage seen = made.view();
    EXPECT_EQ(seen.pixel(0, 5), 0xff000000U);
    EXPECT_EQ(seen.pixel(19, 5), 0xffffffffU);
    for (int x = 1; x < 20; ++x)
        EXPECT_GE(qRed(seen.pixel(x, 5)), qRed(seen.pixel(x - 1, 5))) << "without steps";
    EXPECT_NEAR(qRed(seen.pixel(10, 5)), 128, 20);
}

TEST(DisplayCopies, ofOneImageOnlyTheLastFewSizesAreKept)
{
    DisplayCopies copies;
    const ImagePtr image = plainImage({400, 200});
    const ImagePtr other = plainImage({400, 200});
    copies.make(other, {20, 10});
    for (std::uint32_t width = 100; width < 150; ++width)
        copies.make(image, {width, 50});
    EXPECT_TRUE(copies.find(image, {149, 50}));
    EXPECT_TRUE(copies.find(image, {148, 50}));
    EXPECT_TRUE(copies.find(image, {147, 50}));
    EXPECT_FALSE(copies.find(image, {146, 50}));
    EXPECT_TRUE(copies.find(other, {20, 10}));
}

TEST(DisplayCopies, whatIsNotFavouredGoesFirst)
{
    DisplayCopies copies(3 * 10 * 10 * 4);
    const std::vector<ImagePtr> images{plainImage({20, 20}), plainImage({20, 20}), plainImage({20, 20}),
                                       plainImage({20, 20})};
    for (int i = 0; i < 3; ++i)
        copies.make(images[i], {10, 10});
    EXPECT_FALSE(copies.hasRoomFor({10, 10}));
    copies.favour({images[0], images[2]});
    EXPECT_TRUE(copies.hasRoomFor({10, 10}));
    EXPECT_FALSE(copies.hasRoomFor({20, 10}));
    copies.make(images[3], {10, 10});
    EXPECT_TRUE(copies.find(images[0], {10, 10}));
    EXPECT_FALSE(copies.find(images[1], {10, 10})) << "although it is not the oldest";
    EXPECT_TRUE(copies.find(images[2], {10, 10}));
    EXPECT_FALSE(copies.hasRoomFor({10, 10})) << "a new copy is favoured until somebody says otherwise";
}

TEST(DisplayCopies, dropsWhatIsUselessWhenAsked)
{
    DisplayCopies copies;
    const ImagePtr living = plainImage({40, 20});
    copies.make(living, {4, 2});
    copies.make(plainImage({40, 20}), {20, 10});
    copies.dropUseless();
    EXPECT_EQ(copies.bytes(), 4U * 2 * 4);
}

TEST(DisplayCopies, givesNothingWhenCancelled)
{
    DisplayCopies copies;
    const ImagePtr image = plainImage({2000, 1500});
    EXPECT_FALSE(copies.make(image, {1000, 750}, [] { return true; }));
    EXPECT_EQ(copies.bytes(), 0U);
}

TEST(DisplayCopies, isShownWithoutCopyingThePixels)
{
    DisplayCopies copies;
    const ImagePtr image = plainImage({40, 20});
    const DisplayBitmap bitmap = copies.make(image, {20, 10});
    EXPECT_EQ(static_cast<const void *>(bitmap.view().constBits()), bitmap.pixels->row(0));
    EXPECT_EQ(bitmap.view().format(), QImage::Format_RGB32);
}

TEST(DisplayCopies, areSharedBetweenThreads)
{
    DisplayCopies copies(20 * 10 * 4 * 4);
    std::vector<ImagePtr> images;
    for (int i = 0; i < 8; ++i)
        images.push_back(plainImage({40, 20}));
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([&] {
            for (int round = 0; round < 50; ++round) {
                for (const ImagePtr &image : images)
                    EXPECT_TRUE(copies.make(image, {20, 10}));
            }
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_LE(copies.bytes(), 20U * 10 * 4 * 4);
}

TEST(DisplayTarget, foreseesTheSizeOfAWindowThatFollowsTheImage)
{
    DisplayTarget target{{600, 400}, 2.0, ScreenArea{{0, 0, 1440, 875}, 2.0}, {0, 28}};
    EXPECT_EQ(target.copySizeFor({4000, 3000}, true), (PixelSize{2258, 1694}));
    EXPECT_EQ(target.copySizeFor({4000, 3000}, false), (PixelSize{1067, 800}));
    target.screen.reset();
    EXPECT_EQ(target.copySizeFor({4000, 3000}, true), (PixelSize{1067, 800})) << "the window can't follow";
}

TEST(DisplayPreparation, hasTheCopyReadyBeforeItIsAskedFor)
{
    SettingsManager settings(std::make_unique<test::MemoryDefaultsStore>());
    settings.setAutoResizeToImageSize(false);
    DisplayPreparation preparation(settings);
    const ImagePtr image = plainImage({4000, 20});
    preparation.prepare(image);
    EXPECT_EQ(preparation.copies().bytes(), 0U) << "nobody knows how large it will be shown";
    preparation.setTarget({{400, 300}, 1.0, std::nullopt, {}});
    EXPECT_FALSE(preparation.isPrepared(image));
    preparation.prepare(image);
    EXPECT_TRUE(preparation.isPrepared(image));
    EXPECT_TRUE(preparation.copies().find(image, {400, 2}));
}

TEST(DisplayPreparation, farNeighboursDoNotPushOutNearerOnes)
{
    SettingsManager settings(std::make_unique<test::MemoryDefaultsStore>());
    settings.setAutoResizeToImageSize(false);
    DisplayPreparation preparation(settings, 2 * 10 * 10 * 4);
    preparation.setTarget({{10, 10}, 1.0, std::nullopt, {}});
    const std::vector<ImagePtr> images{plainImage({40, 40}), plainImage({40, 40}), plainImage({40, 40})};
    for (const ImagePtr &image : images)
        preparation.prepareIfThereIsRoom(image);
    EXPECT_TRUE(preparation.isPrepared(images[0]));
    EXPECT_TRUE(preparation.isPrepared(images[1]));
    EXPECT_FALSE(preparation.isPrepared(images[2]));
    preparation.prepare(images[2]);
    EXPECT_TRUE(preparation.isPrepared(images[2])) << "one that is about to be shown does";
}

TEST(DisplayPreparation, passesOverWhatHasNoPixels)
{
    SettingsManager settings(std::make_unique<test::MemoryDefaultsStore>());
    DisplayPreparation preparation(settings);
    preparation.setTarget({{400, 300}, 1.0, std::nullopt, {}});
    preparation.prepare(nullptr);
    preparation.prepare(std::make_shared<const Image>(QSizeF(10, 10)));
    EXPECT_EQ(preparation.copies().bytes(), 0U);
}

} // namespace
} // namespace tallowmere
