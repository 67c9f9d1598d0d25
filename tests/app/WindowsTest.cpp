// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "app/AboutViewController.h"
#include "app/ContentWindow.h"
#include "settings/SettingsViewController.h"
#include "tests/app/ApplicationFixture.h"

#include <QApplication>
#include <QCheckBox>
#include <QScreen>
#include <QTest>

namespace tallowmere {

namespace {

using namespace tallowmere::test;
using namespace Qt::Literals::StringLiterals;
using Kind = ApplicationRequest::Kind;

/// The windows beside the viewer's.
class Windows : public ApplicationFixture
{
protected:
    [[nodiscard]] bool isActive(QWidget *expected)
    {
        const bool active = QTest::qWaitFor([&] { return QApplication::activeWindow() == expected; }, 30'000);
        settle();
        return active;
    }
    [[nodiscard]] static int countTitled(const QString &title)
    {
        const QWidgetList all = QApplication::topLevelWidgets();
        return static_cast<int>(
            std::ranges::count_if(all, [&](const QWidget *each) { return each->windowTitle() == title; }));
    }
    [[nodiscard]] static bool isCentred(const QWidget *window)
    {
        const QPoint offset = window->geometry().center() - window->screen()->availableGeometry().center();
        return offset.manhattanLength() <= 60; // decorations are unknown while it is placed
    }
    static void press(QWidget *in, Qt::Key key, Qt::KeyboardModifiers modifiers)
    {
        QTest::keyClick(in->windowHandle(), key, modifiers);
    }
};

} // namespace

TEST_F(Windows, noneExistsBeforeItIsAskedFor)
{
    launch();
    EXPECT_EQ(delegate->settingsWindow(), nullptr);
    EXPECT_EQ(delegate->aboutWindow(), nullptr);
    EXPECT_EQ(delegate->settingsViewController(), nullptr);
    EXPECT_EQ(delegate->aboutViewController(), nullptr);
}

TEST_F(Windows, choosingAboutTwiceShowsOneAboutWindow)
{
    launch();
    delegate->showAbout();
    ContentWindow *const first = delegate->aboutWindow();
    ASSERT_TRUE(isActive(first));
    delegate->showAbout();
    EXPECT_EQ(delegate->aboutWindow(), first);
    EXPECT_EQ(countTitled(u"About Tallowmere"_s), 1);
    first->close();
    EXPECT_FALSE(first->isVisible());
    delegate->showAbout();
    EXPECT_EQ(delegate->aboutWindow(), first);
    EXPECT_TRUE(first->isVisible());
    EXPECT_EQ(countTitled(u"About Tallowmere"_s), 1);
}

TEST_F(Windows, aboutIs400By240CentredAndOfFixedSize)
{
    launch();
    delegate->showAbout();
    const ContentWindow *about = delegate->aboutWindow();
    EXPECT_EQ(about->size(), QSize(400, 240));
    EXPECT_EQ(about->minimumSize(), about->maximumSize());
    EXPECT_TRUE(isCentred(about));
    EXPECT_TRUE(about->windowFlags().testFlag(Qt::WindowCloseButtonHint));
    EXPECT_FALSE(about->windowFlags().testFlag(Qt::WindowMaximizeButtonHint));
}

TEST_F(Windows, settingsIsAtLeast500By390CentredAndOfFixedSize)
{
    launch();
    delegate->showSettings();
    const ContentWindow *shown = delegate->settingsWindow();
    EXPECT_EQ(shown->windowTitle(), u"Settings"_s);
    EXPECT_GE(shown->width(), 500);
    EXPECT_GE(shown->height(), 390);
    EXPECT_EQ(shown->minimumSize(), shown->maximumSize());
    EXPECT_TRUE(isCentred(shown));
}

TEST_F(Windows, settingsComesBackAsTheSameWindow)
{
    launch();
    delegate->showSettings();
    ContentWindow *const first = delegate->settingsWindow();
    const SettingsViewController *controller = delegate->settingsViewController();
    ASSERT_TRUE(isActive(first));
    first->move(first->pos() + QPoint(30, 20));
    const QPoint place = first->pos();
    first->close();
    delegate->showSettings();
    EXPECT_EQ(delegate->settingsWindow(), first);
    EXPECT_EQ(delegate->settingsViewController(), controller);
    EXPECT_TRUE(first->isVisible());
    EXPECT_EQ(first->pos(), place);
}

TEST_F(Windows, theFirstResponderIsSetAfterTheEventThatShowedTheWindow)
{
    launch();
    delegate->showAbout();
    ASSERT_TRUE(isActive(delegate->aboutWindow()));
    delegate->aboutViewController()->findChild<QWidget *>(u"oltraButton"_s)->setFocus();
    delegate->showAbout();
    EXPECT_NE(QApplication::focusWidget(), delegate->aboutViewController());
    settle();
    EXPECT_EQ(QApplication::focusWidget(), delegate->aboutViewController());
}

TEST_F(Windows, closingThemDoesNothingToTheViewer)
{
    launch();
    const FileURL file = photo("a.jpg");
    open(file);
    delegate->showSettings();
    delegate->showAbout();
    delegate->settingsWindow()->close();
    delegate->aboutWindow()->close();
    settle();
    EXPECT_TRUE(window()->isVisible());
    EXPECT_EQ(delegate->viewController()->currentFile(), file);
    EXPECT_TRUE(delegate->viewController()->currentImage());
}

TEST_F(Windows, aMinimisedOneComesBackWhenAskedForAgain)
{
    launch();
    delegate->showAbout();
    delegate->aboutWindow()->showMinimized();
    delegate->showAbout();
    EXPECT_FALSE(delegate->aboutWindow()->isMinimized());
}

TEST_F(Windows, closeWindowWithSettingsInFrontClosesSettingsAndNotTheViewer)
{
    launch();
    delegate->showSettings();
    ASSERT_TRUE(isActive(delegate->settingsWindow()));
    delegate->closeWindow();
    EXPECT_FALSE(delegate->settingsWindow()->isVisible());
    EXPECT_TRUE(window()->isVisible());
}

TEST_F(Windows, controlWClosesTheOneInFrontWithAndWithoutAVisibleViewer)
{
    launch();
    for (int round = 0; round < 2; ++round) {
        delegate->showAbout();
        ASSERT_TRUE(isActive(delegate->aboutWindow()));
        press(delegate->aboutWindow(), Qt::Key_W, Qt::ControlModifier);
        EXPECT_FALSE(delegate->aboutWindow()->isVisible());
        EXPECT_EQ(window()->isVisible(), round == 0);
        window()->close();
        settle();
    }
}

TEST_F(Windows, controlQInTheAboutWindowReachesQuitAlsoWhileTheViewerIsClosed)
{
    launch();
    window()->close();
    settle();
    delegate->showAbout();
    ASSERT_TRUE(isActive(delegate->aboutWindow()));
    QMetaObject::invokeMethod(
        qApp, [this] { press(delegate->aboutWindow(), Qt::Key_Q, Qt::ControlModifier); }, Qt::QueuedConnection);
    EXPECT_EQ(QApplication::exec(), 0);
}

TEST_F(Windows, controlCommaShowsSettingsFromTheAboutWindowToo)
{
    launch();
    press(window(), Qt::Key_Comma, Qt::ControlModifier);
    ASSERT_NE(delegate->settingsWindow(), nullptr);
    delegate->settingsWindow()->close();
    delegate->showAbout();
    ASSERT_TRUE(isActive(delegate->aboutWindow()));
    press(delegate->aboutWindow(), Qt::Key_Comma, Qt::ControlModifier);
    EXPECT_TRUE(delegate->settingsWindow()->isVisible());
}

TEST_F(Windows, deletingAWordInASettingsFieldBinsNoFile)
{
    launch();
    open(photo("a.jpg"));
    delegate->showSettings();
    ASSERT_TRUE(isActive(delegate->settingsWindow()));
    press(delegate->settingsWindow(), Qt::Key_Backspace, Qt::ControlModifier);
    settle();
    EXPECT_TRUE(trash.trashed.empty());
}

TEST_F(Windows, aChangeOfTheSystemAppearanceUpdatesMainAndSettingsWindowAndViewer)
{
    launch();
    delegate->showSettings();
    delegate->showAbout();
    const QPalette before = QApplication::palette();
    QPalette changed = before;
    changed.setColor(QPalette::Window, QColor(20, 30, 40));
    QPalette ownOfAbout = before;
    ownOfAbout.setColor(QPalette::Window, QColor(1, 2, 3));
    delegate->aboutWindow()->setPalette(ownOfAbout);
    QApplication::setPalette(changed);
    settle();
    EXPECT_EQ(window()->palette().color(QPalette::Window), QColor(20, 30, 40));
    EXPECT_EQ(delegate->settingsWindow()->palette().color(QPalette::Window), QColor(20, 30, 40));
    EXPECT_EQ(background(), QColor(20, 30, 40));
    EXPECT_EQ(delegate->aboutWindow()->palette().color(QPalette::Window), QColor(1, 2, 3)) << "not ours to refresh";
    QApplication::setPalette(before);
    settle();
}

TEST_F(Windows, reopeningWithAnotherWindowVisibleLeavesTheViewerClosed)
{
    launch();
    delegate->showAbout();
    window()->close();
    settle();
    delegate->handle({Kind::reopen, {}, {}});
    EXPECT_FALSE(window()->isVisible());
    EXPECT_TRUE(isActive(delegate->aboutWindow())) << "but what is there comes forward";
    delegate->aboutWindow()->close();
    delegate->handle({Kind::reopen, {}, {}});
    EXPECT_TRUE(window()->isVisible());
}

TEST_F(Windows, hidingTheApplicationMinimisesThemToo)
{
    launch();
    delegate->showSettings();
    delegate->hideApplication();
    EXPECT_TRUE(delegate->settingsWindow()->isMinimized());
}

TEST_F(Windows, smallWindowWhileAutomaticResizingIsOnUnticksSettingsToo)
{
    settings.setAutoResizeToImageSize(true);
    launch();
    delegate->showSettings();
    const auto *box = delegate->settingsViewController()->findChild<QCheckBox *>(u"autoResizeToImageSizeCheckbox"_s);
    ASSERT_NE(box, nullptr);
    EXPECT_TRUE(box->isChecked());
    delegate->resizeWindowSmall();
    EXPECT_FALSE(box->isChecked());
    delegate->resizeWindowToImage();
    EXPECT_TRUE(box->isChecked());
}

} // namespace tallowmere
