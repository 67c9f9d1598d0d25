// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QKeySequence>
#include <QList>
#include <QObject>

class QAction;
class QMenu;
class QMenuBar;

namespace tallowmere {

class MenuCommands;
class SettingsManager;

/// The menu bar: its items, their keys and their states. Built once, never rebuilt.
class MainMenu final : public QObject
{
    Q_OBJECT

public:
    /// Fills @p menuBar, which owns the items. Everything given outlives the menu.
    MainMenu(QMenuBar &menuBar, MenuCommands &commands, const SettingsManager &settings);

    // The items whose state or enabling changes at run time; each is also its object's name.
    QAction *showInFinderMenuItem = nullptr;
    QAction *moveToTrashMenuItem = nullptr;
    QAction *showFileSizeMenuItem = nullptr;
    QAction *showCreationDateMenuItem = nullptr;
    QAction *showImageResolutionMenuItem = nullptr;
    QAction *showFileTagMenuItem = nullptr;
    QAction *autoResizeMenuItem = nullptr;
    QAction *fileNameInTitleMenuItem = nullptr;
    QAction *fileNameInCornerMenuItem = nullptr;
    QAction *fileNameOffMenuItem = nullptr;
    QAction *resizeSmallMenuItem = nullptr;
    QAction *resizeMediumMenuItem = nullptr;
    QAction *resizeLargeMenuItem = nullptr;
    QAction *resizeToImageMenuItem = nullptr;

    /// Check marks from the store, enabling from @p hasCurrentFile. Leaves the sizes' check marks alone.
    void refresh(bool hasCurrentFile);
    void setHasCurrentFile(bool hasCurrentFile);
    /// setHasCurrentFile() for @p item alone; any but the items on the current file is left as it is.
    void updateItem(QAction *item, bool hasCurrentFile);
    /// Window systems with tabs add items of their own to the Window menu, also after it was built; this program has
    /// no tabs. Removes the first of them.
    void removeTabBarItem();
    /// The items whose keys hold in every window of the program, also while the menu's own is closed.
    [[nodiscard]] QList<QAction *> itemsForAllWindows() const;
    /// The one size item with a check mark; null: none has.
    void markSize(const QAction *item);

private:
    using Command = void (MenuCommands::*)();

    QMenu *addMenu(QMenuBar &menuBar, const QString &title);
    QAction *addItem(QMenu *menu, const QString &text, Command command, const QKeySequence &key = {});
    QAction *addCheckItem(QMenu *menu, const QString &name, const QString &text, Command command,
                          const QKeySequence &key = {});
    void buildApplicationMenu(QMenuBar &menuBar);
    void buildFileMenu(QMenuBar &menuBar);
    void buildViewMenu(QMenuBar &menuBar);
    void buildWindowMenu(QMenuBar &menuBar);
    void buildHelpMenu(QMenuBar &menuBar);
    void setStatesFromStore();

    MenuCommands &m_commands;
    const SettingsManager &m_settings;
    QMenuBar &m_menuBar;
    QList<QAction *> m_itemsForAllWindows;
};

} // namespace tallowmere
