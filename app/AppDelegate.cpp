// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "app/AppDelegate.h"

#include "app/AppearanceObservation.h"
#include "app/ContentWindow.h"
#include "app/DefaultFileAssociationManager.h"
#include "app/MainMenu.h"
#include "app/MainWindow.h"
#include "browsing/FileListManager.h"
#include "platform/freedesktop/WindowActivation.h"
#include "platform/SecurityScope.h"
#include "settings/SettingsManager.h"
#include "support/Queues.h"
#include "viewer/DraggableView.h"
#include "viewer/ViewController.h"

#include <QApplication>
#include <QMenuBar>
#include <QWindow>

#include <utility>

namespace tallowmere {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr QSize kFirstContentSize{600, 400};
constexpr QSize kIdleFrameSize{600, 400};

QWidget *anyVisibleWindow()
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    const auto found = std::find_if(windows.begin(), windows.end(), [](const QWidget *window) {
        return window->isWindow() && window->isVisible() && !window->isMinimized();
    });
    return found == windows.end() ? nullptr : *found;
}

void bringForward(QWidget *window)
{
    window->raise();
    window->activateWindow();
}

} // namespace

AppDelegate::AppDelegate(const Surroundings &surroundings) : m_with(surroundings)
{
    m_appearanceObservation = std::make_unique<AppearanceObservation>([this] {
        m_with.mainQueue.async([self = QPointer(this)] {
            if (self)
                self->refreshAppearance();
        });
    });
    QApplication::setQuitOnLastWindowClosed(false);
}

AppDelegate::~AppDelegate()
{
    // The menu before its menu bar, the viewer's controller before the window that holds its view.
    m_menu.reset();
    m_viewController.reset();
}

void AppDelegate::applicationDidFinishLaunching()
{
    m_with.fileAssociations.setDefaultsOnFirstLaunch();
    showMainWindow();
}

bool AppDelegate::applicationOpenFile(const FileURL &file)
{
    if (!accepts(file))
        return false;
    showMainWindow();
    const ScopedAccess access(m_with.scope, file);
    m_viewController->openImage(file);
    return true;
}

void AppDelegate::applicationOpenFiles(const QList<FileURL> &files)
{
    showMainWindow();
    if (!files.isEmpty() && accepts(files.first())) {
        const ScopedAccess access(m_with.scope, files.first());
        m_viewController->openImage(files.first());
    }
}

bool AppDelegate::applicationShouldHandleReopen(bool hasVisibleWindows)
{
    if (!hasVisibleWindows)
        showMainWindow();
    return true;
}

void AppDelegate::handle(const ApplicationRequest &request)
{
    // A file that is refused changes nothing: its token must not bring the window forward either.
    const bool refused = request.kind == ApplicationRequest::Kind::openFile &&
                         (request.files.isEmpty() || !accepts(request.files.first()));
    if (!refused && m_window && m_window->windowHandle())
        useActivationToken(*m_window->windowHandle(), request.activationToken);
    switch (request.kind) {
    case ApplicationRequest::Kind::reopen:
        // What is there may be behind others, or minimised: whoever starts us again wants to see it.
        if (m_window && m_window->isVisible())
            showMainWindow();
        else if (QWidget *other = anyVisibleWindow(); applicationShouldHandleReopen(other != nullptr) && other)
            bringForward(other);
        break;
    case ApplicationRequest::Kind::openFile:
        if (!request.files.isEmpty())
            applicationOpenFile(request.files.first());
        break;
    case ApplicationRequest::Kind::openFiles:
        applicationOpenFiles(request.files);
        break;
    case ApplicationRequest::Kind::quit:
        terminate();
        break;
    }
}

void AppDelegate::sessionBusLost()
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    if (std::none_of(windows.begin(), windows.end(), [](const QWidget *window) { return window->isVisible(); }))
        terminate();
}

void AppDelegate::showMainWindow()
{
    const bool comesBack = m_window && !m_window->isVisible();
    if (!m_window)
        createMainWindow();
    if (m_window->isMinimized())
        m_window->setWindowState(m_window->windowState() & ~Qt::WindowMinimized);
    m_window->show();
    // It was emptied while hidden, when nobody knew what the window manager would draw around it. A picture opened
    // meanwhile keeps the size that it was given.
    if (comesBack && m_viewController->isIdle())
        m_viewController->resizeWindow(false, kIdleFrameSize.width(), kIdleFrameSize.height());
    bringForward(m_window.get());
}

void AppDelegate::createMainWindow()
{
    m_window = std::make_unique<MainWindow>();
    m_window->setWindowTitle(u"Tallowmere"_s);
    m_viewController = std::make_unique<ViewController>(ViewController::Surroundings{
        m_with.settings, m_with.loader, m_with.cache, m_with.scope, m_with.folderAccess, m_with.revealer, m_with.trash,
        m_with.labelReader, m_with.attributesReader, m_with.mainQueue, m_with.launcher, *this});
    m_window->setCentralWidget(m_viewController->view());
    m_window->handDragsToContent();
    // With the window rather than after it: the menu bar's height is part of the window's first size.
    m_menu = std::make_unique<MainMenu>(*m_window->menuBar(), *this, m_with.settings);
    m_with.mainQueue.async([menu = QPointer(m_menu.get())] {
        if (menu)
            menu->removeTabBarItem();
    });
    m_window->resizeContent(kFirstContentSize);
    m_viewController->centreWindow();
    connect(m_window.get(), &MainWindow::willClose, this, &AppDelegate::windowWillClose);
    connect(m_window.get(), &MainWindow::didBecomeKey, this, &AppDelegate::scheduleFirstResponder);
    connect(m_window.get(), &MainWindow::menuKeyMayCome, this, &AppDelegate::menuNeedsUpdate);
    refreshAppearance();
    refreshMenuItems();
    scheduleFirstResponder();
}

void AppDelegate::windowWillClose()
{
    m_window->hide(); // nobody needs to see it being emptied
    m_window->setWindowState(m_window->windowState() & ~(Qt::WindowMaximized | Qt::WindowFullScreen));
    m_viewController->showIdleState();
}

void AppDelegate::scheduleFirstResponder()
{
    m_with.mainQueue.async([viewer = QPointer(m_viewController.get())] {
        if (viewer)
            viewer->makeFirstResponder();
    });
}

void AppDelegate::refreshAppearance()
{
    if (!m_window)
        return;
    m_window->setPalette(QApplication::palette());
    m_window->update();
    if (m_settingsWindow) {
        m_settingsWindow->setPalette(QApplication::palette());
        m_settingsWindow->update();
    }
    // Other roles of the palette change, too; an average colour behind an image then stays.
    const QColor color = m_viewController->windowBackgroundColor();
    if (std::exchange(m_appliedWindowColor, color) != color)
        m_viewController->applyBackgroundColor(color);
}

bool AppDelegate::accepts(const FileURL &file) const
{
    return m_with.settings.enabledImageExtensions().contains(file.lowercasedPathExtension());
}

bool AppDelegate::hasCurrentFile() const
{
    return m_viewController && !m_viewController->currentFile().empty();
}

} // namespace tallowmere
