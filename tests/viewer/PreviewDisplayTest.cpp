// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/doubles/TestImages.h"
#include "tests/viewer/ViewerFixture.h"

#include <algorithm>

namespace tallowmere::test {
namespace {

constexpr Rgba kOchre{200, 150, 50, 255};

/// A photo so large that a preview of it comes first.
class PreviewDisplay : public ViewerFixture
{
protected:
    FileURL photo(const QByteArray &name = "photo.jpg") const { return folder.write(name, jpegOf(2700, 1800, kOchre)); }
    [[nodiscard]] bool showsPreview() const
    {
        return controller->currentImage() && controller->currentImage()->isPreview();
    }
    /// Opens it, decodes it, and takes home what comes before the whole picture.
    void openUpToThePreview(const FileURL &file)
    {
        showWindow();
        controller->openImage(file);
        launcher.runAll();
        while (!showsPreview() && mainQueue.runNext()) {
        }
        ASSERT_TRUE(showsPreview());
    }
    [[nodiscard]] std::ptrdiff_t launchedAs(const std::string &label) const
    {
        return std::ranges::count(launcher.launched(), label, &SteppedLauncher::Launched::label);
    }
    [[nodiscard]] QColor middleOfTheView() const
    {
        return controller->view()->grab().toImage().pixelColor(controller->view()->rect().center());
    }
};

TEST_F(PreviewDisplay, isSeenUntilTheWholePictureTakesItsPlace)
{
    const FileURL file = photo();
    openUpToThePreview(file);
    EXPECT_TRUE(imageView()->hasPaintedImage());
    EXPECT_FALSE(idleScreen()->isVisible());
    EXPECT_NEAR(middleOfTheView().red(), kOchre[0], 4);
    EXPECT_EQ(launchedAs("com.tallowmere.displayCopy"), 0) << "it is reduced where it is painted";
    EXPECT_FALSE(cache->imageCache.contains(file));

    mainQueue.runAll();
    EXPECT_FALSE(showsPreview());
    EXPECT_EQ(controller->currentImage(), cache->imageCache.find(file));
    EXPECT_EQ(controller->currentImage()->pixelSize(), (PixelSize{2700, 1800}));
    EXPECT_NEAR(middleOfTheView().red(), kOchre[0], 4);
}

TEST_F(PreviewDisplay, neverReplacesWhatIsShownByThen)
{
    const FileURL other = cachedFile("other.jpg");
    const FileURL file = photo();
    showWindow();
    controller->openImage(file);
    launcher.runAll();
    controller->displayImage(other);
    while (mainQueue.runNext())
        EXPECT_FALSE(showsPreview());
}

TEST_F(PreviewDisplay, doesNotComeBackIntoAnEmptiedWindow)
{
    showWindow();
    controller->openImage(photo());
    launcher.runAll();
    controller->showIdleState();
    while (mainQueue.runNext())
        EXPECT_FALSE(showsPreview());
    EXPECT_EQ(controller->currentImage(), nullptr) << "nor does the whole picture";
    EXPECT_TRUE(idleScreen()->isVisible());
}

TEST_F(PreviewDisplay, whoHasSeenItAndGoneOnDoesNotGetThePictureBack)
{
    const FileURL other = cachedFile("other.jpg");
    const FileURL file = photo();
    openUpToThePreview(file);
    controller->displayImage(other);
    mainQueue.runAll();
    EXPECT_EQ(controller->currentImage(), cache->imageCache.find(other));
    EXPECT_TRUE(cache->imageCache.contains(file));
}

TEST_F(PreviewDisplay, isNotMagnifiedItself)
{
    openUpToThePreview(
        folder.write("fine.jpg", jpegOf(2700, 1500, kOchre))); // with margins: another shape than the view
    const QImage before = imageView()->grab().toImage();
    controller->zoomIn();
    EXPECT_EQ(imageView()->grab().toImage(), before) << "as it is until its own pixels are there";
    mainQueue.runAll();
    EXPECT_NE(imageView()->grab().toImage(), before);
}

TEST_F(PreviewDisplay, sizesTheWindowForTheWholePicture)
{
    settings.setAutoResizeToImageSize(true);
    openUpToThePreview(photo());
    const QRectF fitted = frame();
    EXPECT_NE(fitted.size(), QSizeF(600, 400));
    const QSizeF content = controller->view()->size();
    EXPECT_NEAR(content.width() / content.height(), 1.5, 0.01);
    mainQueue.runAll();
    launcher.runAll();
    mainQueue.runAll();
    EXPECT_EQ(frame(), fitted);
}

TEST_F(PreviewDisplay, leavesTheAverageColourToTheWholePicture)
{
    settings.setAutoResizeToImageSize(true);
    const FileURL file = photo();
    openUpToThePreview(file);
    EXPECT_FALSE(controller->applyAverageColorBackground(file));
    EXPECT_EQ(launchedAs("com.tallowmere.averageColor"), 0);
    mainQueue.runAll();
    EXPECT_EQ(launchedAs("com.tallowmere.averageColor"), 1);
}

TEST_F(PreviewDisplay, keepsTheZoomThatTheUserHasChosenMeanwhile)
{
    openUpToThePreview(photo());
    controller->zoomIn();
    const ImageTransform chosen = imageView()->imageTransform();
    EXPECT_NE(chosen, ImageTransform());
    EXPECT_NEAR(middleOfTheView().red(), kOchre[0], 4);
    mainQueue.runAll();
    ASSERT_FALSE(showsPreview());
    EXPECT_EQ(imageView()->imageTransform(), chosen);
}

TEST_F(PreviewDisplay, isNotShownWhereTheUserLeftThePictureMagnified)
{
    const FileURL file = photo();
    openUpToThePreview(file);
    mainQueue.runAll();
    controller->zoomIn();
    (void)cachedFile("other.jpg"); // the last one is kept
    cache->shrinkTo(0);
    controller->openImage(file);
    launcher.runAll();
    EXPECT_EQ(launchedAs("com.tallowmere.imageLoading"), 2);
    while (mainQueue.runNext())
        EXPECT_FALSE(showsPreview());
    EXPECT_NE(controller->currentImage(), nullptr);
}

TEST_F(PreviewDisplay, isNotShownBlurred)
{
    loader->setPreviewSize([](PixelSize full) { return full.fittedTo(200); });
    showWindow();
    controller->openImage(photo());
    launcher.runAll();
    while (mainQueue.runNext())
        EXPECT_FALSE(showsPreview());
    EXPECT_NE(controller->currentImage(), nullptr);
}

} // namespace
} // namespace tallowmere::test
