// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "app/MainMenu.h"

#include "app/MenuCommands.h"
#include "settings/SettingsManager.h"

#include <QAction>
#include <QActionGroup>
#include <QMenu>
#include <QMenuBar>

namespace tallowmere {

using namespace Qt::Literals::StringLiterals;

MainMenu::MainMenu(QMenuBar &menuBar, MenuCommands &commands, const SettingsManager &settings)
    : m_commands(commands), m_settings(settings)
{
    buildApplicationMenu(menuBar);
    buildFileMenu(menuBar);
    buildViewMenu(menuBar);
    buildWindowMenu(menuBar);
    setStatesFromStore();
}

QMenu *MainMenu::addMenu(QMenuBar &menuBar, const QString &title)
{
    QMenu *menu = menuBar.addMenu(title);
    connect(menu, &QMenu::aboutToShow, this, [this] { m_commands.menuNeedsUpdate(); });
    return menu;
}

QAction *MainMenu::addItem(QMenu *menu, const QString &text, Command command, const QKeySequence &key)
{
    QAction *item = menu->addAction(text);
    item->setShortcut(key);
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
    QAction *quit = addItem(menu, u"Quit Tallowmere"_s, &MenuCommands::terminate, QKeySequence(Qt::CTRL | Qt::Key_Q));
    quit->setShortcutContext(Qt::ApplicationShortcut); // also from a dialog or another window of ours
}

void MainMenu::buildFileMenu(QMenuBar &menuBar)
{
    QMenu *menu = addMenu(menuBar, u"&File"_s);
    addItem(menu, u"Open..."_s, &MenuCommands::openFile, QKeySequence(Qt::CTRL | Qt::Key_O));
    menu->addSeparator();
    // The keypad's Enter. Ctrl-Return is the viewer's own: each key belongs to exactly one of the two.
    showInFinderMenuItem =
        addItem(menu, u"Show in Finder"_s, &MenuCommands::showInFinder, QKeySequence(Qt::CTRL | Qt::Key_Enter));
    showInFinderMenuItem->setObjectName(u"showInFinderMenuItem"_s);
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
    menu->addSeparator();
    resizeSmallMenuItem = addCheckItem(menu, u"resizeSmallMenuItem"_s, u"Small Window"_s,
                                       &MenuCommands::resizeWindowSmall, QKeySequence(Qt::CTRL | Qt::Key_1));
    resizeMediumMenuItem = addCheckItem(menu, u"resizeMediumMenuItem"_s, u"Medium Window"_s,
                                        &MenuCommands::resizeWindowMedium, QKeySequence(Qt::CTRL | Qt::Key_2));
    resizeLargeMenuItem = addCheckItem(menu, u"resizeLargeMenuItem"_s, u"Large Window"_s,
                                       &MenuCommands::resizeWindowLarge, QKeySequence(Qt::CTRL | Qt::Key_3));
    resizeToImageMenuItem = addCheckItem(menu, u"resizeToImageMenuItem"_s, u"Fit to Image"_s,
                                         &MenuCommands::resizeWindowToImage, QKeySequence(Qt::CTRL | Qt::Key_4));
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
