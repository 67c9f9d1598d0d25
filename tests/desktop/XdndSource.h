// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "tests/desktop/VirtualDesktop.h"

#include <optional>
#include <string>

struct xcb_client_message_event_t;
struct xcb_selection_request_event_t;

namespace tallowmere::desktop {

/// Another program from which files are dragged (XDND, version 5). Its connection to the X server is its own.
///
/// Each call returns once the window below has answered; throws std::runtime_error when it does not.
class XdndSource final
{
public:
    /// @p uriList: the bytes of "text/uri-list".
    XdndSource(const VirtualDesktop &desktop, std::string uriList);
    /// A drag that is still under way leaves.
    ~XdndSource();
    XdndSource(const XdndSource &) = delete;
    XdndSource &operator=(const XdndSource &) = delete;

    /// Whether the window there would take a drop.
    bool moveTo(const Point &point);
    void leave();
    /// Whether the window below took it.
    bool drop();

    /// What the window below has offered to do, as XDND names it; empty: nothing.
    [[nodiscard]] const std::string &action() const { return m_action; }
    /// How often the list of files was handed over.
    [[nodiscard]] int transfers() const { return m_transfers; }

private:
    [[nodiscard]] std::uint32_t atom(const std::string &name) const;
    [[nodiscard]] std::string nameOf(std::uint32_t atom) const;
    [[nodiscard]] std::uint32_t targetAt(const Point &point) const;
    void send(const char *message, std::uint32_t second = 0, std::uint32_t third = 0, std::uint32_t fourth = 0,
              std::uint32_t fifth = 0) const;
    void serve();
    void handle(const xcb_client_message_event_t &message);
    void handOver(const xcb_selection_request_event_t &request);

    const std::string m_uriList;
    xcb_connection_t *m_connection;
    std::uint32_t m_root;
    std::uint32_t m_window;
    std::uint32_t m_target = 0;
    std::string m_action;
    std::optional<bool> m_status;   ///< the last position's answer
    std::optional<bool> m_finished; ///< the drop's
    int m_transfers = 0;
};

} // namespace tallowmere::desktop
