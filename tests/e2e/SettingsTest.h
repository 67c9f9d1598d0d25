// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "tests/e2e/AccessibilityTest.h"

#include <string>

namespace tallowmere {

/// The Settings window, used with the keyboard and the mouse; what it shows is read through the accessibility bus.
class SettingsTest : public AccessibilityTest
{
protected:
    /// By its key, from the main window; the focus is on no control yet.
    void openSettings()
    {
        input.control(',');
        settingsWindow = openWindow("Settings");
        settingsId = windows.titled("Settings").value_or(0);
    }
    /// By its key. The main window has the focus again.
    void closeSettings()
    {
        input.control('w');
        EXPECT_TRUE(desktop::waitUntil([&] { return !windows.titled("Settings"); })) << situation();
        windows.activate(window);
        EXPECT_TRUE(desktop::waitUntil([&] { return windows.hasFocus(window); })) << situation();
    }
    [[nodiscard]] Accessible control(const std::string &role, const std::string &name) const
    {
        return settingsWindow.find(role, name);
    }
    [[nodiscard]] Accessible checkbox(const std::string &name) const { return control("check box", name); }
    [[nodiscard]] Accessible filesBefore() const { return control("text", "Files before:"); }
    void click(const Accessible &object)
    {
        ASSERT_TRUE(object.exists());
        input.click(object.extents().centre());
    }
    /// Goes on with Tab, that many times.
    void tabTo(const Accessible &object, int times)
    {
        for (int i = 0; i < times; ++i)
            input.press(desktop::key::kTab);
        EXPECT_TRUE(waitForState(object, State::focused, true)) << object.described();
    }
    void type(const std::string &text)
    {
        input.control('a');
        for (const char character : text)
            input.type(character);
    }
    [[nodiscard]] bool waitForText(const Accessible &field, const std::string &text)
    {
        return desktop::waitUntil([&] { return field.text() == text; });
    }
    /// Into the first field, with Return.
    void enterFilesBefore(const std::string &typed, const std::string &shownThen)
    {
        const Accessible field = filesBefore();
        tabTo(field, 1);
        type(typed);
        ASSERT_TRUE(waitForText(field, typed)) << field.text();
        input.press(desktop::key::kReturn);
        EXPECT_TRUE(waitForText(field, shownThen)) << field.text();
    }
    [[nodiscard]] bool waitForChecked(const std::string &item, bool checked)
    {
        return waitForState(menuItem(item), State::checked, checked);
    }

    Accessible settingsWindow;
    desktop::WindowId settingsId = 0;
};

} // namespace tallowmere
