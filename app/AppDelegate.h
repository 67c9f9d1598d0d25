// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "app/MenuCommands.h"
#include "platform/ApplicationRequest.h"
#include "support/FileURL.h"
#include "viewer/Shell.h"

#include <QColor>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QSize>

#include <memory>

class QWidget;

namespace tallowmere {

class AboutViewController;
class AppearanceObservation;
class ContentWindow;
class DefaultFileAssociationManager;
class FileAttributesReader;
class FileLabelReader;
class FileRevealer;
class FolderAccess;
class ImageCacheManager;
class ImageLoader;
class Launcher;
class MainMenu;
class MainQueue;
class MainWindow;
class SecurityScope;
class SettingsManager;
class SettingsViewController;
class Trash;
class ViewController;
enum class FileNameDisplayLocation;

/// Owns the windows, brings the desktop's requests to the viewer and carries out the menu's commands.
///
/// Main thread. Lives as long as the application object; its windows are hidden when closed and come back as they
/// were left.
class AppDelegate final : public QObject, public Shell, public MenuCommands
{
    Q_OBJECT

public:
    /// What the delegate works with; everything referred to outlives it.
    struct Surroundings
    {
        SettingsManager &settings;
        std::shared_ptr<ImageLoader> loader;
        std::shared_ptr<ImageCacheManager> cache;
        SecurityScope &scope;
        FolderAccess &folderAccess;
        FileRevealer &revealer;
        Trash &trash;
        const FileLabelReader &labelReader;
        const FileAttributesReader &attributesReader;
        MainQueue &mainQueue;
        Launcher &launcher;
        DefaultFileAssociationManager &fileAssociations;
    };
    explicit AppDelegate(const Surroundings &surroundings);
    ~AppDelegate() override;

    /// Registers the program with the desktop when it is launched for the first time, and shows the main window with
    /// its menu. Once, before the event loop.
    void applicationDidFinishLaunching();
    /// One file. False, with nothing changed, when its extension is not enabled.
    bool applicationOpenFile(const FileURL &file);
    /// The main window comes forward whatever @p files holds; the first of them is opened, if it is accepted.
    void applicationOpenFiles(const QList<FileURL> &files);
    /// Without a visible window the main one comes back. Always true.
    bool applicationShouldHandleReopen(bool hasVisibleWindows);
    /// What came over the session bus.
    void handle(const ApplicationRequest &request);
    /// Nobody can ask for a window any more: without one, even a minimised one, the program ends.
    void sessionBusLost();

    /// The background of the windows and of the viewer follows the palette.
    void refreshAppearance();

    /// Null until launched.
    [[nodiscard]] MainWindow *window() const { return m_window.get(); }
    [[nodiscard]] ViewController *viewController() const { return m_viewController.get(); }
    [[nodiscard]] MainMenu *menu() const { return m_menu.get(); }
    /// These four: null until first asked for, from then on always the same.
    [[nodiscard]] ContentWindow *settingsWindow() const { return m_settingsWindow.get(); }
    [[nodiscard]] SettingsViewController *settingsViewController() const { return m_settingsViewController; }
    [[nodiscard]] ContentWindow *aboutWindow() const { return m_aboutWindow.get(); }
    [[nodiscard]] AboutViewController *aboutViewController() const { return m_aboutViewController; }

    // Shell
    void refreshMenuItems() override;
    void refreshSettingsControls() override;
    void hideApplication() override;

    // MenuCommands
    void showAbout() override;
    void showSettings() override;
    void openFile() override;
    void showInFinder() override;
    void moveToTrash() override;
    void toggleShowFileSize() override;
    void toggleShowCreationDate() override;
    void toggleShowImageResolution() override;
    void toggleShowFileTag() override;
    void toggleAutoResizeToImageSize() override;
    void setFileNameDisplayInTitle() override;
    void setFileNameDisplayInCorner() override;
    void setFileNameDisplayOff() override;
    void closeWindow() override;
    void resizeWindowSmall() override;
    void resizeWindowMedium() override;
    void resizeWindowLarge() override;
    void resizeWindowToImage() override; // Shell asks for the same
    void showKeyboardShortcuts() override;
    void showManualPage() override;
    void terminate() override;
    void menuNeedsUpdate() override;
    bool menuUpdateItem(QAction *item) override;

private:
    void showMainWindow();
    void createMainWindow();
    void windowWillClose();
    void scheduleFirstResponder();
    [[nodiscard]] std::unique_ptr<ContentWindow> makeWindow(const QString &title, QWidget *content, QSize size);
    void connectSettings();
    void rebuildFileList();
    void prefetchAroundCurrentFile();
    void applyAutoResize(bool on);
    [[nodiscard]] bool accepts(const FileURL &file) const;
    [[nodiscard]] bool hasCurrentFile() const;
    void settingChanged();
    void refreshFileInfo();
    void refreshFileTag();
    void refreshFileName();
    void setFileNameDisplay(FileNameDisplayLocation location);
    void beginFixedSize();
    void applyWindowBackground();
    void applyAverageColorBackground();
    void fitWindowToImage();

    const Surroundings m_with;
    std::unique_ptr<MainWindow> m_window;
    std::unique_ptr<ViewController> m_viewController;
    std::unique_ptr<MainMenu> m_menu;
    std::unique_ptr<AppearanceObservation> m_appearanceObservation;
    std::unique_ptr<ContentWindow> m_settingsWindow;
    SettingsViewController *m_settingsViewController = nullptr; ///< in its window, as the next in its
    std::unique_ptr<ContentWindow> m_aboutWindow;
    AboutViewController *m_aboutViewController = nullptr;
    std::unique_ptr<ContentWindow> m_keyboardShortcutsWindow;
    std::unique_ptr<ContentWindow> m_manualPageWindow;
    QColor m_appliedWindowColor; ///< by refreshAppearance()
};

} // namespace tallowmere
