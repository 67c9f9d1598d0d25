// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/viewer/ViewerFixture.h"

#include <QCoreApplication>
#include <QFileDialog>
#include <QKeyEvent>
#include <QLabel>
#include <QTest>

namespace tallowmere::test {
namespace {

class Keys : public ViewerFixture
{
protected:
    [[nodiscard]] QFileDialog *openPanel() const { return window->findChild<QFileDialog *>(); }
};

TEST_F(Keys, ctrlArrowsStepExactlyLikeThePlainOnes)
{
    fill({"a.jpg", "b.jpg", "c.jpg"});
    open(folder.at("b.jpg"));
    press(Qt::Key_Right, Qt::ControlModifier);
    EXPECT_EQ(controller->currentFile(), folder.at("a.jpg"));
    press(Qt::Key_Left, Qt::ControlModifier);
    press(Qt::Key_Left, Qt::ControlModifier);
    EXPECT_EQ(controller->currentFile(), folder.at("c.jpg"));
}

TEST_F(Keys, ctrl1WhileAutoResizeIsOnTurnsItOffAndSizesTheWindow)
{
    settings.setAutoResizeToImageSize(true);
    window->resize(720, 333);
    controller->applyBackgroundColor(Qt::red);
    press(Qt::Key_1, Qt::ControlModifier);
    EXPECT_FALSE(settings.autoResizeToImageSize());
    EXPECT_EQ(shell.menuRefreshes, 1);
    EXPECT_EQ(shell.settingsRefreshes, 1);
    EXPECT_EQ(frame().size(), QSizeF(600, 400));
    EXPECT_EQ(imageView()->backgroundColor(), controller->windowBackgroundColor());
}

TEST_F(Keys, ctrl1WhileAutoResizeIsOffLeavesTheSettingsAlone)
{
    window->resize(720, 333);
    press(Qt::Key_1, Qt::ControlModifier);
    EXPECT_EQ(shell.menuRefreshes, 0);
    EXPECT_EQ(shell.settingsRefreshes, 0);
    EXPECT_EQ(frame().size(), QSizeF(600, 400));
}

TEST_F(Keys, ctrl2MakesTheMediumWindow)
{
    settings.setAutoResizeToImageSize(true);
    press(Qt::Key_2, Qt::ControlModifier);
    EXPECT_FALSE(settings.autoResizeToImageSize());
    EXPECT_EQ(frame().size(), QSizeF(900, 600));
}

TEST_F(Keys, ctrl3FillsTheScreenButFor40OnEverySide)
{
    settings.setAutoResizeToImageSize(true);
    press(Qt::Key_3, Qt::ControlModifier);
    EXPECT_FALSE(settings.autoResizeToImageSize());
    EXPECT_EQ(frame(), visibleFrame().adjusted(40, 40, -40, -40));
}

TEST_F(Keys, ctrl4IsTheApplicationsCommand)
{
    press(Qt::Key_4, Qt::ControlModifier);
    EXPECT_EQ(shell.fitToggles, 1);
    EXPECT_EQ(shell.menuRefreshes, 0);
}

TEST_F(Keys, ctrlHHidesTheApplication)
{
    press(Qt::Key_H, Qt::ControlModifier);
    EXPECT_EQ(shell.hides, 1);
}

TEST_F(Keys, ctrlReturnRevealsTheCurrentFile)
{
    fill({"a.jpg", "b.jpg"});
    open(folder.at("b.jpg"));
    press(Qt::Key_Return, Qt::ControlModifier);
    EXPECT_EQ(revealer.revealed, std::vector{folder.at("b.jpg")});
}

TEST_F(Keys, ctrlReturnWithNoFileDoesNothing)
{
    press(Qt::Key_Return, Qt::ControlModifier);
    EXPECT_TRUE(revealer.revealed.empty());
}

TEST_F(Keys, whatTheViewerDoesNotKnowGoesOnToTheWindow)
{
    open(cachedFile("a.jpg"));
    for (const int key : {Qt::Key_Space, Qt::Key_Escape, Qt::Key_A, Qt::Key_1}) {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
        QCoreApplication::sendEvent(controller->view(), &event);
        EXPECT_FALSE(event.isAccepted()) << key;
    }
    QKeyEvent arrow(QEvent::KeyPress, Qt::Key_Right, Qt::NoModifier);
    QCoreApplication::sendEvent(controller->view(), &arrow);
    EXPECT_TRUE(arrow.isAccepted());
}

TEST_F(Keys, aDoubleClickOnTheIdleScreenOpensThePanel)
{
    showWindow();
    QTest::mouseDClick(idleScreen()->instructionLabel()->parentWidget(), Qt::LeftButton);
    ASSERT_NE(openPanel(), nullptr);
    EXPECT_TRUE(openPanel()->isVisible());
    EXPECT_FALSE(openPanel()->isModal());
}

TEST_F(Keys, aDoubleClickWhileAnImageIsShownDoesNothing)
{
    open(cachedFile("a.jpg"));
    showWindow();
    QTest::mouseDClick(imageView(), Qt::LeftButton);
    EXPECT_EQ(openPanel(), nullptr);
}

TEST_F(Keys, oneClickOrAnotherButtonDoesNotOpenThePanel)
{
    showWindow();
    QTest::mouseClick(idleScreen(), Qt::LeftButton);
    QTest::mouseDClick(idleScreen(), Qt::RightButton);
    EXPECT_EQ(openPanel(), nullptr);
}

TEST_F(Keys, theOpenPanelOpensWhatTheUserChooses)
{
    const FileURL file = cachedFile("a.jpg");
    controller->showOpenPanel();
    QFileDialog *const panel = openPanel();
    ASSERT_NE(panel, nullptr);
    EXPECT_EQ(panel->fileMode(), QFileDialog::ExistingFile);
    Q_EMIT panel->fileSelected(QString::fromUtf8(file.path()));
    EXPECT_EQ(controller->currentFile(), file);
}

TEST_F(Keys, theOpenPanelThatIsOpenComesForwardInsteadOfASecondOne)
{
    controller->showOpenPanel();
    controller->showOpenPanel();
    EXPECT_EQ(window->findChildren<QFileDialog *>().size(), 1);
}

} // namespace
} // namespace tallowmere::test
