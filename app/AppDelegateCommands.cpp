// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "app/AppDelegate.h"
#include "app/MainMenu.h"
#include "app/MainWindow.h"
#include "settings/SettingsManager.h"
#include "viewer/ViewController.h"

#include <QAction>
#include <QApplication>

namespace tallowmere {

void AppDelegate::refreshMenuItems()
{
    if (m_menu)
        m_menu->refresh(hasCurrentFile());
}

void AppDelegate::menuNeedsUpdate()
{
    if (m_menu)
        m_menu->setHasCurrentFile(hasCurrentFile());
}

bool AppDelegate::menuUpdateItem(QAction *item)
{
    if (m_menu)
        m_menu->updateItem(item, hasCurrentFile());
    return true;
}

void AppDelegate::hideApplication()
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget *window : windows) {
        if (window->isVisible() && window->windowType() != Qt::Popup && window->windowType() != Qt::ToolTip)
            window->showMinimized();
    }
}

void AppDelegate::settingChanged()
{
    refreshMenuItems();
    refreshSettingsControls();
}

void AppDelegate::toggleShowFileSize()
{
    m_with.settings.setShowFileSize(!m_with.settings.showFileSize());
    settingChanged();
    refreshFileInfo();
}

void AppDelegate::toggleShowCreationDate()
{
    m_with.settings.setShowCreationDate(!m_with.settings.showCreationDate());
    settingChanged();
    refreshFileInfo();
}

void AppDelegate::toggleShowImageResolution()
{
    m_with.settings.setShowImageResolution(!m_with.settings.showImageResolution());
    settingChanged();
    refreshFileInfo();
}

void AppDelegate::refreshFileInfo()
{
    if (!m_viewController)
        return;
    m_viewController->updateOverlayVisibility();
    if (hasCurrentFile())
        m_viewController->refreshFileInfo();
}

void AppDelegate::toggleShowFileTag()
{
    m_with.settings.setShowFileTag(!m_with.settings.showFileTag());
    settingChanged();
    refreshFileTag();
}

void AppDelegate::refreshFileTag()
{
    if (hasCurrentFile())
        m_viewController->updateFileTag(m_viewController->currentFile());
}

void AppDelegate::openFile()
{
    if (m_viewController)
        m_viewController->showOpenPanel();
}

void AppDelegate::showInFinder()
{
    if (m_viewController)
        m_viewController->revealCurrentFileInFinder();
}

void AppDelegate::moveToTrash()
{
    if (m_viewController)
        m_viewController->moveCurrentFileToTrash();
}

void AppDelegate::setFileNameDisplayInTitle()
{
    setFileNameDisplay(FileNameDisplayLocation::inTitle);
}

void AppDelegate::setFileNameDisplayInCorner()
{
    setFileNameDisplay(FileNameDisplayLocation::inCorner);
}

void AppDelegate::setFileNameDisplayOff()
{
    setFileNameDisplay(FileNameDisplayLocation::off);
}

void AppDelegate::setFileNameDisplay(FileNameDisplayLocation location)
{
    m_with.settings.setFileNameDisplayLocation(location);
    settingChanged();
    refreshFileName();
}

void AppDelegate::refreshFileName()
{
    if (hasCurrentFile())
        m_viewController->updateFileNameDisplay(m_viewController->currentFile());
}

void AppDelegate::closeWindow()
{
    QWidget *window = QApplication::activeWindow();
    if (!window && m_window && m_window->isVisible())
        window = m_window.get();
    if (window)
        window->close();
}

void AppDelegate::toggleAutoResizeToImageSize()
{
    const bool on = !m_with.settings.autoResizeToImageSize();
    m_with.settings.setAutoResizeToImageSize(on);
    settingChanged();
    applyAutoResize(on);
}

void AppDelegate::resizeWindowToImage()
{
    const bool on = !m_with.settings.autoResizeToImageSize();
    m_with.settings.setAutoResizeToImageSize(on);
    settingChanged();
    if (m_menu)
        m_menu->markSize(on ? m_menu->resizeToImageMenuItem : nullptr);
    applyAutoResize(on);
}

void AppDelegate::applyAutoResize(bool on)
{
    if (!m_viewController)
        return;
    if (!on)
        return applyWindowBackground();
    applyAverageColorBackground();
    fitWindowToImage();
}

void AppDelegate::resizeWindowSmall()
{
    beginFixedSize();
    if (!m_viewController)
        return;
    m_menu->markSize(m_menu->resizeSmallMenuItem);
    m_viewController->resizeWindow(true, 600, 400);
}

void AppDelegate::resizeWindowMedium()
{
    beginFixedSize();
    if (!m_viewController)
        return;
    m_menu->markSize(m_menu->resizeMediumMenuItem);
    m_viewController->resizeWindow(true, 900, 600);
}

void AppDelegate::resizeWindowLarge()
{
    beginFixedSize();
    if (!m_viewController)
        return;
    m_menu->markSize(m_menu->resizeLargeMenuItem);
    m_viewController->resizeWindowToScreen(true);
}

void AppDelegate::beginFixedSize()
{
    // A size of its own ends the resizing to each image, or the next image would undo it.
    if (m_with.settings.autoResizeToImageSize()) {
        m_with.settings.setAutoResizeToImageSize(false);
        settingChanged();
    }
    if (m_viewController)
        applyWindowBackground();
}

void AppDelegate::applyWindowBackground()
{
    m_viewController->applyBackgroundColor(m_viewController->windowBackgroundColor());
}

void AppDelegate::applyAverageColorBackground()
{
    if (const FileURL file = m_viewController->currentFile(); !file.empty())
        m_viewController->applyAverageColorBackground(file);
}

void AppDelegate::fitWindowToImage()
{
    if (m_viewController->currentImage())
        m_viewController->fitWindowToImage(m_with.settings.autoResizeWithAnimation());
}

void AppDelegate::terminate()
{
    // Not quit(), which first asks every window to close: nothing is saved, and nobody may object.
    QApplication::exit(0);
}

} // namespace tallowmere
