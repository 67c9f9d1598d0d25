// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "tests/desktop/Accessibility.h"
#include "tests/e2e/E2ETest.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace tallowmere {

/// The program as somebody meets it who uses a screen reader: everything is found, read and pressed through the
/// accessibility bus.
class AccessibilityTest : public E2ETest
{
protected:
    using Accessible = desktop::Accessible;
    using State = desktop::Accessible::State;

    explicit AccessibilityTest(std::optional<uid_t> user = std::nullopt);
    /// What the tree holds, after a failure.
    void TearDown() override;

    /// Starts the program and finds it on the accessibility bus.
    void startWith(const std::vector<std::string> &files = {});
    /// The same with a.jpg, which is red, on the screen.
    void startWithPicture();

    /// Waits for it; one that doesn't exist, with a failure, when it does not come.
    [[nodiscard]] Accessible waitFor(const std::string &role, const std::string &name);
    /// Looked for once: the menu bar is never rebuilt.
    [[nodiscard]] Accessible menuItem(const std::string &name);
    /// Waits for a window with this title to be on the screen and to hold the keyboard.
    [[nodiscard]] Accessible openWindow(const std::string &title);
    /// Chooses a menu item.
    void press(const std::string &menuItemName);
    /// Of the windows that are on the screen.
    [[nodiscard]] std::vector<std::string> openWindows() const;

    /// The main window's parts, whatever they show.
    [[nodiscard]] Accessible mainWindow() const;
    [[nodiscard]] Accessible viewer() const;
    [[nodiscard]] Accessible imageArea() const;
    /// What the pills say that are on the screen: the information before the name.
    [[nodiscard]] std::vector<std::string> pills() const;

    [[nodiscard]] bool waitForState(const Accessible &object, State state, bool on);
    /// "Key=value" in the settings file.
    [[nodiscard]] bool waitForSetting(const std::string &line) const;
    [[nodiscard]] bool waitForPills(const std::vector<std::string> &texts) const;

    desktop::AccessibilityBus accessibility;
    Accessible application;

private:
    std::map<std::string, Accessible> m_menuItems;
};

} // namespace tallowmere
