// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "app/AppDelegate.h"
#include "browsing/FileListManager.h"
#include "imaging/ImageCacheManager.h"
#include "settings/SettingsViewController.h"
#include "viewer/ViewController.h"

namespace tallowmere {

void AppDelegate::refreshSettingsControls()
{
    if (m_settingsViewController)
        m_settingsViewController->refreshControls();
}

/// The controls have written their settings: what is left is to tell the menu, the viewer and the cache.
void AppDelegate::connectSettings()
{
    using Controller = SettingsViewController;
    const Controller *controls = m_settingsViewController;
    connect(controls, &Controller::enabledFormatsChanged, this, &AppDelegate::rebuildFileList);
    connect(controls, &Controller::fileInfoChanged, this, [this] {
        refreshMenuItems();
        refreshFileInfo();
    });
    connect(controls, &Controller::fileTagChanged, this, [this] {
        refreshMenuItems();
        refreshFileTag();
    });
    connect(controls, &Controller::autoResizeToImageSizeChanged, this, [this](bool on) {
        refreshMenuItems();
        applyAutoResize(on);
    });
    connect(controls, &Controller::autoResizeWithAnimationChanged, this, &AppDelegate::refreshMenuItems);
    connect(controls, &Controller::transparencyBackgroundChanged, this, [this] {
        if (m_viewController)
            m_viewController->updateTransparencyBackground();
    });
    connect(controls, &Controller::fileNameDisplayLocationChanged, this, [this] {
        refreshMenuItems();
        refreshFileName();
    });
    connect(controls, &Controller::prefetchBeforeChanged, this, [this](int count) {
        m_with.cache->prefetchBefore = count;
        prefetchAroundCurrentFile();
    });
    connect(controls, &Controller::prefetchAfterChanged, this, [this](int count) {
        m_with.cache->prefetchAfter = count;
        prefetchAroundCurrentFile();
    });
}

void AppDelegate::rebuildFileList()
{
    if (!hasCurrentFile())
        return;
    m_viewController->fileListManager().loadFiles(m_viewController->currentFile());
    prefetchAroundCurrentFile();
}

void AppDelegate::prefetchAroundCurrentFile()
{
    if (!m_viewController)
        return;
    const FileListManager &list = m_viewController->fileListManager();
    if (!list.fileURLs.isEmpty())
        m_with.cache->prefetchImages(list.fileURLs, list.currentIndex);
}

} // namespace tallowmere
