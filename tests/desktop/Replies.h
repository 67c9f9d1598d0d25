// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "tests/desktop/VirtualDesktop.h"

#include <xcb/xcb.h>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace tallowmere::desktop {

struct FreeReply
{
    void operator()(void *reply) const { std::free(reply); }
};
template <typename Type>
using Reply = std::unique_ptr<Type, FreeReply>;

/// Null when the server answered with an error: a window may be gone by the time it is asked about.
template <typename Type, typename Function, typename Cookie>
[[nodiscard]] Reply<Type> replyTo(Function function, xcb_connection_t *connection, Cookie cookie)
{
    xcb_generic_error_t *error = nullptr;
    Reply<Type> reply(function(connection, cookie, &error));
    std::free(error);
    return reply;
}

/// The whole of a window's property; empty when there is none.
template <typename Item>
[[nodiscard]] std::vector<Item> property(const VirtualDesktop &desktop, xcb_window_t window, const std::string &name)
{
    constexpr std::uint32_t kLongest = 1U << 20;
    const auto reply = replyTo<xcb_get_property_reply_t>(
        xcb_get_property_reply, desktop.connection(),
        xcb_get_property(desktop.connection(), 0, window, desktop.atom(name), XCB_GET_PROPERTY_TYPE_ANY, 0, kLongest));
    if (!reply || reply->format != sizeof(Item) * 8)
        return {};
    std::vector<Item> items(reply->value_len);
    if (!items.empty())
        std::memcpy(items.data(), xcb_get_property_value(reply.get()), items.size() * sizeof(Item));
    return items;
}

} // namespace tallowmere::desktop
