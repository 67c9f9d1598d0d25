// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/app/ApplicationFixture.h"
#include "viewer/Pill.h"
#include "viewer/TagCircle.h"

#include <QAction>
#include <QActionEvent>
#include <QApplication>
#include <QDialog>
#include <QFileDialog>
#include <QMenu>
#include <QMenuBar>
#include <QScreen>
#include <QTest>

namespace tallowmere {

namespace {

using namespace tallowmere::test;
using namespace Qt::Literals::StringLiterals;

class Menu : public ApplicationFixture
{
protected:
    QMenu *menuTitled(const QString &title) const
    {
        for (const QAction *action : window()->menuBar()->actions()) {
            if (action->text().remove(u'&') == title)
                return action->menu();
        }
        return nullptr;
    }
    /// The submenu's items are indented; a separator is a dash.
    static void list(const QMenu *menu, const QString &indent, QStringList &lines)
    {
        for (const QAction *action : menu->actions()) {
            if (action->isSeparator()) {
                lines << indent + u"-"_s;
                continue;
            }
            const QString key = action->shortcut().toString(QKeySequence::PortableText);
            lines << indent + action->text() + (key.isEmpty() ? QString() : u" | "_s + key);
            if (action->menu())
                list(action->menu(), indent + u"  "_s, lines);
        }
    }
    QStringList contents(const QString &title) const
    {
        QStringList lines;
        if (const QMenu *menu = menuTitled(title))
            list(menu, {}, lines);
        return lines;
    }
    void press(int key, Qt::KeyboardModifiers modifiers = Qt::ControlModifier)
    {
        QTest::keyClick(window()->windowHandle(), static_cast<Qt::Key>(key), modifiers);
        settle();
    }
    /// What happens to a menu just before it is seen.
    void openMenu(const QString &title) { Q_EMIT menuTitled(title)->aboutToShow(); }
    std::vector<bool> sizeMarks() const
    {
        return {menu()->resizeSmallMenuItem->isChecked(), menu()->resizeMediumMenuItem->isChecked(),
                menu()->resizeLargeMenuItem->isChecked(), menu()->resizeToImageMenuItem->isChecked()};
    }
    std::vector<bool> nameMarks() const
    {
        return {menu()->fileNameInTitleMenuItem->isChecked(), menu()->fileNameInCornerMenuItem->isChecked(),
                menu()->fileNameOffMenuItem->isChecked()};
    }
    QColor systemBackground() const { return delegate->viewController()->windowBackgroundColor(); }
};

} // namespace

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

TEST_F(Menu, eachDisplayToggleWritesItsSettingAndMarksItsItem)
{
    struct Toggle
    {
        QAction *MainMenu::*item;
        bool (SettingsManager::*read)() const;
    };
    const Toggle toggles[] = {
        {&MainMenu::showFileSizeMenuItem, &SettingsManager::showFileSize},
        {&MainMenu::showCreationDateMenuItem, &SettingsManager::showCreationDate},
        {&MainMenu::showImageResolutionMenuItem, &SettingsManager::showImageResolution},
        {&MainMenu::showFileTagMenuItem, &SettingsManager::showFileTag},
    };
    launch();
    for (const Toggle &toggle : toggles) {
        QAction *const item = menu()->*toggle.item;
        const bool before = (settings.*toggle.read)();
        EXPECT_EQ(item->isChecked(), before) << item->text().toStdString();
        item->trigger();
        EXPECT_EQ((settings.*toggle.read)(), !before) << item->text().toStdString();
        EXPECT_EQ(item->isChecked(), !before) << item->text().toStdString();
        item->trigger();
        EXPECT_EQ((settings.*toggle.read)(), before) << item->text().toStdString();
        EXPECT_EQ(item->isChecked(), before) << item->text().toStdString();
        EXPECT_TRUE(item->isEnabled());
    }
}

TEST_F(Menu, theInformationFollowsItsTogglesAtOnce)
{
    settings.setShowImageResolution(false);
    launch();
    open(photo("a.jpg", 320, 240));
    const Pill *pill = view()->findChild<Pill *>(u"fileInfoPill"_s);
    ASSERT_NE(pill, nullptr);
    EXPECT_TRUE(pill->isVisible());
    EXPECT_EQ(pill->text(), u"2 MB"_s);
    menu()->showCreationDateMenuItem->trigger();
    menu()->showImageResolutionMenuItem->trigger();
    settle();
    EXPECT_EQ(pill->text(), u"2 MB • Unknown • 320×240"_s);
    for (QAction *item :
         {menu()->showFileSizeMenuItem, menu()->showCreationDateMenuItem, menu()->showImageResolutionMenuItem})
        item->trigger();
    EXPECT_FALSE(pill->isVisible());
    settle();
    EXPECT_FALSE(pill->isVisible());
}

TEST_F(Menu, theFileTagFollowsItsToggleAtOnce)
{
    labels.stated = {.number = 3, .colour = {}};
    launch();
    open(photo("a.jpg"));
    const TagCircle *circle = view()->findChild<TagCircle *>();
    ASSERT_NE(circle, nullptr);
    EXPECT_FALSE(circle->isVisible());
    menu()->showFileTagMenuItem->trigger();
    settle();
    EXPECT_TRUE(circle->isVisible());
    menu()->showFileTagMenuItem->trigger();
    EXPECT_FALSE(circle->isVisible());
}

TEST_F(Menu, inTheCornerShowsTheNameThere)
{
    launch();
    open(photo("a.jpg"));
    const Pill *pill = view()->findChild<Pill *>(u"fileNamePill"_s);
    ASSERT_NE(pill, nullptr);
    EXPECT_FALSE(pill->isVisible());
    menu()->fileNameInCornerMenuItem->trigger();
    EXPECT_TRUE(pill->isVisible());
    EXPECT_EQ(pill->text(), u"a.jpg"_s);
    EXPECT_EQ(window()->windowTitle(), u"Tallowmere"_s);
    menu()->fileNameOffMenuItem->trigger();
    EXPECT_FALSE(pill->isVisible());
}

TEST_F(Menu, theFileNameLeavesAndEntersTheTitleAtOnce)
{
    launch();
    open(photo("a.jpg"));
    menu()->fileNameOffMenuItem->trigger();
    EXPECT_EQ(window()->windowTitle(), u"Tallowmere"_s);
    menu()->fileNameInTitleMenuItem->trigger();
    EXPECT_EQ(window()->windowTitle(), u"Tallowmere • a.jpg"_s);
}

TEST_F(Menu, fitToImageTwiceInARowSwitchesAutomaticResizingOnAndOff)
{
    launch();
    open(photo("a.jpg", 300, 200));
    press(Qt::Key_4);
    EXPECT_TRUE(settings.autoResizeToImageSize());
    EXPECT_TRUE(menu()->autoResizeMenuItem->isChecked());
    EXPECT_EQ(sizeMarks(), (std::vector<bool>{false, false, false, true}));
    EXPECT_TRUE(QTest::qWaitFor([this] { return view()->size() == QSize(300, 200); }, 30'000));

    window()->resize(500, 450);
    press(Qt::Key_4);
    EXPECT_FALSE(settings.autoResizeToImageSize());
    EXPECT_FALSE(menu()->autoResizeMenuItem->isChecked());
    EXPECT_EQ(sizeMarks(), (std::vector<bool>{false, false, false, false}));
    EXPECT_EQ(window()->size(), QSize(500, 450)); // not resized
    EXPECT_EQ(background(), systemBackground());
}

TEST_F(Menu, fitToImageGivesTheViewerTheAverageColour)
{
    launch();
    open(photo("a.jpg"));
    EXPECT_EQ(background(), systemBackground());
    menu()->resizeToImageMenuItem->trigger();
    settle();
    EXPECT_NEAR(background().red(), 200, 6);
    EXPECT_NEAR(background().green(), 100, 6);
    EXPECT_NEAR(background().blue(), 50, 6);
}

TEST_F(Menu, anAverageColourThatComesTooLateIsNotShown)
{
    launch();
    open(photo("a.jpg"));
    menu()->resizeToImageMenuItem->trigger();
    menu()->resizeToImageMenuItem->trigger(); // off before the computation has begun
    settle();
    EXPECT_EQ(background(), systemBackground());
}

TEST_F(Menu, smallWindowEndsAutomaticResizingAndGivesAFrameOf600By400)
{
    settings.setAutoResizeToImageSize(true);
    launch();
    open(photo("a.jpg", 300, 200));
    press(Qt::Key_1);
    EXPECT_FALSE(settings.autoResizeToImageSize());
    EXPECT_FALSE(menu()->autoResizeMenuItem->isChecked());
    EXPECT_EQ(sizeMarks(), (std::vector<bool>{true, false, false, false}));
    EXPECT_TRUE(frameBecomes({600, 400}));
    EXPECT_EQ(background(), systemBackground());
}

TEST_F(Menu, mediumWindowKeepsTheCentre)
{
    launch();
    press(Qt::Key_1);
    ASSERT_TRUE(frameBecomes({600, 400}));
    const QPoint centre = window()->frameGeometry().center();
    menu()->resizeMediumMenuItem->trigger();
    EXPECT_TRUE(frameBecomes({900, 600}));
    EXPECT_LE((window()->frameGeometry().center() - centre).manhattanLength(), 2);
    EXPECT_EQ(sizeMarks(), (std::vector<bool>{false, true, false, false}));
}

TEST_F(Menu, largeWindowLeaves40PointsOfTheScreenOnEverySide)
{
    launch();
    press(Qt::Key_3);
    EXPECT_TRUE(frameBecomes(window()->screen()->availableGeometry().adjusted(40, 40, -40, -40).size()));
    EXPECT_EQ(sizeMarks(), (std::vector<bool>{false, false, true, false}));
}

TEST_F(Menu, aSizeChosenTwiceStaysMarked)
{
    launch();
    menu()->resizeSmallMenuItem->trigger();
    menu()->resizeSmallMenuItem->trigger();
    EXPECT_EQ(sizeMarks(), (std::vector<bool>{true, false, false, false}));
}

TEST_F(Menu, aRefreshLeavesTheMarksOfTheSizesAlone)
{
    launch();
    menu()->resizeSmallMenuItem->trigger();
    delegate->refreshMenuItems();
    EXPECT_EQ(sizeMarks(), (std::vector<bool>{true, false, false, false}));
}

TEST_F(Menu, autoResizeSwitchedOnFitsTheWindowAndSwitchedOffRestoresTheBackground)
{
    launch();
    open(photo("a.jpg", 320, 240));
    menu()->autoResizeMenuItem->trigger();
    settle();
    EXPECT_TRUE(settings.autoResizeToImageSize());
    EXPECT_TRUE(menu()->autoResizeMenuItem->isChecked());
    EXPECT_TRUE(QTest::qWaitFor([this] { return view()->size() == QSize(320, 240); }, 30'000));
    EXPECT_NE(background(), systemBackground());

    menu()->autoResizeMenuItem->trigger();
    EXPECT_FALSE(settings.autoResizeToImageSize());
    EXPECT_FALSE(menu()->autoResizeMenuItem->isChecked());
    EXPECT_EQ(background(), systemBackground());
    EXPECT_EQ(view()->size(), QSize(320, 240));
}

TEST_F(Menu, autoResizeWithoutAnImageOnlyChangesTheSetting)
{
    launch();
    const QRect before = window()->geometry();
    menu()->autoResizeMenuItem->trigger();
    settle();
    EXPECT_TRUE(settings.autoResizeToImageSize());
    EXPECT_EQ(window()->geometry(), before);
}

TEST_F(Menu, commandsWithoutAViewerDoNothing)
{
    delegate->openFile();
    delegate->showInFinder();
    delegate->moveToTrash();
    delegate->showKeyboardShortcuts();
    delegate->closeWindow();
    delegate->resizeWindowSmall();
    delegate->resizeWindowMedium();
    delegate->resizeWindowLarge();
    delegate->setFileNameDisplayInCorner();
    delegate->toggleShowFileSize();
    delegate->toggleShowCreationDate();
    delegate->toggleShowImageResolution();
    delegate->toggleShowFileTag();
    delegate->toggleAutoResizeToImageSize();
    EXPECT_TRUE(settings.autoResizeToImageSize()); // the setting itself needs none
    delegate->resizeWindowToImage();
    EXPECT_FALSE(settings.autoResizeToImageSize());
    EXPECT_EQ(window(), nullptr);
}

TEST_F(Menu, closeWindowHidesTheViewerAndResetsIt)
{
    launch();
    open(photo("a.jpg"));
    press(Qt::Key_W);
    EXPECT_FALSE(window()->isVisible());
    EXPECT_TRUE(delegate->viewController()->currentFile().empty());
}

TEST_F(Menu, closeWindowWithAnotherWindowInFrontClosesThatOne)
{
    launch();
    QDialog other(window());
    other.show();
    other.activateWindow();
    ASSERT_TRUE(QTest::qWaitFor([&other] { return QApplication::activeWindow() == &other; }, 30'000));
    QTest::keyClick(other.windowHandle(), Qt::Key_W, Qt::ControlModifier);
    EXPECT_FALSE(other.isVisible());
    EXPECT_TRUE(window()->isVisible());
}

TEST_F(Menu, quitEndsTheEventLoop)
{
    launch();
    QMetaObject::invokeMethod(
        qApp, [this] { press(Qt::Key_Q); }, Qt::QueuedConnection);
    EXPECT_EQ(QApplication::exec(), 0);
}

TEST_F(Menu, withAllFourFormatsOffTheOpenPanelOffersJpegOnly)
{
    settings.setPngSupportEnabled(false);
    settings.setWebpSupportEnabled(false);
    settings.setAvifSupportEnabled(false);
    settings.setHeicSupportEnabled(false);
    launch();
    press(Qt::Key_O);
    auto *panel = window()->findChild<QFileDialog *>();
    ASSERT_NE(panel, nullptr);
    const QString filters = (panel->nameFilters() + panel->mimeTypeFilters()).join(u' ');
    EXPECT_TRUE(filters.contains(u"*.jpg"_s)) << filters.toStdString();
    for (const QString &other : {u"png"_s, u"webp"_s, u"avif"_s, u"heic"_s, u"heif"_s})
        EXPECT_FALSE(filters.contains(other)) << filters.toStdString();
    EXPECT_FALSE(panel->isModal());
    panel->close();
}

} // namespace tallowmere
