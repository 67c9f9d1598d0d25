// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "tests/e2e/E2ETest.h"

namespace tallowmere {

/// For tests of the windows beside the viewer's.
class OtherWindowsTest : public E2ETest
{
protected:
    /// The window of that title, focused and painted; a test failure when there is none.
    desktop::WindowId waitForWindow(const std::string &title)
    {
        desktop::WindowId found = 0;
        EXPECT_TRUE(desktop::waitUntil([&] {
            found = windows.titled(title).value_or(0);
            return found != 0 && windows.hasFocus(found) && isPainted(found);
        })) << situation();
        return found;
    }
    [[nodiscard]] bool waitUntilGone(const std::string &title)
    {
        return desktop::waitUntil([&] { return !windows.titled(title); });
    }
    /// As a click on the task bar does.
    void switchTo(desktop::WindowId other)
    {
        windows.activate(other);
        ASSERT_TRUE(desktop::waitUntil([&] { return windows.hasFocus(other); })) << situation();
    }

private:
    /// Until then the program's own request to be in front may still be on its way. An unpainted window shows what was
    /// there before: the picture in the viewer behind it, in tests that switch to and fro, or the empty screen.
    [[nodiscard]] bool isPainted(desktop::WindowId other) const
    {
        const auto contents = windows.contents(other);
        const auto seen = screen.at({contents.x + 3, contents.y + contents.height - 4});
        return !alike(seen, {0, 0, 0}) && !alike(seen, kRed) && !alike(seen, kSurround);
    }
};

} // namespace tallowmere
