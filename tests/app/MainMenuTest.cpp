// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/app/MenuFixture.h"

#include <QAction>
#include <QActionEvent>
#include <QApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QMenuBar>

namespace tallowmere {

using namespace tallowmere::test;

class Menu : public MenuFixture
{};

TEST_F(Menu, holdsTheCommandsInTheirOrderWithTheirKeys)
{
    launch();
    QStringList titles;
    for (const QAction *action : window()->menuBar()->actions())
        titles << action->text().remove(u'&');
    EXPECT_EQ(titles, (QStringList{u"Tallowmere"_s, u"File"_s, u"View"_s, u"Window"_s, u"Help"_s}));
    EXPECT_EQ(contents(u"Tallowmere"_s), (QStringList{u"About Tallowmere"_s, u"-"_s, u"Settings... | Ctrl+,"_s, u"-"_s,
                                                      u"Quit Tallowmere | Ctrl+Q"_s}));
    EXPECT_EQ(contents(u"File"_s), (QStringList{u"Open... | Ctrl+O"_s, u"-"_s, u"Show in Finder | Ctrl+Enter"_s,
                                                u"Move to Trash | Ctrl+Backspace"_s}));
    EXPECT_EQ(contents(u"View"_s),
              (QStringList{u"Show File Size"_s, u"Show Creation Date"_s, u"Show Image Resolution"_s, u"Show File Tag"_s,
                           u"-"_s, u"Auto-resize Window to Image Size"_s, u"-"_s, u"Show File Name"_s,
                           u"  In the Title"_s, u"  In the Corner"_s, u"  Off"_s}));
    EXPECT_EQ(contents(u"Window"_s),
              (QStringList{u"Close Window | Ctrl+W"_s, u"-"_s, u"Small Window | Ctrl+1"_s, u"Medium Window | Ctrl+2"_s,
                           u"Large Window | Ctrl+3"_s, u"Fit to Image | Ctrl+4"_s}));
    EXPECT_EQ(contents(u"Help"_s), (QStringList{u"Keyboard Shortcuts"_s, u"Manual Page"_s}));
}

TEST_F(Menu, everyItemIsEnabledAtTheStartButThoseOnTheCurrentFile)
{
    launch();
    for (const QAction *item : window()->menuBar()->findChildren<QAction *>()) {
        const bool onTheFile = item == menu()->showInFinderMenuItem || item == menu()->moveToTrashMenuItem;
        EXPECT_EQ(item->isEnabled(), !onTheFile) << item->text().toStdString();
    }
}

TEST_F(Menu, aKeyHeldDownCountsOnce)
{
    launch();
    for (const QAction *item : window()->menuBar()->findChildren<QAction *>())
        EXPECT_FALSE(item->autoRepeat() && !item->shortcut().isEmpty()) << item->text().toStdString();
}

TEST_F(Menu, aPressThatXMadeOfAHeldKeyIsNoneForTheMenu)
{
    launch();
    const auto isLeftToTheMenu = [this](QEvent::Type type, int key, quint64 time) {
        QKeyEvent event(type, key, Qt::ControlModifier);
        event.setTimestamp(time);
        event.ignore();
        QApplication::sendEvent(view(), &event);
        return !event.isAccepted();
    };
    EXPECT_TRUE(isLeftToTheMenu(QEvent::ShortcutOverride, Qt::Key_Backspace, 1000));
    (void)isLeftToTheMenu(QEvent::KeyRelease, Qt::Key_Backspace, 1660);
    EXPECT_FALSE(isLeftToTheMenu(QEvent::ShortcutOverride, Qt::Key_Backspace, 1660)) << "of the release's moment";
    (void)isLeftToTheMenu(QEvent::KeyRelease, Qt::Key_Backspace, 1700);
    EXPECT_TRUE(isLeftToTheMenu(QEvent::ShortcutOverride, Qt::Key_Backspace, 1900)) << "pressed anew";
}

TEST_F(Menu, aHeldKeyThatTheMenuIsNotGivenBinsNothingEither)
{
    const FileURL a = photo("a.jpg");
    (void)photo("b.jpg");
    launch();
    open(a);
    for (const auto type : {QEvent::KeyRelease, QEvent::KeyPress}) {
        QKeyEvent event(type, Qt::Key_Backspace, Qt::ControlModifier);
        event.setTimestamp(1660);
        QApplication::sendEvent(view(), &event);
    }
    settle();
    EXPECT_TRUE(trash.trashed.empty());
    // A step does repeat.
    for (const auto type : {QEvent::KeyRelease, QEvent::KeyPress}) {
        QKeyEvent event(type, Qt::Key_Right, Qt::NoModifier);
        event.setTimestamp(1700);
        QApplication::sendEvent(view(), &event);
    }
    settle();
    EXPECT_EQ(delegate->viewController()->currentFile(), folder.at("b.jpg"));
}

TEST_F(Menu, everyKeyBelongsToExactlyOneItem)
{
    launch();
    QList<QKeySequence> keys;
    for (const QAction *action : window()->findChildren<QAction *>()) {
        if (!action->shortcut().isEmpty())
            keys << action->shortcut();
    }
    EXPECT_EQ(keys.size(), 10);
    for (const QKeySequence &key : keys)
        EXPECT_EQ(keys.count(key), 1) << key.toString().toStdString();
}

TEST_F(Menu, itemsThatChangeAreFoundByTheirNames)
{
    launch();
    for (const char *name :
         {"showFileSizeMenuItem", "showCreationDateMenuItem", "showImageResolutionMenuItem", "showFileTagMenuItem",
          "showInFinderMenuItem", "moveToTrashMenuItem", "autoResizeMenuItem", "fileNameInTitleMenuItem",
          "fileNameInCornerMenuItem", "fileNameOffMenuItem", "resizeSmallMenuItem", "resizeMediumMenuItem",
          "resizeLargeMenuItem", "resizeToImageMenuItem"})
        EXPECT_NE(window()->findChild<QAction *>(QLatin1String(name)), nullptr) << name;
}

TEST_F(Menu, withNoFileOpenShowInFinderIsDisabledWhenTheMenuOpensAndItsKeyDoesNothing)
{
    launch();
    menu()->showInFinderMenuItem->setEnabled(true);
    openMenu(u"File"_s);
    EXPECT_FALSE(menu()->showInFinderMenuItem->isEnabled());
    menu()->showInFinderMenuItem->setEnabled(true);
    press(Qt::Key_Enter);
    press(Qt::Key_Enter, Qt::ControlModifier | Qt::KeypadModifier);
    press(Qt::Key_Return);
    EXPECT_TRUE(revealer.revealed.empty());
}

TEST_F(Menu, withNoFileOpenMoveToTrashIsDisabledWhenTheMenuOpensAndItsKeyDoesNothing)
{
    launch();
    menu()->moveToTrashMenuItem->setEnabled(true);
    openMenu(u"File"_s);
    EXPECT_FALSE(menu()->moveToTrashMenuItem->isEnabled());
    menu()->moveToTrashMenuItem->setEnabled(true);
    press(Qt::Key_Backspace);
    menu()->moveToTrashMenuItem->setEnabled(true);
    menu()->moveToTrashMenuItem->trigger();
    settle();
    EXPECT_TRUE(trash.trashed.empty());
}

TEST_F(Menu, moveToTrashIsEnabledWithAFileAndBinsItOnce)
{
    launch();
    const FileURL file = photo("a.jpg");
    open(file);
    menu()->moveToTrashMenuItem->setEnabled(false);
    openMenu(u"File"_s);
    EXPECT_TRUE(menu()->moveToTrashMenuItem->isEnabled());
    menu()->moveToTrashMenuItem->setEnabled(false); // stale: no menu was opened since
    int triggered = 0;
    QObject::connect(menu()->moveToTrashMenuItem, &QAction::triggered, [&triggered] { ++triggered; });
    press(Qt::Key_Backspace);
    EXPECT_EQ(triggered, 1) << "the menu comes before the viewer";
    EXPECT_EQ(trash.trashed, std::vector<FileURL>{file});
}

TEST_F(Menu, beforeAMenuOpensEachItemIsUpdatedAndOnlyTheTwoOnTheFileChange)
{
    launch();
    for (QAction *item : {menu()->showInFinderMenuItem, menu()->moveToTrashMenuItem, menu()->resizeSmallMenuItem}) {
        item->setEnabled(true);
        EXPECT_TRUE(delegate->menuUpdateItem(item));
        EXPECT_EQ(item->isEnabled(), item == menu()->resizeSmallMenuItem);
    }
    menu()->resizeSmallMenuItem->setEnabled(false);
    EXPECT_TRUE(delegate->menuUpdateItem(menu()->resizeSmallMenuItem));
    EXPECT_FALSE(menu()->resizeSmallMenuItem->isEnabled());
    open(photo("a.jpg"));
    menu()->moveToTrashMenuItem->setEnabled(false);
    EXPECT_TRUE(delegate->menuUpdateItem(menu()->moveToTrashMenuItem));
    EXPECT_TRUE(menu()->moveToTrashMenuItem->isEnabled());
}

TEST_F(Menu, theFirstTabBarItemThatComesAfterTheMenuWasBuiltIsRemoved)
{
    delegate->applicationDidFinishLaunching();
    QMenu *const items = menuTitled(u"Window"_s);
    items->addAction(u"Show TAB Bar"_s);
    items->addAction(u"Show All Tabs"_s);
    items->addAction(u"Hide Tab Bar"_s);
    settle();
    const QStringList shown = contents(u"Window"_s);
    EXPECT_FALSE(shown.contains(u"Show TAB Bar"_s));
    EXPECT_TRUE(shown.contains(u"Show All Tabs"_s));
    EXPECT_TRUE(shown.contains(u"Hide Tab Bar"_s)) << "one is enough";
    items->addAction(u"Show Tab Bar"_s);
    settle();
    EXPECT_TRUE(contents(u"Window"_s).contains(u"Show Tab Bar"_s)) << "and once is enough";
}

TEST_F(Menu, aTabBarItemOfTheWindowSystemIsRemovedWhileTheMenuIsBuilt)
{
    /// Puts its items into the Window menu as soon as that one is in the bar.
    class Platform final : public QObject
    {
    public:
        using QObject::QObject;
        bool eventFilter(QObject *, QEvent *event) override
        {
            if (event->type() != QEvent::ActionAdded)
                return false;
            const QAction *added = static_cast<QActionEvent *>(event)->action();
            if (added->menu() && added->text().contains(u"Window"_s)) {
                added->menu()->addAction(u"SHOW TAB BAR"_s);
                added->menu()->addAction(u"Show Tab Bar"_s);
                added->menu()->addAction(u"hide tab bar"_s);
            }
            return false;
        }
    };
    QMenuBar bar;
    Platform platform;
    bar.installEventFilter(&platform);
    MainMenu built(bar, *delegate, settings);
    QStringList texts;
    for (const QAction *menuInBar : bar.actions()) {
        for (const QAction *item : menuInBar->menu()->actions())
            texts << item->text();
    }
    EXPECT_FALSE(texts.contains(u"Show Tab Bar"_s));
    EXPECT_TRUE(texts.contains(u"hide tab bar"_s));
    EXPECT_TRUE(texts.contains(u"SHOW TAB BAR"_s)) << "the pass that ignores case comes later";
    built.removeTabBarItem();
    texts.clear();
    for (const QAction *menuInBar : bar.actions()) {
        for (const QAction *item : menuInBar->menu()->actions())
            texts << item->text();
    }
    EXPECT_FALSE(texts.contains(u"SHOW TAB BAR"_s));
    EXPECT_TRUE(texts.contains(u"hide tab bar"_s));
}

TEST_F(Menu, showInFinderIsEnabledWithAFileAndRevealsItOnce)
{
    launch();
    const FileURL file = photo("a.jpg");
    open(file);
    menu()->showInFinderMenuItem->setEnabled(false);
    openMenu(u"File"_s);
    EXPECT_TRUE(menu()->showInFinderMenuItem->isEnabled());
    menu()->showInFinderMenuItem->trigger();
    EXPECT_EQ(revealer.revealed, std::vector<FileURL>{file});
}

TEST_F(Menu, theKeypadsEnterIsTheMenusAndReturnIsTheViewers)
{
    launch();
    open(photo("a.jpg"));
    int triggered = 0;
    QObject::connect(menu()->showInFinderMenuItem, &QAction::triggered, [&triggered] { ++triggered; });
    menu()->showInFinderMenuItem->setEnabled(false); // stale: no menu was opened since
    press(Qt::Key_Enter, Qt::ControlModifier | Qt::KeypadModifier);
    EXPECT_EQ(triggered, 1);
    EXPECT_EQ(revealer.revealed.size(), 1U);
    press(Qt::Key_Return);
    EXPECT_EQ(triggered, 1);
    EXPECT_EQ(revealer.revealed.size(), 2U);
}

TEST_F(Menu, statesFollowTheStoreAtTheStart)
{
    settings.setAutoResizeToImageSize(true);
    settings.setFileNameDisplayLocation(FileNameDisplayLocation::off);
    launch();
    EXPECT_TRUE(menu()->autoResizeMenuItem->isChecked());
    EXPECT_EQ(nameMarks(), (std::vector<bool>{false, false, true}));
    EXPECT_EQ(sizeMarks(), (std::vector<bool>{false, false, false, false}));
}

TEST_F(Menu, inTheCornerUnchecksInTheTitleAndOff)
{
    launch();
    EXPECT_EQ(nameMarks(), (std::vector<bool>{true, false, false}));
    menu()->fileNameInCornerMenuItem->trigger();
    EXPECT_EQ(nameMarks(), (std::vector<bool>{false, true, false}));
    EXPECT_EQ(settings.fileNameDisplayLocation(), FileNameDisplayLocation::inCorner);
    menu()->fileNameOffMenuItem->trigger();
    EXPECT_EQ(nameMarks(), (std::vector<bool>{false, false, true}));
    menu()->fileNameOffMenuItem->trigger(); // chosen again it stays chosen
    EXPECT_EQ(nameMarks(), (std::vector<bool>{false, false, true}));
}

} // namespace tallowmere
