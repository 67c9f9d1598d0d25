// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "tests/desktop/Folders.h"
#include "tests/desktop/Process.h"

#include <memory>
#include <string>

struct xcb_connection_t;
struct xcb_screen_t;

namespace tallowmere::desktop {

/// All in pixels of the screen, y downwards.
struct Point
{
    int x = 0;
    int y = 0;
    friend bool operator==(const Point &, const Point &) = default;
};

struct Rectangle
{
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    [[nodiscard]] Point centre() const { return {x + width / 2, y + height / 2}; }
    friend bool operator==(const Rectangle &, const Rectangle &) = default;
};

struct DisplayOptions
{
    int width = 1920;
    int height = 1080;
    /// Kept free by the window manager at the screen's edges, as a panel would; uneven, so that a mistake shows.
    int marginTop = 24;
    int marginBottom = 40;
    int marginLeft = 60;
    int marginRight = 0;
    bool windowManager = true; ///< false: the test brings its own
};

/// A private X server, mostly with a window manager, and a connection to it. Ends with this object.
///
/// Throws std::runtime_error when the server or the manager does not come up.
class VirtualDesktop final
{
public:
    explicit VirtualDesktop(const DisplayOptions &options = {});
    ~VirtualDesktop();
    VirtualDesktop(const VirtualDesktop &) = delete;
    VirtualDesktop &operator=(const VirtualDesktop &) = delete;

    /// ":7"
    [[nodiscard]] const std::string &name() const { return m_name; }
    [[nodiscard]] Rectangle screen() const { return {0, 0, m_options.width, m_options.height}; }
    /// What the margins leave.
    [[nodiscard]] Rectangle workArea() const;

    [[nodiscard]] xcb_connection_t *connection() const { return m_connection; }
    [[nodiscard]] const xcb_screen_t &x11Screen() const { return *m_screen; }
    [[nodiscard]] std::uint32_t atom(const std::string &name) const;

private:
    void startServer();
    void startWindowManager();

    const DisplayOptions m_options;
    UserFolders m_folders;
    std::unique_ptr<Process> m_server;
    std::unique_ptr<Process> m_windowManager;
    std::string m_name;
    xcb_connection_t *m_connection = nullptr;
    const xcb_screen_t *m_screen = nullptr;
};

} // namespace tallowmere::desktop
