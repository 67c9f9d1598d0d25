// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "viewer/ProgressSign.h"

#include "tests/doubles/TestImages.h"
#include "tests/viewer/ViewerFixture.h"

#include <QElapsedTimer>
#include <QImage>
#include <QTest>

#include <algorithm>

namespace tallowmere::test {
namespace {

class Progress : public ViewerFixture
{
protected:
    [[nodiscard]] ProgressSign *sign() const { return controller->view()->findChild<ProgressSign *>(); }
    [[nodiscard]] bool waitForSign() const
    {
        return QTest::qWaitFor([&] { return sign()->isVisible(); }, 30'000);
    }
    /// Of all the background work the first decode alone, with what it posts.
    void runFirstLoad()
    {
        const auto &launched = launcher.launched();
        const auto load = std::ranges::find(launched, "com.tallowmere.imageLoading", &SteppedLauncher::Launched::label);
        ASSERT_NE(load, launched.end());
        launcher.run(static_cast<std::size_t>(load - launched.begin()));
        mainQueue.runAll();
    }
};

TEST_F(Progress, showsAfter300MillisecondsWithoutAPictureAndGoesWithThePicture)
{
    showWindow();
    const FileURL file = folder.write("a.png", pngOf(40, 30, {200, 100, 50, 255}));
    QElapsedTimer timer;
    timer.start();
    controller->openImage(file);
    EXPECT_FALSE(sign()->isVisible());
    ASSERT_TRUE(waitForSign());
    EXPECT_GE(timer.elapsed(), 300);
    launcher.runAll();
    mainQueue.runAll();
    EXPECT_NE(controller->currentImage(), nullptr);
    EXPECT_FALSE(sign()->isVisible());
}

TEST_F(Progress, aFastPictureNeverFlashesIt)
{
    showWindow();
    ProgressSign witness(controller->view());
    controller->openImage(folder.write("a.png", pngOf(40, 30, {200, 100, 50, 255})));
    witness.start(nullptr);
    launcher.runAll();
    mainQueue.runAll();
    // By the time a sign that began to wait later has appeared, this one would have.
    ASSERT_TRUE(QTest::qWaitFor([&] { return witness.isVisible(); }, 30'000));
    EXPECT_FALSE(sign()->isVisible());
}

TEST_F(Progress, aCachedPictureStartsNone)
{
    showWindow();
    ProgressSign witness(controller->view());
    open(cachedFile("a.jpg"));
    witness.start(nullptr);
    ASSERT_TRUE(QTest::qWaitFor([&] { return witness.isVisible(); }, 30'000));
    EXPECT_FALSE(sign()->isVisible());
}

TEST_F(Progress, goesWhenThePictureDoesNotCome)
{
    showWindow();
    controller->openImage(folder.write("a.jpg", "no picture"));
    ASSERT_TRUE(waitForSign());
    launcher.runAll();
    mainQueue.runAll();
    EXPECT_FALSE(sign()->isVisible());
}

TEST_F(Progress, staysForThePictureAwaitedWhenAnOlderOneFails)
{
    showWindow();
    controller->displayImage(folder.write("bad.jpg", "no picture"));
    controller->displayImage(folder.write("a.png", pngOf(40, 30, {200, 100, 50, 255})));
    ASSERT_TRUE(waitForSign());
    runFirstLoad();
    EXPECT_TRUE(sign()->isVisible());
    launcher.runAll();
    mainQueue.runAll();
    EXPECT_FALSE(sign()->isVisible());
}

TEST_F(Progress, staysForThePictureAwaitedWhenAnOlderOneArrives)
{
    showWindow();
    controller->displayImage(folder.write("old.png", pngOf(40, 30, {100, 200, 50, 255})));
    controller->displayImage(folder.write("a.png", pngOf(40, 30, {200, 100, 50, 255})));
    ASSERT_TRUE(waitForSign());
    runFirstLoad();
    EXPECT_NE(controller->currentImage(), nullptr);
    EXPECT_TRUE(sign()->isVisible());
    launcher.runAll();
    mainQueue.runAll();
    EXPECT_FALSE(sign()->isVisible());
}

TEST_F(Progress, goesWithThePictureWhenItWasLeftAndComeBackToMeanwhile)
{
    showWindow();
    const FileURL file = folder.write("a.png", pngOf(40, 30, {200, 100, 50, 255}));
    controller->displayImage(file);
    controller->displayImage(folder.write("b.png", pngOf(40, 30, {100, 200, 50, 255})));
    controller->displayImage(file);
    ASSERT_TRUE(waitForSign());
    runFirstLoad();
    const ImagePtr first = controller->currentImage();
    EXPECT_NE(first, nullptr);
    EXPECT_FALSE(sign()->isVisible());
    launcher.runAll();
    mainQueue.runAll();
    EXPECT_FALSE(sign()->isVisible());
}

TEST_F(Progress, aSecondDecodeOfThePictureShownChangesNothing)
{
    showWindow();
    const FileURL file = folder.write("a.png", pngOf(40, 30, {200, 100, 50, 255}));
    controller->displayImage(file);
    controller->displayImage(file);
    runFirstLoad();
    const ImagePtr first = controller->currentImage();
    ASSERT_NE(first, nullptr);
    launcher.runAll();
    mainQueue.runAll();
    EXPECT_EQ(controller->currentImage(), first);
}

TEST_F(Progress, goesWithTheIdleState)
{
    showWindow();
    controller->openImage(folder.write("a.jpg", "no picture"));
    ASSERT_TRUE(waitForSign());
    controller->showIdleState();
    EXPECT_FALSE(sign()->isVisible());
}

TEST_F(Progress, movesNothingAndTakesNoClicks)
{
    showWindow();
    const QRectF before = frame();
    const QRect viewBefore = imageView()->geometry();
    controller->openImage(folder.write("a.jpg", "no picture"));
    ASSERT_TRUE(waitForSign());
    EXPECT_EQ(frame(), before);
    EXPECT_EQ(imageView()->geometry(), viewBefore);
    EXPECT_NE(controller->view()->childAt(sign()->geometry().center()), sign());
    EXPECT_NEAR(sign()->geometry().center().x(), controller->view()->rect().center().x(), 1);
    EXPECT_NEAR(sign()->geometry().center().y(), controller->view()->rect().center().y(), 1);
    window->resize(40, 30);
    EXPECT_TRUE(controller->view()->rect().contains(sign()->geometry()));
}

/// How bright the bar is at @p part of its width.
int brightnessAt(ProgressSign &sign, double part)
{
    const QImage picture = sign.grab().toImage();
    return qGray(picture.pixel(static_cast<int>(picture.width() * part), picture.height() / 2));
}

TEST(ProgressSign, isFilledAsFarAsTheRowsHaveCome)
{
    QWidget view;
    view.resize(400, 300);
    ProgressSign sign(&view);
    sign.layOutIn(view.size());
    const auto progress = std::make_shared<DecodeProgress>();
    progress->setRowCount(1000);
    progress->setRowsDone(500);
    sign.start(progress);
    EXPECT_GT(brightnessAt(sign, 0.25), brightnessAt(sign, 0.75) + 60);
    EXPECT_GT(brightnessAt(sign, 0.45), brightnessAt(sign, 0.55) + 60);
    progress->setRowsDone(1000);
    EXPECT_EQ(brightnessAt(sign, 0.25), brightnessAt(sign, 0.75));
}

TEST(ProgressSign, wandersWhereNothingIsCounted)
{
    QWidget view;
    view.resize(400, 300);
    ProgressSign sign(&view);
    sign.layOutIn(view.size());
    view.show();
    sign.start(std::make_shared<DecodeProgress>());
    ASSERT_TRUE(QTest::qWaitFor([&] { return sign.isVisible(); }, 30'000));
    EXPECT_TRUE(QTest::qWaitFor([&] { return brightnessAt(sign, 0.1) > brightnessAt(sign, 0.9) + 60; }, 30'000));
    EXPECT_TRUE(QTest::qWaitFor([&] { return brightnessAt(sign, 0.9) > brightnessAt(sign, 0.1) + 60; }, 30'000));
}

TEST(DecodeProgress, hasNoFigureBeforeTheFirstRow)
{
    DecodeProgress progress;
    EXPECT_EQ(progress.fraction(), std::nullopt);
    progress.setRowCount(200);
    EXPECT_EQ(progress.fraction(), std::nullopt);
    progress.setRowsDone(50);
    EXPECT_EQ(progress.fraction(), 0.25);
    progress.setRowsDone(400);
    EXPECT_EQ(progress.fraction(), 1.0);
}

} // namespace
} // namespace tallowmere::test
