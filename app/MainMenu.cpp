// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "app/MainMenu.h"

#include "app/MenuCommands.h"
#include "settings/SettingsManager.h"

#include <QAction>
#include <QActionGroup>
#include <QMenu>
#include <QMenuBar>

#include <algorithm>

namespace tallowmere {

using namespace Qt::Literals::StringLiterals;

namespace {

/// An item's or a menu's text without the mark of its access key.
QString plainText(const QAction *action)
{
    return action->text().remove(u'&');
}

template <typename Condition>
void removeFirstItem(QMenu *menu, Condition condition)
{
    const QList<QAction *> items = menu->actions();
    const auto found = std::ranges::find_if(items, [&](const QAction *item) { return condition(plainText(item)); });
    if (found != items.end())
        menu->removeAction(*found);
}

} // namespace

MainMenu::MainMenu(QMenuBar &menuBar, MenuCommands &commands, const SettingsManager &settings)
    : m_commands(commands), m_settings(settings), m_menuBar(menuBar)
{
    buildApplicationMenu(menuBar);
    buildFileMenu(menuBar);
    buildViewMenu(menuBar);
    buildWindowMenu(menuBar);
    buildHelpMenu(menuBar);
    setStatesFromStore();
}

QMenu *MainMenu::addMenu(QMenuBar &menuBar, const QString &title)
{
    QMenu *menu = menuBar.addMenu(title);
    connect(menu, &QMenu::aboutToShow, this, [this, menu] {
        m_commands.menuNeedsUpdate();
        for (QAction *item : menu->actions()) {
            if (!m_commands.menuUpdateItem(item))
                break;
        }
    });
    return menu;
}

QAction *MainMenu::addItem(QMenu *menu, const QString &text, Command command, const QKeySequence &key)
{
    QAction *item = menu->addAction(text);
    item->setShortcut(key);
    item->setAutoRepeat(false);         // a key held a little too long must not bin the next file, too
    item->setMenuRole(QAction::NoRole); // no guessing from the text: every item stays where it was put
    connect(item, &QAction::triggered, this, [this, command] { (m_commands.*command)(); });
    return item;
}

QAction *MainMenu::addCheckItem(QMenu *menu, const QString &name, const QString &text, Command command,
                                const QKeySequence &key)
{
    QAction *item = addItem(menu, text, command, key);
    item->setObjectName(name);
    item->setCheckable(true);
    return item;
}

void MainMenu::buildApplicationMenu(QMenuBar &menuBar)
{
    QMenu *menu = addMenu(menuBar, u"&Tallowmere"_s);
    addItem(menu, u"About Tallowmere"_s, &MenuCommands::showAbout);
    menu->addSeparator();
    m_itemsForAllWindows << addItem(menu, u"Settings..."_s, &MenuCommands::showSettings,
                                    QKeySequence(Qt::CTRL | Qt::Key_Comma));
    menu->addSeparator();
    QAction *quit = addItem(menu, u"Quit Tallowmere"_s, &MenuCommands::terminate, QKeySequence(Qt::CTRL | Qt::Key_Q));
    quit->setShortcutContext(Qt::ApplicationShortcut); // also from a dialog or another window of ours
    m_itemsForAllWindows << quit;
}

void MainMenu::buildFileMenu(QMenuBar &menuBar)
{
    QMenu *menu = addMenu(menuBar, u"&File"_s);
    m_itemsForAllWindows << addItem(menu, u"Open..."_s, &MenuCommands::openFile, QKeySequence(Qt::CTRL | Qt::Key_O));
    menu->addSeparator();
    // The keypad's Enter. Ctrl-Return is the viewer's own: each key belongs to exactly one of the two.
    showInFinderMenuItem =
        addItem(menu, u"Show in Finder"_s, &MenuCommands::showInFinder, QKeySequence(Qt::CTRL | Qt::Key_Enter));
    showInFinderMenuItem->setObjectName(u"showInFinderMenuItem"_s);
    moveToTrashMenuItem =
        addItem(menu, u"Move to Trash"_s, &MenuCommands::moveToTrash, QKeySequence(Qt::CTRL | Qt::Key_Backspace));
    moveToTrashMenuItem->setObjectName(u"moveToTrashMenuItem"_s);
}

void MainMenu::buildViewMenu(QMenuBar &menuBar)
{
    QMenu *menu = addMenu(menuBar, u"&View"_s);
    showFileSizeMenuItem =
        addCheckItem(menu, u"showFileSizeMenuItem"_s, u"Show File Size"_s, &MenuCommands::toggleShowFileSize);
    showCreationDateMenuItem = addCheckItem(menu, u"showCreationDateMenuItem"_s, u"Show Creation Date"_s,
                                            &MenuCommands::toggleShowCreationDate);
    showImageResolutionMenuItem = addCheckItem(menu, u"showImageResolutionMenuItem"_s, u"Show Image Resolution"_s,
                                               &MenuCommands::toggleShowImageResolution);
    showFileTagMenuItem =
        addCheckItem(menu, u"showFileTagMenuItem"_s, u"Show File Tag"_s, &MenuCommands::toggleShowFileTag);
    menu->addSeparator();
    autoResizeMenuItem = addCheckItem(menu, u"autoResizeMenuItem"_s, u"Auto-resize Window to Image Size"_s,
                                      &MenuCommands::toggleAutoResizeToImageSize);
    menu->addSeparator();
    QMenu *fileName = menu->addMenu(u"Show File Name"_s);
    fileNameInTitleMenuItem = addCheckItem(fileName, u"fileNameInTitleMenuItem"_s, u"In the Title"_s,
                                           &MenuCommands::setFileNameDisplayInTitle);
    fileNameInCornerMenuItem = addCheckItem(fileName, u"fileNameInCornerMenuItem"_s, u"In the Corner"_s,
                                            &MenuCommands::setFileNameDisplayInCorner);
    fileNameOffMenuItem =
        addCheckItem(fileName, u"fileNameOffMenuItem"_s, u"Off"_s, &MenuCommands::setFileNameDisplayOff);
    auto *radio = new QActionGroup(fileName);
    for (QAction *item : {fileNameInTitleMenuItem, fileNameInCornerMenuItem, fileNameOffMenuItem})
        radio->addAction(item);
}

void MainMenu::buildWindowMenu(QMenuBar &menuBar)
{
    QMenu *menu = addMenu(menuBar, u"&Window"_s);
    QAction *close = addItem(menu, u"Close Window"_s, &MenuCommands::closeWindow, QKeySequence(Qt::CTRL | Qt::Key_W));
    close->setShortcutContext(Qt::ApplicationShortcut); // it closes whichever window is in front
    m_itemsForAllWindows << close;
    menu->addSeparator();
    resizeSmallMenuItem = addCheckItem(menu, u"resizeSmallMenuItem"_s, u"Small Window"_s,
                                       &MenuCommands::resizeWindowSmall, QKeySequence(Qt::CTRL | Qt::Key_1));
    resizeMediumMenuItem = addCheckItem(menu, u"resizeMediumMenuItem"_s, u"Medium Window"_s,
                                        &MenuCommands::resizeWindowMedium, QKeySequence(Qt::CTRL | Qt::Key_2));
    resizeLargeMenuItem = addCheckItem(menu, u"resizeLargeMenuItem"_s, u"Large Window"_s,
                                       &MenuCommands::resizeWindowLarge, QKeySequence(Qt::CTRL | Qt::Key_3));
    resizeToImageMenuItem = addCheckItem(menu, u"resizeToImageMenuItem"_s, u"Fit to Image"_s,
                                         &MenuCommands::resizeWindowToImage, QKeySequence(Qt::CTRL | Qt::Key_4));
    m_itemsForAllWindows << resizeSmallMenuItem << resizeMediumMenuItem << resizeLargeMenuItem << resizeToImageMenuItem;
    removeFirstItem(menu,
                    [](const QString &text) { return text.contains(u"Tab Bar"_s) || text.contains(u"tab bar"_s); });
}

void MainMenu::buildHelpMenu(QMenuBar &menuBar)
{
    QMenu *menu = addMenu(menuBar, u"&Help"_s);
    addItem(menu, u"Keyboard Shortcuts"_s, &MenuCommands::showKeyboardShortcuts);
    addItem(menu, u"Manual Page"_s, &MenuCommands::showManualPage);
}

void MainMenu::removeTabBarItem()
{
    const QList<QAction *> menus = m_menuBar.actions();
    const auto window = std::ranges::find_if(menus, [](const QAction *menu) { return plainText(menu) == u"Window"_s; });
    if (window != menus.end())
        removeFirstItem((*window)->menu(),
                        [](const QString &text) { return text.contains(u"tab bar"_s, Qt::CaseInsensitive); });
}

QList<QAction *> MainMenu::itemsForAllWindows() const
{
    return m_itemsForAllWindows;
}

void MainMenu::refresh(bool hasCurrentFile)
{
    for (QAction *item :
         {showFileSizeMenuItem, showCreationDateMenuItem, showImageResolutionMenuItem, showFileTagMenuItem,
          autoResizeMenuItem, fileNameInTitleMenuItem, fileNameInCornerMenuItem, fileNameOffMenuItem})
        item->setEnabled(true);
    setHasCurrentFile(hasCurrentFile);
    setStatesFromStore();
}

void MainMenu::setHasCurrentFile(bool hasCurrentFile)
{
    showInFinderMenuItem->setEnabled(hasCurrentFile);
    moveToTrashMenuItem->setEnabled(hasCurrentFile);
}

void MainMenu::updateItem(QAction *item, bool hasCurrentFile)
{
    if (item == showInFinderMenuItem || item == moveToTrashMenuItem)
        item->setEnabled(hasCurrentFile);
}

void MainMenu::markSize(const QAction *item)
{
    for (QAction *size : {resizeSmallMenuItem, resizeMediumMenuItem, resizeLargeMenuItem, resizeToImageMenuItem})
        size->setChecked(size == item);
}

void MainMenu::setStatesFromStore()
{
    showFileSizeMenuItem->setChecked(m_settings.showFileSize());
    showCreationDateMenuItem->setChecked(m_settings.showCreationDate());
    showImageResolutionMenuItem->setChecked(m_settings.showImageResolution());
    showFileTagMenuItem->setChecked(m_settings.showFileTag());
    autoResizeMenuItem->setChecked(m_settings.autoResizeToImageSize());
    const FileNameDisplayLocation location = m_settings.fileNameDisplayLocation();
    fileNameInTitleMenuItem->setChecked(location == FileNameDisplayLocation::inTitle);
    fileNameInCornerMenuItem->setChecked(location == FileNameDisplayLocation::inCorner);
    fileNameOffMenuItem->setChecked(location == FileNameDisplayLocation::off);
}

} // namespace tallowmere
