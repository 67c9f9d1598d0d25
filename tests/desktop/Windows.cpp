// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/desktop/Windows.h"

#include "tests/desktop/Replies.h"

#include <xcb/xcb_icccm.h>

#include <algorithm>

namespace tallowmere::desktop {
namespace {

/// Messages to a window manager say who asks: 2 is a pager or task bar, whose wish is the user's.
constexpr std::uint32_t kFromTaskBar = 2;
/// What a message about a window's state asks for.
constexpr std::uint32_t kRemoveState = 0;
constexpr std::uint32_t kAddState = 1;

std::string text(const std::vector<std::uint8_t> &bytes)
{
    return {bytes.begin(), bytes.end()};
}

} // namespace

std::vector<WindowId> Windows::all() const
{
    return property<WindowId>(m_desktop, m_desktop.x11Screen().root, "_NET_CLIENT_LIST");
}

std::vector<WindowId> Windows::ofProcess(pid_t process) const
{
    auto windows = all();
    std::erase_if(windows, [&](WindowId window) {
        const auto owner = property<std::uint32_t>(m_desktop, window, "_NET_WM_PID");
        return owner.empty() || static_cast<pid_t>(owner.front()) != process;
    });
    return windows;
}

std::optional<WindowId> Windows::titled(const std::string &wanted) const
{
    for (const WindowId window : all()) {
        if (title(window) == wanted)
            return window;
    }
    return std::nullopt;
}

std::string Windows::title(WindowId window) const
{
    return text(property<std::uint8_t>(m_desktop, window, "_NET_WM_NAME"));
}

std::string Windows::className(WindowId window) const
{
    const std::string both = text(property<std::uint8_t>(m_desktop, window, "WM_CLASS"));
    const auto end = both.find('\0');
    return end == std::string::npos ? std::string() : both.substr(end + 1, both.find('\0', end + 1) - end - 1);
}

Rectangle Windows::contents(WindowId window) const
{
    auto *connection = m_desktop.connection();
    const auto geometry =
        replyTo<xcb_get_geometry_reply_t>(xcb_get_geometry_reply, connection, xcb_get_geometry(connection, window));
    const auto position = replyTo<xcb_translate_coordinates_reply_t>(
        xcb_translate_coordinates_reply, connection,
        xcb_translate_coordinates(connection, window, m_desktop.x11Screen().root, 0, 0));
    if (!geometry || !position)
        return {};
    return {position->dst_x, position->dst_y, geometry->width, geometry->height};
}

std::vector<std::uint32_t> Windows::extents(WindowId window) const
{
    auto sides = property<std::uint32_t>(m_desktop, window, "_NET_FRAME_EXTENTS");
    sides.resize(4);
    return sides;
}

Rectangle Windows::frame(WindowId window) const
{
    const Rectangle inner = contents(window);
    const auto sides = extents(window);
    const int left = static_cast<int>(sides[0]);
    const int top = static_cast<int>(sides[2]);
    return {inner.x - left, inner.y - top, inner.width + left + static_cast<int>(sides[1]),
            inner.height + top + static_cast<int>(sides[3])};
}

bool Windows::hasState(WindowId window, const std::string &state) const
{
    const auto states = property<std::uint32_t>(m_desktop, window, "_NET_WM_STATE");
    return std::find(states.begin(), states.end(), m_desktop.atom(state)) != states.end();
}

bool Windows::hasFocus(WindowId window) const
{
    const auto active = property<std::uint32_t>(m_desktop, m_desktop.x11Screen().root, "_NET_ACTIVE_WINDOW");
    auto *connection = m_desktop.connection();
    const auto focus =
        replyTo<xcb_get_input_focus_reply_t>(xcb_get_input_focus_reply, connection, xcb_get_input_focus(connection));
    return !active.empty() && active.front() == window && focus && focus->focus == window;
}

bool Windows::visible(WindowId window) const
{
    auto *connection = m_desktop.connection();
    const auto attributes = replyTo<xcb_get_window_attributes_reply_t>(xcb_get_window_attributes_reply, connection,
                                                                       xcb_get_window_attributes(connection, window));
    return attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE;
}

void Windows::send(WindowId window, const char *message, std::vector<std::uint32_t> data) const
{
    data.resize(5);
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window;
    event.type = m_desktop.atom(message);
    std::copy(data.begin(), data.end(), std::begin(event.data.data32));
    xcb_send_event(m_desktop.connection(), 0, m_desktop.x11Screen().root,
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char *>(&event));
    xcb_flush(m_desktop.connection());
}

void Windows::close(WindowId window) const
{
    send(window, "_NET_CLOSE_WINDOW", {XCB_CURRENT_TIME, kFromTaskBar});
}

void Windows::minimise(WindowId window) const
{
    send(window, "WM_CHANGE_STATE", {XCB_ICCCM_WM_STATE_ICONIC});
}

void Windows::activate(WindowId window) const
{
    send(window, "_NET_ACTIVE_WINDOW", {kFromTaskBar, XCB_CURRENT_TIME});
}

void Windows::maximise(WindowId window) const
{
    send(window, "_NET_WM_STATE",
         {kAddState, m_desktop.atom("_NET_WM_STATE_MAXIMIZED_VERT"), m_desktop.atom("_NET_WM_STATE_MAXIMIZED_HORZ"),
          kFromTaskBar});
}

void Windows::maximiseVertically(WindowId window) const
{
    send(window, "_NET_WM_STATE", {kAddState, m_desktop.atom("_NET_WM_STATE_MAXIMIZED_VERT"), 0, kFromTaskBar});
}

void Windows::maximiseHorizontally(WindowId window) const
{
    send(window, "_NET_WM_STATE", {kAddState, m_desktop.atom("_NET_WM_STATE_MAXIMIZED_HORZ"), 0, kFromTaskBar});
}

void Windows::unmaximise(WindowId window) const
{
    send(window, "_NET_WM_STATE",
         {kRemoveState, m_desktop.atom("_NET_WM_STATE_MAXIMIZED_VERT"), m_desktop.atom("_NET_WM_STATE_MAXIMIZED_HORZ"),
          kFromTaskBar});
}

void Windows::moveAndResize(WindowId window, const Rectangle &rectangle) const
{
    constexpr std::uint32_t kAllFour = 0xF00;
    constexpr std::uint32_t kNorthWest = 1;
    constexpr std::uint32_t kSourceShift = 12;
    send(window, "_NET_MOVERESIZE_WINDOW",
         {kNorthWest | kAllFour | (kFromTaskBar << kSourceShift), static_cast<std::uint32_t>(rectangle.x),
          static_cast<std::uint32_t>(rectangle.y), static_cast<std::uint32_t>(rectangle.width),
          static_cast<std::uint32_t>(rectangle.height)});
}

} // namespace tallowmere::desktop
