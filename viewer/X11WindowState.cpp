// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "viewer/X11WindowState.h"

#include <QGuiApplication>
#include <QWidget>

#include <xcb/xcb.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <span>
#include <string_view>
#include <utility>

namespace tallowmere {

namespace {

/// Far longer than a window manager takes that means to follow at all.
constexpr std::chrono::milliseconds kReleaseLimit{1000};

struct Freeing
{
    void operator()(void *reply) const { std::free(reply); }
};
template <typename Reply>
using ReplyPtr = std::unique_ptr<Reply, Freeing>;

xcb_window_t nativeWindow(const QWidget &window)
{
    // Not winId(): it would create the native window.
    return static_cast<xcb_window_t>(window.internalWinId());
}

} // namespace

std::unique_ptr<X11WindowState> X11WindowState::of(const QWidget &window, std::function<void()> geometryTold)
{
    const auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    xcb_connection_t *connection = x11 ? x11->connection() : nullptr;
    if (!connection)
        return nullptr;
    return std::unique_ptr<X11WindowState>(new X11WindowState(window, connection, std::move(geometryTold)));
}

X11WindowState::X11WindowState(const QWidget &window, xcb_connection_t *connection, std::function<void()> geometryTold)
    : m_window(window), m_connection(connection), m_geometryTold(std::move(geometryTold))
{
    qGuiApp->installNativeEventFilter(this);
}

X11WindowState::~X11WindowState()
{
    if (qGuiApp)
        qGuiApp->removeNativeEventFilter(this);
}

void X11WindowState::findAtoms()
{
    if (m_stateAtom != XCB_ATOM_NONE)
        return;
    const auto ask = [this](std::string_view name) {
        return xcb_intern_atom(m_connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
    };
    const auto answer = [this](xcb_intern_atom_cookie_t cookie) {
        const ReplyPtr<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(m_connection, cookie, nullptr));
        return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
    };
    // All asked before the first answer: one round trip.
    const auto state = ask("_NET_WM_STATE");
    const auto vertical = ask("_NET_WM_STATE_MAXIMIZED_VERT");
    const auto horizontal = ask("_NET_WM_STATE_MAXIMIZED_HORZ");
    m_stateAtom = answer(state);
    m_verticalAtom = answer(vertical);
    m_horizontalAtom = answer(horizontal);
}

bool X11WindowState::readState()
{
    constexpr std::uint32_t kMostStates = 64;
    findAtoms();
    const auto cookie =
        xcb_get_property(m_connection, 0, nativeWindow(m_window), m_stateAtom, XCB_ATOM_ATOM, 0, kMostStates);
    const ReplyPtr<xcb_get_property_reply_t> reply(xcb_get_property_reply(m_connection, cookie, nullptr));
    if (!reply || reply->type != XCB_ATOM_ATOM || reply->format != 32)
        return false;
    const auto count = static_cast<std::size_t>(xcb_get_property_value_length(reply.get())) / sizeof(xcb_atom_t);
    const std::span states(static_cast<const xcb_atom_t *>(xcb_get_property_value(reply.get())), count);
    return std::any_of(states.begin(), states.end(),
                       [this](xcb_atom_t state) { return state == m_verticalAtom || state == m_horizontalAtom; });
}

bool X11WindowState::isMaximisedInADirection()
{
    const xcb_window_t native = nativeWindow(m_window);
    if (native == XCB_WINDOW_NONE)
        return false;
    if (m_readFrom != native) {
        m_isMaximised = readState();
        m_readFrom = native;
        if (!m_isMaximised)
            m_release = QDeadlineTimer(0);
    }
    return m_isMaximised && m_release.hasExpired();
}

void X11WindowState::endMaximised()
{
    constexpr std::uint32_t kRemove = 0;
    constexpr std::uint32_t kFromApplication = 1;
    const xcb_window_t native = nativeWindow(m_window);
    const ReplyPtr<xcb_get_geometry_reply_t> geometry(
        xcb_get_geometry_reply(m_connection, xcb_get_geometry(m_connection, native), nullptr));
    if (!geometry)
        return;
    findAtoms();
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = native;
    event.type = m_stateAtom;
    event.data.data32[0] = kRemove;
    event.data.data32[1] = m_verticalAtom;
    event.data.data32[2] = m_horizontalAtom;
    event.data.data32[3] = kFromApplication;
    // On Qt's own connection: what Qt asks for next reaches the window manager after it.
    xcb_send_event(m_connection, 0, geometry->root,
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char *>(&event));
    xcb_flush(m_connection);
    m_release = QDeadlineTimer(kReleaseLimit);
}

bool X11WindowState::nativeEventFilter(const QByteArray &eventType, void *message, qintptr * /*result*/)
{
    constexpr std::uint8_t kSentByAnotherClient = 0x80;
    if (eventType != "xcb_generic_event_t")
        return false;
    const auto type = static_cast<const xcb_generic_event_t *>(message)->response_type & ~kSentByAnotherClient;
    if (type == XCB_CONFIGURE_NOTIFY) {
        if (static_cast<const xcb_configure_notify_event_t *>(message)->window == nativeWindow(m_window))
            m_geometryTold();
    } else if (type == XCB_PROPERTY_NOTIFY && m_readFrom != XCB_WINDOW_NONE) {
        const auto *changed = static_cast<const xcb_property_notify_event_t *>(message);
        if (changed->window == m_readFrom && changed->atom == m_stateAtom)
            m_readFrom = XCB_WINDOW_NONE;
    }
    return false;
}

} // namespace tallowmere
