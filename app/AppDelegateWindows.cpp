// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "app/AboutViewController.h"
#include "app/AppDelegate.h"
#include "app/ContentWindow.h"
#include "app/KeyboardShortcutsView.h"
#include "app/MainMenu.h"
#include "app/MainWindow.h"
#include "app/ManualPageView.h"
#include "imaging/ImageCacheManager.h"
#include "settings/SettingsViewController.h"
#include "support/Queues.h"

#include <QApplication>
#include <QMenuBar>
#include <QShortcut>

namespace tallowmere {

using namespace Qt::Literals::StringLiterals;

namespace {

// Contents, in points.
constexpr QSize kSettingsSize{500, 390};
constexpr QSize kAboutSize{400, 240};
constexpr QSize kKeyboardShortcutsSize{360, 0};
constexpr QSize kManualPageSize{0, 480};

template <typename Controller>
void scheduleFirstResponderOf(MainQueue &queue, Controller *controller)
{
    queue.async([controller = QPointer(controller)] {
        if (controller)
            controller->makeFirstResponder();
    });
}

void closeOnEscape(QWidget *window)
{
    QObject::connect(new QShortcut(Qt::Key_Escape, window), &QShortcut::activated, window, &QWidget::close);
}

} // namespace

std::unique_ptr<ContentWindow> AppDelegate::makeWindow(const QString &title, QWidget *content, QSize size)
{
    auto window = std::make_unique<ContentWindow>(title, content, size);
    if (m_menu)
        window->addActions(m_menu->itemsForAllWindows());
    window->centre();
    return window;
}

void AppDelegate::showSettings()
{
    if (!m_settingsWindow) {
        m_settingsViewController = new SettingsViewController(
            m_with.settings, {m_with.cache->prefetchBefore.load(), m_with.cache->prefetchAfter.load()});
        connectSettings();
        m_settingsWindow = makeWindow(u"Settings"_s, m_settingsViewController, kSettingsSize);
        closeOnEscape(m_settingsWindow.get());
    }
    m_settingsWindow->makeKeyAndOrderFront();
    scheduleFirstResponderOf(m_with.mainQueue, m_settingsViewController);
}

void AppDelegate::showAbout()
{
    if (!m_aboutWindow) {
        m_aboutViewController = new AboutViewController(BundleInformation::main());
        m_aboutWindow = makeWindow(u"About Tallowmere"_s, m_aboutViewController, kAboutSize);
    }
    m_aboutWindow->makeKeyAndOrderFront();
    scheduleFirstResponderOf(m_with.mainQueue, m_aboutViewController);
}

void AppDelegate::showKeyboardShortcuts()
{
    if (!m_window)
        return;
    if (!m_keyboardShortcutsWindow) {
        auto *view = new KeyboardShortcutsView(keyboardShortcuts(*m_window->menuBar()));
        m_keyboardShortcutsWindow = makeWindow(u"Keyboard Shortcuts"_s, view, kKeyboardShortcutsSize);
        closeOnEscape(m_keyboardShortcutsWindow.get());
    }
    m_keyboardShortcutsWindow->makeKeyAndOrderFront();
}

void AppDelegate::showManualPage()
{
    if (!m_manualPageWindow) {
        m_manualPageWindow = makeWindow(u"Manual Page"_s, new ManualPageView, kManualPageSize);
        closeOnEscape(m_manualPageWindow.get());
    }
    m_manualPageWindow->makeKeyAndOrderFront();
}

} // namespace tallowmere
