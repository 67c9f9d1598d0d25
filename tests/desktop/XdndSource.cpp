// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/desktop/XdndSource.h"

#include "tests/desktop/Replies.h"
#include "tests/desktop/Waiting.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>
#include <utility>

namespace tallowmere::desktop {

namespace {

constexpr std::uint32_t kVersion = 5;
constexpr const char *kType = "text/uri-list";

} // namespace

XdndSource::XdndSource(const VirtualDesktop &desktop, std::string uriList)
    : m_uriList(std::move(uriList)), m_connection(xcb_connect(desktop.name().c_str(), nullptr)),
      m_root(desktop.x11Screen().root), m_window(xcb_generate_id(m_connection))
{
    if (xcb_connection_has_error(m_connection))
        throw std::runtime_error("no connection to the X server");
    xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, m_window, m_root, 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_set_selection_owner(m_connection, m_window, atom("XdndSelection"), XCB_CURRENT_TIME);
    xcb_flush(m_connection);
}

XdndSource::~XdndSource()
{
    if (m_target)
        leave();
    xcb_disconnect(m_connection);
}

std::uint32_t XdndSource::atom(const std::string &name) const
{
    const auto reply = replyTo<xcb_intern_atom_reply_t>(
        xcb_intern_atom_reply, m_connection,
        xcb_intern_atom(m_connection, 0, static_cast<std::uint16_t>(name.size()), name.c_str()));
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

std::string XdndSource::nameOf(std::uint32_t atom) const
{
    if (atom == XCB_ATOM_NONE)
        return {};
    const auto reply = replyTo<xcb_get_atom_name_reply_t>(xcb_get_atom_name_reply, m_connection,
                                                          xcb_get_atom_name(m_connection, atom));
    if (!reply)
        return {};
    return {xcb_get_atom_name_name(reply.get()), static_cast<std::size_t>(xcb_get_atom_name_name_length(reply.get()))};
}

/// The first window from the root towards the point that says it takes part; 0: none does.
std::uint32_t XdndSource::targetAt(const Point &point) const
{
    const xcb_atom_t aware = atom("XdndAware");
    for (xcb_window_t window = m_root; window != XCB_WINDOW_NONE;) {
        const auto property = replyTo<xcb_get_property_reply_t>(
            xcb_get_property_reply, m_connection,
            xcb_get_property(m_connection, 0, window, aware, XCB_GET_PROPERTY_TYPE_ANY, 0, 1));
        if (property && property->value_len > 0)
            return window;
        const auto below = replyTo<xcb_translate_coordinates_reply_t>(
            xcb_translate_coordinates_reply, m_connection,
            xcb_translate_coordinates(m_connection, m_root, window, static_cast<std::int16_t>(point.x),
                                      static_cast<std::int16_t>(point.y)));
        window = below ? below->child : xcb_window_t{XCB_WINDOW_NONE};
    }
    return 0;
}

void XdndSource::send(const char *message, std::uint32_t second, std::uint32_t third, std::uint32_t fourth,
                      std::uint32_t fifth) const
{
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = m_target;
    event.type = atom(message);
    const std::uint32_t data[] = {m_window, second, third, fourth, fifth};
    std::copy(std::begin(data), std::end(data), std::begin(event.data.data32));
    xcb_send_event(m_connection, 0, m_target, XCB_EVENT_MASK_NO_EVENT, reinterpret_cast<const char *>(&event));
    xcb_flush(m_connection);
}

bool XdndSource::moveTo(const Point &point)
{
    if (const std::uint32_t target = targetAt(point); target != m_target) {
        if (m_target)
            leave();
        m_target = target;
        if (m_target)
            send("XdndEnter", kVersion << 24, atom(kType));
    }
    m_action.clear();
    if (!m_target)
        return false;
    m_status.reset();
    const std::uint32_t place = static_cast<std::uint32_t>(point.x) << 16 | static_cast<std::uint32_t>(point.y);
    send("XdndPosition", 0, place, XCB_CURRENT_TIME, atom("XdndActionCopy"));
    const auto answered = [this] {
        serve();
        return m_status.has_value();
    };
    if (!waitUntil(answered))
        throw std::runtime_error("the window below the drag does not answer");
    return *m_status;
}

void XdndSource::leave()
{
    send("XdndLeave");
    // A round trip: the server drops what a connection that ends has sent and it has not yet read.
    (void)replyTo<xcb_get_input_focus_reply_t>(xcb_get_input_focus_reply, m_connection,
                                               xcb_get_input_focus(m_connection));
    m_target = 0;
}

bool XdndSource::drop()
{
    m_finished.reset();
    send("XdndDrop", 0, XCB_CURRENT_TIME);
    const auto answered = [this] {
        serve();
        return m_finished.has_value();
    };
    if (!waitUntil(answered))
        throw std::runtime_error("the window below does not say what became of the drop");
    m_target = 0;
    return *m_finished;
}

void XdndSource::serve()
{
    while (const Reply<xcb_generic_event_t> event{xcb_poll_for_event(m_connection)}) {
        const int kind = event->response_type & 0x7F;
        if (kind == XCB_CLIENT_MESSAGE)
            handle(*reinterpret_cast<const xcb_client_message_event_t *>(event.get()));
        else if (kind == XCB_SELECTION_REQUEST)
            handOver(*reinterpret_cast<const xcb_selection_request_event_t *>(event.get()));
    }
}

void XdndSource::handle(const xcb_client_message_event_t &message)
{
    const std::uint32_t *data = message.data.data32;
    const std::string name = nameOf(message.type);
    if (name == "XdndStatus") {
        m_status = (data[1] & 1U) != 0;
        m_action = *m_status ? nameOf(data[4]) : std::string();
    } else if (name == "XdndFinished") {
        m_finished = (data[1] & 1U) != 0;
        m_action = *m_finished ? nameOf(data[2]) : std::string();
    }
}

void XdndSource::handOver(const xcb_selection_request_event_t &request)
{
    constexpr std::uint8_t kBytes = 8;
    xcb_selection_notify_event_t answer{};
    answer.response_type = XCB_SELECTION_NOTIFY;
    answer.time = request.time;
    answer.requestor = request.requestor;
    answer.selection = request.selection;
    answer.target = request.target;
    if (request.target == atom(kType)) {
        answer.property = request.property;
        xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, request.requestor, request.property, request.target,
                            kBytes, static_cast<std::uint32_t>(m_uriList.size()), m_uriList.data());
        ++m_transfers;
    }
    xcb_send_event(m_connection, 0, request.requestor, XCB_EVENT_MASK_NO_EVENT,
                   reinterpret_cast<const char *>(&answer));
    xcb_flush(m_connection);
}

} // namespace tallowmere::desktop
