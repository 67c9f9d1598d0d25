// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <systemd/sd-bus.h>

#include <atomic>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

namespace tallowmere::desktop {

/// The one desktop panel that shows every program's menu bar: notes which menus are handed to it. Lives on a thread of
/// its own.
///
/// Throws std::runtime_error when the bus does not let it in.
class AppMenuRegistrar final
{
public:
    /// A menu bar on the bus, as com.canonical.dbusmenu.
    struct Menu
    {
        std::string owner; ///< unique bus name
        std::string path;
    };

    explicit AppMenuRegistrar(const std::string &busAddress);
    ~AppMenuRegistrar();
    AppMenuRegistrar(const AppMenuRegistrar &) = delete;
    AppMenuRegistrar &operator=(const AppMenuRegistrar &) = delete;

    /// The one registered last; nothing when there was none.
    [[nodiscard]] std::optional<Menu> menu() const;

private:
    static int onMessage(sd_bus_message *message, void *userdata, sd_bus_error *error);
    void run();

    sd_bus *m_bus = nullptr;
    mutable std::mutex m_mutex;
    std::optional<Menu> m_menu;
    std::atomic<bool> m_stopping{false};
    std::thread m_thread;
};

} // namespace tallowmere::desktop
