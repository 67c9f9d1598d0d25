// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/imaging/Pipeline.h"

namespace tallowmere {
namespace {

using test::Delivered;

/// A screen of 300 pixels a side, and pictures that are large beside it.
class Preview : public test::SteppedPipeline
{
protected:
    Preview()
    {
        m_loader->setPreviewSize([this](PixelSize full) {
            m_asked.push_back(full);
            return m_side == 0 ? PixelSize() : full.fittedTo(m_side);
        });
    }
    FileURL photo(int exifOrientation = 0) const
    {
        return m_folder.write("photo.jpg", test::jpegOf(2400, 1800, {200, 100, 50, 255}, exifOrientation));
    }
    void load(const FileURL &file, int maxSize = kMaxSize)
    {
        m_loader->loadImage(file, maxSize, m_whole.completion(), m_preview.completion());
    }
    void loadAndRun(const FileURL &file)
    {
        load(file);
        runAll();
    }
    void runAll()
    {
        m_launcher.runAll();
        m_main.runAll();
    }

    std::uint32_t m_side = 300;
    std::vector<PixelSize> m_asked;
    Delivered m_preview;
    Delivered m_whole;
};

TEST_F(Preview, comesBeforeTheWholePictureAndStandsInForItsSize)
{
    load(photo());
    m_launcher.runAll();
    ASSERT_TRUE(m_main.runNext());
    ASSERT_EQ(m_preview.times, 1);
    EXPECT_EQ(m_whole.times, 0);
    ASSERT_NE(m_preview.image, nullptr);
    EXPECT_TRUE(m_preview.image->isPreview());
    EXPECT_EQ(m_preview.image->pixelSize(), (PixelSize{2400, 1800}));
    EXPECT_EQ(m_preview.image->size(), QSizeF(2400, 1800));
    EXPECT_EQ(m_preview.image->decoded().pixels.size(), (PixelSize{300, 225}));
    EXPECT_EQ(m_preview.image->bytes(), std::size_t{300} * 225 * 4);
    m_main.runAll();
    EXPECT_EQ(m_preview.times, 1);
    ASSERT_EQ(m_whole.times, 1);
    EXPECT_FALSE(m_whole.image->isPreview());
    EXPECT_EQ(m_whole.image->pixelSize(), (PixelSize{2400, 1800}));
}

TEST_F(Preview, isNeverCached)
{
    const FileURL file = photo();
    load(file);
    m_launcher.runAll();
    ASSERT_TRUE(m_main.runNext());
    ASSERT_EQ(m_preview.times, 1);
    EXPECT_FALSE(m_cache->imageCache.contains(file));
    m_main.runAll();
    EXPECT_EQ(m_cache->imageCache.find(file), m_whole.image);
}

TEST_F(Preview, isUprightAndAskedForAtTheSizeThatThePictureWillHave)
{
    load(photo(6), 1000);
    runAll();
    EXPECT_EQ(m_asked, (std::vector{PixelSize{750, 1000}}));
    ASSERT_EQ(m_preview.times, 1);
    EXPECT_EQ(m_preview.image->decoded().pixels.size(), (PixelSize{225, 300}));
    EXPECT_EQ(m_preview.image->pixelSize(), m_whole.image->pixelSize());
}

TEST_F(Preview, coversTheScreenThoughThatRoundsTheOtherSideUp)
{
    m_loader->setPreviewSize([](PixelSize) { return PixelSize{300, 226}; });
    load(photo());
    runAll();
    ASSERT_EQ(m_preview.times, 1);
    EXPECT_EQ(m_preview.image->decoded().pixels.size(), (PixelSize{301, 226}));
}

TEST_F(Preview, isNotMadeWhereItWouldTakeAsLongAsTheWhole)
{
    loadAndRun(m_folder.write("small.jpg", test::jpegOf(640, 480, {200, 100, 50, 255})));
    loadAndRun(m_folder.write("large.png", test::pngOf(2400, 1800, {200, 100, 50, 255})));
    const QByteArray photo = test::jpegOf(2400, 1800, {200, 100, 50, 255});
    m_side = 0; // nobody knows
    loadAndRun(m_folder.write("a.jpg", photo));
    m_side = 1201; // more than half of it
    loadAndRun(m_folder.write("b.jpg", photo));
    EXPECT_EQ(m_preview.times, 0);
    EXPECT_EQ(m_whole.times, 4);
    m_side = 1200;
    loadAndRun(m_folder.write("c.jpg", photo));
    EXPECT_EQ(m_preview.times, 1) << "the last that is worth it";
}

TEST_F(Preview, isNotMadeForALoadThatDoesNotAskForIt)
{
    m_loader->loadImage(photo(), kMaxSize, m_whole.completion());
    runAll();
    EXPECT_TRUE(m_asked.empty());
    EXPECT_EQ(m_whole.times, 1);
}

TEST_F(Preview, ofAPreloadGoesToWhoTakesItOverWhileItRuns)
{
    const FileURL file = photo();
    m_loader->preload(file, kMaxSize);
    load(file);
    EXPECT_EQ(m_launcher.launched().size(), 1U);
    m_launcher.runAll();
    ASSERT_TRUE(m_main.runNext());
    EXPECT_EQ(m_preview.times, 1);
    EXPECT_EQ(m_whole.times, 0);
    m_main.runAll();
    EXPECT_EQ(m_whole.times, 1);
}

TEST_F(Preview, isPreparedBeforeItIsDelivered)
{
    const FileURL file = photo();
    m_loader->setPreviewSize([](PixelSize full) { return full.fittedTo(300); });
    std::vector<bool> prepared;
    m_loader->setPreparation([&](const ImagePtr &image) {
        prepared.push_back(image->isPreview());
        EXPECT_EQ(m_main.waiting(), prepared.size() - 1);
    });
    load(file);
    m_launcher.runAll();
    EXPECT_EQ(prepared, (std::vector<bool>{true, false}));
}

TEST_F(Preview, ofAPreloadThatIsThereAlreadyIsHandedOverAtOnce)
{
    const FileURL file = photo();
    m_loader->setPreviewSize([](PixelSize full) { return full.fittedTo(300); });
    bool tookOver = false;
    // Called between the two decodes, as far as another thread could tell.
    m_loader->setPreparation([&](const ImagePtr &image) {
        if (image->isPreview())
            return;
        load(file);
        tookOver = m_main.waiting() == 1;
        m_main.runAll();
        EXPECT_EQ(m_preview.times, 1);
        EXPECT_EQ(m_whole.times, 0);
    });
    m_loader->preload(file, kMaxSize);
    runAll();
    EXPECT_TRUE(tookOver);
    EXPECT_EQ(m_preview.times, 1);
    EXPECT_EQ(m_whole.times, 1);
}

TEST_F(Preview, ofAFinishedPreloadIsOfNoUseAnyMore)
{
    const FileURL file = photo();
    m_loader->preload(file, kMaxSize);
    m_launcher.runAll();
    load(file);
    m_main.runAll();
    EXPECT_EQ(m_preview.times, 0);
    EXPECT_EQ(m_whole.times, 1);
}

TEST_F(Preview, ofACutOffPictureIsFollowedByWhatThereIs)
{
    const QByteArray whole = test::jpegOf(2400, 1800, {200, 100, 50, 255});
    load(m_folder.write("cut.jpg", whole.first(whole.size() / 2)));
    runAll();
    ASSERT_EQ(m_whole.times, 1);
    ASSERT_NE(m_whole.image, nullptr);
    EXPECT_EQ(m_whole.image->pixelSize(), (PixelSize{2400, 1800}));
}

} // namespace
} // namespace tallowmere
