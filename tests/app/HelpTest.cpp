// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "app/KeyboardShortcuts.h"
#include "app/KeyboardShortcutsView.h"
#include "app/ManualPageView.h"
#include "tests/app/ApplicationFixture.h"
#include "tests/doubles/ScopedEnvironment.h"
#include "viewer/KeyTable.h"

#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QMenuBar>
#include <QTest>

namespace tallowmere {

namespace {

using namespace tallowmere::test;
using namespace Qt::Literals::StringLiterals;

/// The Help menu's windows.
class Help : public ApplicationFixture
{
protected:
    static QWidget *windowTitled(const QString &title)
    {
        const QWidgetList all = QApplication::topLevelWidgets();
        const auto found = std::ranges::find_if(all, [&](const QWidget *each) { return each->windowTitle() == title; });
        return found == all.end() ? nullptr : *found;
    }
    QStringList lines() const
    {
        QStringList all;
        for (const auto &group : keyboardShortcuts(*window()->menuBar())) {
            all << group.title;
            for (const auto &shortcut : group.shortcuts)
                all << u"  "_s + shortcut.purpose + u" | "_s + shortcut.keys.join(u" "_s);
        }
        return all;
    }
};

} // namespace

TEST_F(Help, theListNamesEveryKeyOfTheMenuAndOfTheViewerOnce)
{
    launch();
    EXPECT_EQ(lines().join(u"\n"_s).toStdString(), (QStringList{u"Picture"_s,
                                                                u"  Earlier File in the Folder | Right"_s,
                                                                u"  Later File in the Folder | Left"_s,
                                                                u"  Zoom In | Ctrl++ Ctrl+="_s,
                                                                u"  Zoom Out | Ctrl+-"_s,
                                                                u"  Reset Zoom | Ctrl+0"_s,
                                                                u"  Undo Move to Trash | Ctrl+Z"_s,
                                                                u"  Minimise All Windows | Ctrl+H"_s,
                                                                u"Tallowmere"_s,
                                                                u"  Settings | Ctrl+,"_s,
                                                                u"  Quit Tallowmere | Ctrl+Q"_s,
                                                                u"File"_s,
                                                                u"  Open | Ctrl+O"_s,
                                                                u"  Show in Finder | Ctrl+Enter Ctrl+Return"_s,
                                                                u"  Move to Trash | Ctrl+Backspace"_s,
                                                                u"Window"_s,
                                                                u"  Close Window | Ctrl+W"_s,
                                                                u"  Small Window | Ctrl+1"_s,
                                                                u"  Medium Window | Ctrl+2"_s,
                                                                u"  Large Window | Ctrl+3"_s,
                                                                u"  Fit to Image | Ctrl+4"_s})
                                                       .join(u"\n"_s)
                                                       .toStdString());
}

TEST_F(Help, theListFollowsTheMenu)
{
    launch();
    menu()->resizeSmallMenuItem->setShortcut(QKeySequence(u"Alt+F5"_s));
    EXPECT_TRUE(lines().contains(u"  Small Window | Alt+F5 Ctrl+1"_s)) << "the viewer still knows Ctrl+1";
}

TEST_F(Help, keyboardShortcutsShowsTheListInOneWindowThatEscapeCloses)
{
    launch();
    delegate->showKeyboardShortcuts();
    QWidget *const shown = windowTitled(u"Keyboard Shortcuts"_s);
    ASSERT_NE(shown, nullptr);
    QStringList texts;
    for (const QLabel *label : shown->findChildren<QLabel *>())
        texts << label->text();
    EXPECT_TRUE(texts.contains(u"Ctrl+Enter or Ctrl+Return"_s)) << texts.join(u'\n').toStdString();
    EXPECT_TRUE(texts.contains(u"Undo Move to Trash"_s));
    ASSERT_TRUE(QTest::qWaitForWindowActive(shown, 30'000));
    QTest::keyClick(shown->windowHandle(), Qt::Key_Escape);
    EXPECT_FALSE(shown->isVisible());
    delegate->showKeyboardShortcuts();
    EXPECT_TRUE(shown->isVisible()) << "the same window again";
}

TEST_F(Help, theManualPageIsWhatManSays)
{
    launch();
    delegate->showManualPage();
    const QWidget *shown = windowTitled(u"Manual Page"_s);
    ASSERT_NE(shown, nullptr);
    const auto *page = shown->findChild<ManualPageView *>();
    ASSERT_NE(page, nullptr);
    EXPECT_TRUE(QTest::qWaitFor([page] { return page->toPlainText().contains(u"step through its folder"_s); }, 60'000))
        << page->toPlainText().toStdString();
    EXPECT_TRUE(page->isReadOnly());
}

TEST_F(Help, whatTheUserHasSetForATerminalDoesNotReachThePage)
{
    const ScopedEnvironment formatting("MAN_KEEP_FORMATTING", "1");
    const ScopedEnvironment options("MANOPT", "-Tps");
    const ManualPageView page;
    EXPECT_TRUE(QTest::qWaitFor([&] { return page.toPlainText().contains(u"NAME\n"_s); }, 60'000))
        << page.toPlainText().toStdString();
}

TEST_F(Help, aMissingManualPageIsSaidToBeMissing)
{
    const QString nowhere = QFile::decodeName(folder.path());
    const ScopedEnvironment manpath("MANPATH", QByteArray(folder.path()));
    const ManualPageView page(nowhere);
    EXPECT_TRUE(QTest::qWaitFor([&] { return page.toPlainText() == u"The manual page is not installed."_s; }, 60'000));
}

TEST_F(Help, aMissingManIsSaidToBeMissing)
{
    const ScopedEnvironment nothing("PATH", QByteArray(folder.path()));
    ManualPageView page;
    EXPECT_TRUE(QTest::qWaitFor([&] { return page.toPlainText() == u"The manual page is not installed."_s; }, 60'000));
}

} // namespace tallowmere
