// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <systemd/sd-bus.h>

#include <chrono>
#include <functional>
#include <memory>

namespace tallowmere {

struct BusCloser
{
    /// Without a flush, which would wait for a bus that hangs.
    void operator()(sd_bus *bus) const { sd_bus_close_unref(bus); }
};
using BusPtr = std::unique_ptr<sd_bus, BusCloser>;

struct MessageUnref
{
    void operator()(sd_bus_message *message) const { sd_bus_message_unref(message); }
};
using MessagePtr = std::unique_ptr<sd_bus_message, MessageUnref>;

/// Begins to connect to the bus at @p address, the session's own when that is empty, and returns at once:
/// what is sent before the connection stands is queued. Null when there is no bus to connect to.
[[nodiscard]] BusPtr openSessionBus(const QByteArray &address);

/// Serves @p bus until @p done answers true, @p deadline passes or the connection is lost; says whether done()
/// did. A readable @p wakeFd (-1: none) ends the wait early, so that done() is asked again.
bool serveUntil(sd_bus *bus, std::chrono::steady_clock::time_point deadline, int wakeFd,
                const std::function<bool()> &done);

} // namespace tallowmere
