// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "tests/desktop/VirtualDesktop.h"

#include <atomic>
#include <mutex>
#include <thread>

namespace tallowmere::desktop {

/// A window manager that gives every window the same tile, whatever the window asks for.
///
/// It announces no state for that, as tiling window managers do, and answers a request with the geometry the window
/// has already. Works in a thread of its own. Throws std::runtime_error when the desktop has a window manager.
class Tiler final
{
public:
    /// @p desktop outlives it and was made without a window manager.
    Tiler(const VirtualDesktop &desktop, const Rectangle &tile);
    ~Tiler();
    Tiler(const Tiler &) = delete;
    Tiler &operator=(const Tiler &) = delete;

    /// Of all windows, from now on.
    void setTile(const Rectangle &tile);
    /// How often windows have asked for another geometry so far.
    [[nodiscard]] int requests() const { return m_requests; }

private:
    void announce();
    void run();
    void manage(std::uint32_t window);
    void place(std::uint32_t window);
    void answer(std::uint32_t window);
    void setWindows(std::uint32_t window, const char *property) const;

    const VirtualDesktop &m_desktop;
    xcb_connection_t *const m_connection;
    std::mutex m_mutex; ///< guards the next two
    Rectangle m_tile;
    std::uint32_t m_managed = 0; ///< the last window that came; 0: none
    std::atomic<int> m_requests = 0;
    std::atomic<bool> m_ended = false;
    std::thread m_thread;
};

} // namespace tallowmere::desktop
