// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/doubles/TestImages.h"
#include "tests/viewer/ViewerFixture.h"
#include "viewer/WindowFrame.h"

#include <QCoreApplication>
#include <QNativeGestureEvent>
#include <QPointingDevice>
#include <QTest>

#include <limits>
#include <vector>

namespace tallowmere::test {
namespace {

class Zoom : public ViewerFixture
{
protected:
    Zoom() { showWindow(); }

    void show(ImagePtr image = imageOf(1000, 800)) { open(cachedFile("shown.jpg", std::move(image))); }
    [[nodiscard]] double zoom() const { return imageView()->imageTransform().scale; }
    void press(char character, int times = 1)
    {
        for (int i = 0; i < times; ++i)
            ViewerFixture::press(character, Qt::ControlModifier);
    }
    void gesture(Qt::NativeGestureType type, double value = 0.0)
    {
        const QPointF point(20, 20);
        QNativeGestureEvent event(type, QPointingDevice::primaryPointingDevice(), 2, point, point,
                                  imageView()->mapToGlobal(point), value, {});
        QCoreApplication::sendEvent(imageView(), &event);
    }
    /// One gesture whose scale goes from 1 to @p scales in turn.
    void pinch(const std::vector<double> &scales)
    {
        gesture(Qt::BeginNativeGesture);
        double before = 1.0;
        for (const double scale : scales) {
            gesture(Qt::ZoomNativeGesture, scale - before);
            before = scale;
        }
        gesture(Qt::EndNativeGesture);
    }
    /// The view gets this size, as if the user had dragged the window's corner.
    void resizeView(QSize size) { window->resize(window->size() - controller->view()->size() + size); }
    [[nodiscard]] QSizeF content() const { return controller->view()->size(); }
};

TEST_F(Zoom, stepsBy1Point5AndBack)
{
    show();
    press('=');
    EXPECT_DOUBLE_EQ(zoom(), 1.5);
    press('=');
    EXPECT_DOUBLE_EQ(zoom(), 2.25);
    press('-');
    EXPECT_DOUBLE_EQ(zoom(), 1.5);
    press('-', 2);
    EXPECT_DOUBLE_EQ(zoom(), 1 / 1.5);
    press('0');
    EXPECT_EQ(zoom(), 1.0);
}

TEST_F(Zoom, zoomInFrom8Gives10AndAFurtherZoomInChangesNothing)
{
    show();
    pinch({8.0});
    ASSERT_DOUBLE_EQ(zoom(), 8.0);
    press('=');
    EXPECT_EQ(zoom(), 10.0);
    press('=');
    EXPECT_EQ(zoom(), 10.0);
}

TEST_F(Zoom, zoomOutFromPoint3GivesPoint25)
{
    show();
    pinch({0.3});
    ASSERT_DOUBLE_EQ(zoom(), 0.3);
    press('-');
    EXPECT_EQ(zoom(), 0.25);
    press('-');
    EXPECT_EQ(zoom(), 0.25);
}

TEST_F(Zoom, aPinchOfMinusPoint9AtZoom1GivesPoint25)
{
    show();
    pinch({0.1});
    EXPECT_EQ(zoom(), 0.25);
}

TEST_F(Zoom, aPinchToTwiceTheSizeDoublesTheZoomInHoweverManySteps)
{
    show();
    pinch({1.1, 1.25, 1.5, 1.8, 2.0});
    EXPECT_NEAR(zoom(), 2.0, 1e-9);
    pinch({0.75, 0.5});
    EXPECT_NEAR(zoom(), 1.0, 1e-9);
}

TEST_F(Zoom, otherGesturesAndNonsenseDoNotZoom)
{
    show();
    gesture(Qt::RotateNativeGesture, 0.7);
    gesture(Qt::SwipeNativeGesture, 1.0);
    gesture(Qt::ZoomNativeGesture, std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(zoom(), 1.0);
}

TEST_F(Zoom, keysAndGesturesDoNothingWithoutAnImage)
{
    press('=');
    press('-');
    press('0');
    pinch({2.0});
    EXPECT_EQ(zoom(), 1.0);
    show();
    EXPECT_EQ(zoom(), 1.0) << "and nothing was remembered";
}

TEST_F(Zoom, plusOnTheMainKeysZoomsInAndOnTheKeypadItDoesNot)
{
    show();
    ViewerFixture::press(Qt::Key_Plus, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_DOUBLE_EQ(zoom(), 1.5);
    ViewerFixture::press(Qt::Key_Plus, Qt::ControlModifier | Qt::KeypadModifier);
    EXPECT_DOUBLE_EQ(zoom(), 1.5);
}

TEST_F(Zoom, anImageSmallerThanTheViewAtZoom1IsNotEnlarged)
{
    show(imageOf(100, 80));
    EXPECT_EQ(imageView()->imageScaling(), ImageScaling::proportionallyDown);
    EXPECT_EQ(zoom(), 1.0);
}

TEST_F(Zoom, withAutoResizeOffReturningToAFileKeepsTheZoomItHadAtTheSameWindowSize)
{
    fill({"a.jpg", "b.jpg"});
    open(folder.at("a.jpg"));
    press('=', 2);
    ViewerFixture::press(Qt::Key_Left);
    EXPECT_EQ(controller->currentFile(), folder.at("b.jpg"));
    EXPECT_EQ(zoom(), 1.0);
    ViewerFixture::press(Qt::Key_Right);
    EXPECT_DOUBLE_EQ(zoom(), 2.25);
}

TEST_F(Zoom, anotherWindowSizeHasAZoomOfItsOwnAndTheOldOneComesBackWithTheOldSize)
{
    show();
    const QSize before = window->size();
    press('=');
    window->resize(before + QSize(50, 0));
    EXPECT_EQ(zoom(), 1.0);
    press('-');
    EXPECT_DOUBLE_EQ(zoom(), 1 / 1.5);
    window->resize(before);
    EXPECT_DOUBLE_EQ(zoom(), 1.5);
}

TEST_F(Zoom, aPresetSizeForgetsTheZoomOfTheCurrentFileAtEverySize)
{
    fill({"a.jpg", "b.jpg"});
    open(folder.at("b.jpg"));
    const QSize before = window->size();
    press('=', 2);
    ViewerFixture::press(Qt::Key_Left);
    press('=');
    press('2');
    const auto *windowFrame = window->findChild<WindowFrame *>();
    ASSERT_NE(windowFrame, nullptr);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !windowFrame->isAnimating(); }, 30'000));
    EXPECT_EQ(frame().size(), QSizeF(900, 600));
    EXPECT_EQ(zoom(), 1.0);
    window->resize(before);
    EXPECT_EQ(zoom(), 1.0) << "a.jpg at the old size";
    ViewerFixture::press(Qt::Key_Left);
    EXPECT_DOUBLE_EQ(zoom(), 2.25) << "b.jpg is another file";
}

TEST_F(Zoom, aPictureThatIsOpenedComesWithItsOwnZoomAndNotWithThatOfTheOneBefore)
{
    fill({"a.jpg", "b.jpg"});
    open(folder.at("a.jpg"));
    press('=', 3);
    controller->openImage(folder.at("b.jpg"));
    EXPECT_EQ(zoom(), 1.0) << "before the folder has been listed, too";
    EXPECT_EQ(controller->currentFile(), folder.at("b.jpg"));
    press('-');
    controller->openImage(folder.at("a.jpg"));
    EXPECT_DOUBLE_EQ(zoom(), 3.375);
}

TEST_F(Zoom, aPictureThatTakesItsTimeComesWithItsZoom)
{
    (void)cachedFile("a.jpg");
    const FileURL file = folder.write("b.png", pngOf(40, 30, {200, 100, 50, 255}));
    open(folder.at("a.jpg"));
    press('=', 2);
    ViewerFixture::press(Qt::Key_Left);
    ASSERT_EQ(controller->currentFile(), file);
    launcher.runAll();
    mainQueue.runAll();
    ASSERT_NE(controller->currentImage(), nullptr);
    EXPECT_EQ(zoom(), 1.0);
}

class ZoomThatResizes : public Zoom
{
protected:
    ZoomThatResizes() { settings.setAutoResizeToImageSize(true); }
};

TEST_F(ZoomThatResizes, zoomInGrowsTheWindowUpToTheFittedSizeAndThenTheImage)
{
    show(imageOf(600, 420));
    ASSERT_EQ(content(), QSizeF(600, 420));
    resizeView({300, 210});
    press('=');
    EXPECT_EQ(content(), QSizeF(450, 315));
    EXPECT_EQ(zoom(), 1.0);
    press('=');
    EXPECT_EQ(content(), QSizeF(600, 420));
    EXPECT_EQ(zoom(), 1.0);
    press('=');
    EXPECT_EQ(content(), QSizeF(600, 420));
    EXPECT_DOUBLE_EQ(zoom(), 1.5);
}

TEST_F(ZoomThatResizes, zoomOutFirstReturnsToTheFittedImageAndThenShrinksTheWindow)
{
    show(imageOf(600, 420));
    press('=', 2);
    press('-');
    EXPECT_DOUBLE_EQ(zoom(), 1.5);
    press('-');
    EXPECT_EQ(zoom(), 1.0);
    EXPECT_EQ(content(), QSizeF(600, 420));
    press('-');
    EXPECT_EQ(content(), QSizeF(400, 280));
    EXPECT_EQ(zoom(), 1.0);
    press('-', 20);
    EXPECT_EQ(content(), QSizeF(150, 105)) << "a quarter is the end";
}

TEST_F(ZoomThatResizes, aFittedSizeOfBrokenPointsDoesNotKeepTheImageFromBeingMagnified)
{
    show(imageOf(401, 3001)); // the screen's height decides, and the width comes out broken
    const QSizeF fitted = content();
    press('=');
    EXPECT_EQ(content(), fitted);
    EXPECT_DOUBLE_EQ(zoom(), 1.5);
}

TEST_F(ZoomThatResizes, aPictureTooThinForTheScreenIsMagnifiedAndNotAskedForAWiderWindow)
{
    show(imageOf(2, 4000)); // fitted to the screen's height it is less than half a point wide
    const QRectF before = frame();
    press('=');
    EXPECT_DOUBLE_EQ(zoom(), 1.5);
    press('-');
    EXPECT_EQ(zoom(), 1.0);
    EXPECT_EQ(frame(), before);
}

TEST_F(ZoomThatResizes, aSecondZoomKeyDuringTheAnimationCounts)
{
    settings.setAutoResizeWithAnimation(true);
    show(imageOf(600, 420));
    ASSERT_TRUE(QTest::qWaitFor([&] { return content() == QSizeF(600, 420); }, 30'000));
    press('-', 2);
    EXPECT_TRUE(QTest::qWaitFor([&] { return content() == QSizeF(267, 187); }, 30'000));
    press('=', 3);
    EXPECT_TRUE(QTest::qWaitFor([&] { return content() == QSizeF(600, 420); }, 30'000));
    EXPECT_DOUBLE_EQ(zoom(), 1.5) << "the last key found nothing to grow";
    press('-', 2);
    EXPECT_TRUE(QTest::qWaitFor([&] { return content() == QSizeF(400, 280); }, 30'000));
    EXPECT_EQ(zoom(), 1.0);
}

TEST_F(ZoomThatResizes, resetZoomFitsTheWindowAgain)
{
    show(imageOf(600, 420));
    press('=', 2);
    resizeView({300, 300});
    press('=');
    press('0');
    EXPECT_EQ(content(), QSizeF(600, 420));
    EXPECT_EQ(zoom(), 1.0);
}

TEST_F(ZoomThatResizes, everyDisplayOfAnImageEndsAtZoom1)
{
    fill({"a.jpg", "b.jpg"});
    open(folder.at("a.jpg"));
    press('=', 2);
    ASSERT_DOUBLE_EQ(zoom(), 2.25);
    ViewerFixture::press(Qt::Key_Left);
    EXPECT_EQ(zoom(), 1.0);
    ViewerFixture::press(Qt::Key_Left);
    EXPECT_EQ(controller->currentFile(), folder.at("a.jpg"));
    EXPECT_EQ(zoom(), 1.0);
}

TEST_F(ZoomThatResizes, soItDoesWhenTheWindowMovesThereInAnAnimation)
{
    settings.setAutoResizeWithAnimation(true);
    (void)cachedFile("a.jpg");
    (void)cachedFile("b.jpg", imageOf(500, 300));
    open(folder.at("a.jpg"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return content() == QSizeF(300, 200); }, 30'000));
    pinch({3.0});
    ViewerFixture::press(Qt::Key_Left);
    EXPECT_EQ(zoom(), 1.0) << "from the start";
    EXPECT_TRUE(QTest::qWaitFor([&] { return content() == QSizeF(500, 300); }, 30'000));
    EXPECT_EQ(zoom(), 1.0);
}

TEST_F(ZoomThatResizes, aMaximisedWindowMagnifiesTheImageInsteadOfGrowing)
{
    window->showMaximized();
    ASSERT_TRUE(QTest::qWaitFor([&] { return window->isMaximized() && window->width() > 700; }, 30'000));
    show(imageOf(300, 200));
    const QRectF before = frame();
    press('=');
    EXPECT_DOUBLE_EQ(zoom(), 1.5);
    press('-', 3);
    EXPECT_EQ(zoom(), 1.0);
    EXPECT_EQ(frame(), before);
}

TEST_F(ZoomThatResizes, aControllerThatIsGoneWhenTheAnimationEndsIsLeftAlone)
{
    settings.setAutoResizeWithAnimation(true);
    show(imageOf(500, 300));
    press('-');
    bool over = false;
    controller->fitWindowToImage(true, [&] { over = true; });
    controller.reset();
    EXPECT_TRUE(QTest::qWaitFor([&] { return over; }, 30'000));
}

TEST_F(Zoom, aViewWithoutAWindowOrWithoutASizeIsNotZoomed)
{
    show();
    controller->view()->resize(0, 0);
    press('=');
    EXPECT_EQ(imageView()->imageScaling(), ImageScaling::proportionallyUpOrDown);
    window->takeCentralWidget();
    controller->view()->setParent(nullptr);
    press('=');
    EXPECT_EQ(zoom(), 1.0);
}

} // namespace
} // namespace tallowmere::test
