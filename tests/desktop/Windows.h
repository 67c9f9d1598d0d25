// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "tests/desktop/VirtualDesktop.h"

#include <sys/types.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tallowmere::desktop {

using WindowId = std::uint32_t;

/// Looks at the windows as a task bar would: through what they and the window manager announce.
///
/// A window that has gone answers with nothing: empty texts, empty rectangles, false.
class Windows final
{
public:
    /// @p desktop outlives it.
    explicit Windows(const VirtualDesktop &desktop) : m_desktop(desktop) {}

    /// Managed windows, oldest first.
    [[nodiscard]] std::vector<WindowId> all() const;
    [[nodiscard]] std::vector<WindowId> ofProcess(pid_t process) const;
    /// The first managed window with exactly this title.
    [[nodiscard]] std::optional<WindowId> titled(const std::string &title) const;

    /// UTF-8.
    [[nodiscard]] std::string title(WindowId window) const;
    /// The second text of WM_CLASS.
    [[nodiscard]] std::string className(WindowId window) const;
    /// Without the window manager's decoration.
    [[nodiscard]] Rectangle contents(WindowId window) const;
    /// With it.
    [[nodiscard]] Rectangle frame(WindowId window) const;
    [[nodiscard]] bool hasState(WindowId window, const std::string &state) const;
    /// The window manager's active window that also holds the keyboard.
    [[nodiscard]] bool hasFocus(WindowId window) const;
    [[nodiscard]] bool visible(WindowId window) const;

    /// As the close button does.
    void close(WindowId window) const;
    void minimise(WindowId window) const;
    /// As a task bar does.
    void activate(WindowId window) const;
    void maximise(WindowId window) const;
    /// Held between two edges of the work area, as a window tiled to half the screen is.
    void maximiseVertically(WindowId window) const;
    void maximiseHorizontally(WindowId window) const;
    /// In whichever direction it is maximised.
    void unmaximise(WindowId window) const;
    /// Frame position and contents size, as a drag of the user's would.
    void moveAndResize(WindowId window, const Rectangle &rectangle) const;

private:
    void send(WindowId window, const char *message, std::vector<std::uint32_t> data) const;
    /// Left, right, top, bottom of the decoration.
    [[nodiscard]] std::vector<std::uint32_t> extents(WindowId window) const;

    const VirtualDesktop &m_desktop;
};

} // namespace tallowmere::desktop
