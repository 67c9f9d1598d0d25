// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/desktop/Tiler.h"

#include "tests/desktop/Replies.h"

#include <poll.h>
#include <xcb/xcb.h>

#include <array>
#include <cstdlib>
#include <memory>
#include <stdexcept>

namespace tallowmere::desktop {
namespace {

constexpr int kLookMilliseconds = 20; ///< whether the end has come

} // namespace

Tiler::Tiler(const VirtualDesktop &desktop, const Rectangle &tile)
    : m_desktop(desktop), m_connection(xcb_connect(desktop.name().c_str(), nullptr)), m_tile(tile)
{
    constexpr std::uint32_t kManager = XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    const auto cookie =
        xcb_change_window_attributes_checked(m_connection, m_desktop.x11Screen().root, XCB_CW_EVENT_MASK, &kManager);
    xcb_generic_error_t *error = xcb_request_check(m_connection, cookie);
    if (error || xcb_connection_has_error(m_connection)) {
        std::free(error);
        xcb_disconnect(m_connection);
        throw std::runtime_error("windows on " + m_desktop.name() + " are managed already");
    }
    announce();
    m_thread = std::thread([this] { run(); });
}

Tiler::~Tiler()
{
    m_ended = true;
    m_thread.join();
    xcb_disconnect(m_connection);
}

void Tiler::setWindows(std::uint32_t window, const char *property) const
{
    xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, m_desktop.x11Screen().root, m_desktop.atom(property),
                        XCB_ATOM_WINDOW, 32, window == XCB_WINDOW_NONE ? 0 : 1, &window);
}

/// As the Extended Window Manager Hints ask for, so that toolkits believe in a window manager.
void Tiler::announce()
{
    const auto root = m_desktop.x11Screen().root;
    const std::uint32_t check = xcb_generate_id(m_connection);
    xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, check, root, -1, -1, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, 0, nullptr);
    const auto checkAtom = m_desktop.atom("_NET_SUPPORTING_WM_CHECK");
    for (const auto window : {root, check})
        xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, window, checkAtom, XCB_ATOM_WINDOW, 32, 1, &check);
    const std::array<std::uint32_t, 4> supported{checkAtom, m_desktop.atom("_NET_ACTIVE_WINDOW"),
                                                 m_desktop.atom("_NET_CLIENT_LIST"), m_desktop.atom("_NET_WM_NAME")};
    xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, root, m_desktop.atom("_NET_SUPPORTED"), XCB_ATOM_ATOM, 32,
                        supported.size(), supported.data());
    setWindows(XCB_WINDOW_NONE, "_NET_CLIENT_LIST");
    setWindows(XCB_WINDOW_NONE, "_NET_ACTIVE_WINDOW");
    xcb_flush(m_connection);
}

void Tiler::run()
{
    while (!m_ended) {
        pollfd waiting{xcb_get_file_descriptor(m_connection), POLLIN, 0};
        ::poll(&waiting, 1, kLookMilliseconds);
        while (const std::unique_ptr<xcb_generic_event_t, decltype(&std::free)> event{xcb_poll_for_event(m_connection),
                                                                                      &std::free}) {
            switch (event->response_type & 0x7f) {
            case XCB_MAP_REQUEST:
                manage(reinterpret_cast<const xcb_map_request_event_t *>(event.get())->window);
                break;
            case XCB_CONFIGURE_REQUEST:
                ++m_requests;
                answer(reinterpret_cast<const xcb_configure_request_event_t *>(event.get())->window);
                break;
            default:
                break;
            }
        }
        xcb_flush(m_connection);
    }
}

void Tiler::manage(std::uint32_t window)
{
    const std::lock_guard lock(m_mutex);
    m_managed = window;
    place(window);
    xcb_map_window(m_connection, window);
    constexpr std::array<std::uint32_t, 2> kNormal{1, XCB_WINDOW_NONE};
    const auto state = m_desktop.atom("WM_STATE");
    xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, window, state, state, 32, kNormal.size(), kNormal.data());
    xcb_set_input_focus(m_connection, XCB_INPUT_FOCUS_PARENT, window, XCB_CURRENT_TIME);
    setWindows(window, "_NET_CLIENT_LIST");
    setWindows(window, "_NET_ACTIVE_WINDOW");
}

void Tiler::setTile(const Rectangle &tile)
{
    const std::lock_guard lock(m_mutex);
    m_tile = tile;
    if (m_managed != 0)
        place(m_managed);
    xcb_flush(m_connection);
}

/// Under the lock, as the next.
void Tiler::place(std::uint32_t window)
{
    const std::array<std::uint32_t, 4> values{
        static_cast<std::uint32_t>(m_tile.x), static_cast<std::uint32_t>(m_tile.y),
        static_cast<std::uint32_t>(m_tile.width), static_cast<std::uint32_t>(m_tile.height)};
    xcb_configure_window(m_connection, window,
                         XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT,
                         values.data());
}

/// What the Inter-Client Communication Conventions ask of a window manager that changes nothing.
void Tiler::answer(std::uint32_t window)
{
    const std::lock_guard lock(m_mutex);
    if (window != m_managed)
        return place(window); // it is not on the screen yet
    xcb_configure_notify_event_t told{};
    told.response_type = XCB_CONFIGURE_NOTIFY;
    told.event = window;
    told.window = window;
    told.x = static_cast<std::int16_t>(m_tile.x);
    told.y = static_cast<std::int16_t>(m_tile.y);
    told.width = static_cast<std::uint16_t>(m_tile.width);
    told.height = static_cast<std::uint16_t>(m_tile.height);
    xcb_send_event(m_connection, 0, window, XCB_EVENT_MASK_STRUCTURE_NOTIFY, reinterpret_cast<const char *>(&told));
}

} // namespace tallowmere::desktop
