// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "platform/freedesktop/WindowActivation.h"

#include <QGuiApplication>
#include <QWindow>

#include <xcb/xcb.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <string_view>

namespace tallowmere {

namespace {

xcb_atom_t atom(xcb_connection_t *connection, std::string_view name)
{
    const auto cookie = xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
    xcb_intern_atom_reply_t *reply = xcb_intern_atom_reply(connection, cookie, nullptr);
    const xcb_atom_t result = reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
    std::free(reply);
    return result;
}

xcb_window_t rootOf(xcb_connection_t *connection, xcb_window_t window)
{
    xcb_get_geometry_reply_t *reply = xcb_get_geometry_reply(connection, xcb_get_geometry(connection, window), nullptr);
    const xcb_window_t root = reply ? reply->root : xcb_window_t{XCB_WINDOW_NONE};
    std::free(reply);
    return root;
}

/// EWMH's request of an application to activate its window, with the time of the user's action.
void requestActivation(xcb_connection_t *connection, xcb_window_t root, xcb_window_t window, std::uint32_t time)
{
    constexpr std::uint32_t kFromApplication = 1;
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window;
    event.type = atom(connection, "_NET_ACTIVE_WINDOW");
    event.data.data32[0] = kFromApplication;
    event.data.data32[1] = time;
    xcb_send_event(connection, 0, root, XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char *>(&event));
}

/// Ends the launcher's busy cursor: the startup notification protocol's "remove", in messages of 20 bytes.
void announceStarted(xcb_connection_t *connection, xcb_window_t root, xcb_window_t window, const QByteArray &id)
{
    QByteArray quoted = id;
    quoted.replace('\\', "\\\\").replace('"', "\\\"");
    const QByteArray text = "remove: ID=\"" + quoted + "\"";
    constexpr qsizetype kPart = 20;
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 8;
    event.window = window;
    event.type = atom(connection, "_NET_STARTUP_INFO_BEGIN");
    const xcb_atom_t more = atom(connection, "_NET_STARTUP_INFO");
    for (qsizetype sent = 0; sent <= text.size(); sent += kPart) { // the closing null counts
        std::memset(event.data.data8, 0, kPart);
        std::memcpy(event.data.data8, text.constData() + sent,
                    static_cast<std::size_t>(std::min(kPart, text.size() - sent)));
        xcb_send_event(connection, 0, root, XCB_EVENT_MASK_PROPERTY_CHANGE, reinterpret_cast<const char *>(&event));
        event.type = more;
    }
}

void useStartupId(QWindow &window, const QByteArray &id)
{
    const auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    xcb_connection_t *connection = x11 ? x11->connection() : nullptr;
    if (!connection)
        return;
    const auto native = static_cast<xcb_window_t>(window.winId());
    const xcb_window_t root = rootOf(connection, native);
    if (root == XCB_WINDOW_NONE)
        return;
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, native, atom(connection, "_NET_STARTUP_ID"),
                        atom(connection, "UTF8_STRING"), 8, static_cast<std::uint32_t>(id.size()), id.constData());
    if (const auto time = timeOfStartupId(id)) {
        xcb_change_property(connection, XCB_PROP_MODE_REPLACE, native, atom(connection, "_NET_WM_USER_TIME"),
                            XCB_ATOM_CARDINAL, 32, 1, &*time);
        requestActivation(connection, root, native, *time);
    }
    announceStarted(connection, root, native, id);
    xcb_flush(connection);
}

} // namespace

std::optional<std::uint32_t> timeOfStartupId(const QByteArray &id)
{
    constexpr std::string_view kMark = "_TIME";
    const std::string_view text(id.constData(), static_cast<std::size_t>(id.size()));
    const std::size_t mark = text.rfind(kMark);
    if (mark == std::string_view::npos)
        return std::nullopt;
    const std::string_view digits = text.substr(mark + kMark.size());
    std::uint32_t time = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), time);
    if (error != std::errc() || end != digits.data() + digits.size())
        return std::nullopt;
    return time;
}

void useActivationToken(QWindow &window, const QByteArray &token)
{
    if (token.isEmpty())
        return;
    if (QGuiApplication::platformName() == QLatin1String("xcb"))
        useStartupId(window, token);
    else
        qputenv("XDG_ACTIVATION_TOKEN", token); // where Qt's Wayland side looks when a window is activated
}

} // namespace tallowmere
