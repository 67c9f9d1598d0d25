// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/viewer/ViewerFixture.h"

#include <QMenuBar>
#include <QTest>
#include <QWindow>

#include <utility>

namespace tallowmere::test {
namespace {

class WindowSizing : public ViewerFixture
{
protected:
    void display(ImagePtr image) { controller->displayImage(cachedFile("shown.jpg", std::move(image))); }
    void showMaximisedWindow()
    {
        showWindow();
        window->showMaximized();
        ASSERT_TRUE(QTest::qWaitFor([&] { return window->isMaximized() && window->width() > 700; }, 30'000));
    }
    [[nodiscard]] QSizeF content() const { return controller->view()->size(); }
    void expectCentred() const
    {
        EXPECT_NEAR(frame().center().x(), visibleFrame().center().x(), 1);
        EXPECT_NEAR(frame().center().y(), visibleFrame().center().y(), 1);
    }
};

TEST_F(WindowSizing, aSmallImageGetsASmallWindowWithoutAnyMinimum)
{
    settings.setAutoResizeToImageSize(true);
    showWindow();
    display(imageOf(50, 40));
    EXPECT_EQ(content(), QSizeF(50, 40));
    expectCentred();
}

TEST_F(WindowSizing, aLargeImageIsFittedToTheScreenWithTheWholeFrame)
{
    settings.setAutoResizeToImageSize(true);
    showWindow();
    display(imageOf(4000, 3000));
    EXPECT_TRUE(visibleFrame().contains(frame()));
    EXPECT_NEAR(content().width() / content().height(), 4.0 / 3, 0.01);
    EXPECT_NEAR(frame().width(), visibleFrame().width(), 1);
    expectCentred();
}

TEST_F(WindowSizing, anInWindowMenuBarCountsAsTitleBar)
{
    settings.setAutoResizeToImageSize(true);
    window->menuBar()->addMenu(QStringLiteral("File"))->addAction(QStringLiteral("Open"));
    showWindow();
    ASSERT_GT(window->menuBar()->height(), 0);
    display(imageOf(320, 240));
    EXPECT_EQ(content(), QSizeF(320, 240));
    display(imageOf(300, 3000));
    EXPECT_NEAR(frame().height(), visibleFrame().height(), 1);
    EXPECT_TRUE(visibleFrame().contains(frame()));
}

TEST_F(WindowSizing, aWindowThatIsNotYetShownComesUpInItsFinalSize)
{
    settings.setAutoResizeToImageSize(true);
    settings.setAutoResizeWithAnimation(true);
    window->menuBar()->addMenu(QStringLiteral("File"))->addAction(QStringLiteral("Open"));
    display(imageOf(320, 240));
    showWindow();
    EXPECT_EQ(content(), QSizeF(320, 240));
    expectCentred();
}

TEST_F(WindowSizing, withAutoResizeOffTheWindowKeepsItsSize)
{
    showWindow();
    const QRectF before = frame();
    display(imageOf(320, 240));
    EXPECT_EQ(frame(), before);
}

TEST_F(WindowSizing, smallAtTheScreensEdgeKeepsTheCentreAndMayExtendPastTheScreen)
{
    showWindow();
    window->setGeometry(2, 2, 200, 100);
    const QPointF centre = frame().center();
    controller->resizeWindow(false, 600, 400);
    EXPECT_EQ(frame().size(), QSizeF(600, 400));
    EXPECT_NEAR(frame().center().x(), centre.x(), 1);
    EXPECT_NEAR(frame().center().y(), centre.y(), 1);
    EXPECT_LT(frame().left(), 0);
}

TEST_F(WindowSizing, largeLeaves40OnEverySide)
{
    showWindow();
    controller->resizeWindowToScreen(false);
    EXPECT_EQ(frame(), visibleFrame().adjusted(40, 40, -40, -40));
}

TEST_F(WindowSizing, fitsWithoutAnImageDoNothingAndDoNotReport)
{
    showWindow();
    const QRectF before = frame();
    bool completed = false;
    controller->fitWindowToImage(false, [&] { completed = true; });
    EXPECT_EQ(frame(), before);
    EXPECT_FALSE(completed);
    EXPECT_EQ(controller->fittedImageSize(), std::nullopt);
}

TEST_F(WindowSizing, anImageWithoutABitmapGetsItsSizeUnfittedAndNobodyIsTold)
{
    showWindow();
    display(std::make_shared<const Image>(QSizeF(2000, 300)));
    bool completed = false;
    controller->fitWindowToImage(false, [&] { completed = true; });
    EXPECT_EQ(content(), QSizeF(2000, 300));
    EXPECT_FALSE(completed);
    EXPECT_EQ(controller->fittedImageSize(), std::nullopt);
}

TEST_F(WindowSizing, tellsWhenTheWindowHasBeenFitted)
{
    showWindow();
    display(imageOf(320, 240));
    bool completed = false;
    controller->fitWindowToImage(false, [&] { completed = true; });
    EXPECT_TRUE(completed);
    EXPECT_EQ(controller->fittedImageSize(), QSizeF(320, 240));
}

TEST_F(WindowSizing, aViewWithoutAWindowIsLeftAlone)
{
    window->takeCentralWidget();
    controller->view()->setParent(nullptr);
    controller->view()->resize(123, 45);
    display(imageOf(320, 240));
    controller->resizeWindow(false, 600, 400);
    controller->resizeWindowToScreen(false);
    controller->fitWindowToImage(false);
    EXPECT_EQ(controller->view()->size(), QSize(123, 45));
}

TEST_F(WindowSizing, growsByAFactorUpToTheFittedSize)
{
    showWindow();
    display(imageOf(500, 350));
    window->resize(window->size() - controller->view()->size() + QSize(400, 300));
    ASSERT_EQ(content(), QSizeF(400, 300));
    controller->resizeWindowByFactor(true, 1.5);
    EXPECT_EQ(content(), QSizeF(500, 350));
    expectCentred();
    controller->resizeWindowByFactor(true, 0.1);
    EXPECT_EQ(content(), QSizeF(100, 100));
}

TEST_F(WindowSizing, aMaximisedWindowKeepsItsFrameWhenItWouldFollowTheImage)
{
    settings.setAutoResizeToImageSize(true);
    showMaximisedWindow();
    const QRectF before = frame();
    display(imageOf(320, 240));
    EXPECT_EQ(frame(), before);
    bool completed = false;
    controller->fitWindowToImage(true, [&] { completed = true; });
    EXPECT_TRUE(completed);
    controller->resizeWindowByFactor(true, 0.5);
    EXPECT_EQ(frame(), before);
}

TEST_F(WindowSizing, inAMaximisedWindowNobodyIsToldOfAnImageWithoutABitmapEither)
{
    showMaximisedWindow();
    display(std::make_shared<const Image>(QSizeF(2000, 300)));
    const QRectF before = frame();
    bool completed = false;
    controller->fitWindowToImage(false, [&] { completed = true; });
    EXPECT_FALSE(completed);
    EXPECT_EQ(frame(), before);
}

TEST_F(WindowSizing, aMaximisedWindowThatBecomesIdleStaysSo)
{
    showMaximisedWindow();
    open(cachedFile("a.jpg"));
    const QRectF before = frame();
    controller->showIdleState();
    EXPECT_TRUE(idleScreen()->isVisible());
    EXPECT_TRUE(window->isMaximized());
    EXPECT_EQ(frame(), before);
}

TEST_F(WindowSizing, aPictureOfHardlyAnyWidthStillHasAWindow)
{
    settings.setAutoResizeToImageSize(true);
    showWindow();
    for (const ImagePtr &sliver : {imageOf(1, 3000), imageOf(3000, 1)}) {
        display(sliver);
        EXPECT_GE(window->width(), 1);
        EXPECT_GE(window->height(), 1);
        EXPECT_TRUE(window->windowHandle()->isExposed());
        for (int step = 0; step < 3; ++step)
            controller->zoomOut();
        controller->resetZoom();
        EXPECT_TRUE(window->windowHandle()->isExposed());
        display(imageOf(320, 240));
        EXPECT_EQ(content(), QSizeF(320, 240));
    }
}

TEST_F(WindowSizing, steppingOutAndInAgainEndsAtTheSizeOfTheImage)
{
    settings.setAutoResizeToImageSize(true);
    showWindow();
    display(imageOf(580, 403));
    ASSERT_EQ(content(), QSizeF(580, 403));
    for (int step = 0; step < 12; ++step)
        controller->zoomOut();
    ASSERT_LT(content().width(), 200);
    for (int step = 0; step < 12 && content().width() < 580; ++step)
        controller->zoomIn();
    EXPECT_EQ(content(), QSizeF(580, 403));
}

/// Whether the window has its new size only after a while.
class WindowSizingAnimation : public WindowSizing, public testing::WithParamInterface<bool>
{
protected:
    void SetUp() override
    {
        settings.setAutoResizeToImageSize(true);
        showWindow();
        display(imageOf(320, 240));
        ASSERT_EQ(content(), QSizeF(320, 240));
        settings.setAutoResizeWithAnimation(GetParam());
    }
    void expectAtOnceUnlessAnimated(QSizeF expected) const
    {
        EXPECT_EQ(content() == expected, !GetParam());
        EXPECT_TRUE(QTest::qWaitFor([&] { return content() == expected; }, 30'000));
    }
};

TEST_P(WindowSizingAnimation, isAlwaysPartOfTheSizeCommands)
{
    for (const auto &[key, size] : {std::pair(Qt::Key_1, QSizeF(600, 400)), std::pair(Qt::Key_2, QSizeF(900, 600)),
                                    std::pair(Qt::Key_3, visibleFrame().size() - QSizeF(80, 80))}) {
        ASSERT_NE(frame().size(), size);
        press(key, Qt::ControlModifier);
        EXPECT_NE(frame().size(), size);
        EXPECT_TRUE(QTest::qWaitFor([&, wanted = size] { return frame().size() == wanted; }, 30'000));
    }
}

TEST_P(WindowSizingAnimation, isPartOfANewPictureOnlyWhereTheSettingsAskForIt)
{
    display(imageOf(500, 300));
    expectAtOnceUnlessAnimated({500, 300});
}

TEST_P(WindowSizingAnimation, isPartOfZoomingOnlyWhereTheSettingsAskForIt)
{
    controller->zoomOut();
    expectAtOnceUnlessAnimated({213, 160});
    controller->zoomIn();
    expectAtOnceUnlessAnimated({320, 240});
    controller->zoomOut();
    expectAtOnceUnlessAnimated({213, 160});
    controller->resetZoom();
    expectAtOnceUnlessAnimated({320, 240});
}

INSTANTIATE_TEST_SUITE_P(WithAndWithout, WindowSizingAnimation, testing::Bool());

TEST_F(WindowSizing, aPresetSizeEndsTheMaximisedState)
{
    showMaximisedWindow();
    controller->resizeWindow(false, 600, 400);
    EXPECT_FALSE(window->isMaximized());
    EXPECT_TRUE(QTest::qWaitFor([&] { return frame().size() == QSizeF(600, 400); }, 30'000));
}

TEST_F(WindowSizing, theDisplayCopyOfAPrefetchedNeighbourIsReadyForTheSizeItWillBeShownAt)
{
    settings.setAutoResizeToImageSize(true);
    showWindow();
    fill({"a.jpg"});
    const ImagePtr neighbour = imageOf(3000, 2000, 0xff804020);
    (void)cachedFile("b.jpg", neighbour);
    open(folder.at("a.jpg"));
    mainQueue.runAll();
    controller->displayImage(folder.at("a.jpg"));
    launcher.runAll();
    const auto before = launcher.launched().size();
    press(Qt::Key_Left);
    EXPECT_EQ(controller->currentImage(), neighbour);
    for (std::size_t i = before; i < launcher.launched().size(); ++i)
        EXPECT_NE(launcher.launched()[i].label, "com.tallowmere.displayCopy") << "nothing was left to be made";
}

} // namespace
} // namespace tallowmere::test
