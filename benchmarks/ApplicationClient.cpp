// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "benchmarks/ApplicationClient.h"

#include <systemd/sd-bus.h>

#include <cstring>
#include <stdexcept>

namespace tallowmere::bench {
namespace {

void require(int result, const char *what)
{
    if (result < 0)
        throw std::runtime_error(std::string(what) + ": " + std::strerror(-result));
}

} // namespace

void ApplicationClient::Close::operator()(sd_bus *bus) const
{
    sd_bus_flush_close_unref(bus);
}

ApplicationClient::ApplicationClient(const std::string &busAddress)
{
    sd_bus *bus = nullptr;
    require(sd_bus_new(&bus), "no bus");
    m_bus.reset(bus);
    require(sd_bus_set_address(bus, busAddress.c_str()), "bus address");
    require(sd_bus_set_bus_client(bus, 1), "bus client");
    require(sd_bus_start(bus), "bus start");
    // Sent with the first message otherwise, and that is the one to be timed.
    const char *ownName = nullptr;
    require(sd_bus_get_unique_name(bus, &ownName), "bus greeting");
}

void ApplicationClient::open(const std::filesystem::path &file) const
{
    sd_bus_message *made = nullptr;
    require(sd_bus_message_new_method_call(m_bus.get(), &made, kName, "/app/tallowmere/Tallowmere",
                                           "org.freedesktop.Application", "Open"),
            "message");
    const std::unique_ptr<sd_bus_message, decltype(&sd_bus_message_unref)> message(made, &sd_bus_message_unref);
    const std::string uri = "file://" + file.string();
    require(sd_bus_message_append(made, "asa{sv}", 1, uri.c_str(), 0), "message");
    require(sd_bus_message_set_expect_reply(made, 0), "message");
    require(sd_bus_send(m_bus.get(), made, nullptr), "send");
    require(sd_bus_flush(m_bus.get()), "send");
}

std::optional<pid_t> ApplicationClient::process() const
{
    sd_bus_message *answer = nullptr;
    const int result =
        sd_bus_call_method(m_bus.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                           "GetConnectionUnixProcessID", nullptr, &answer, "s", kName);
    const std::unique_ptr<sd_bus_message, decltype(&sd_bus_message_unref)> owned(answer, &sd_bus_message_unref);
    std::uint32_t id = 0;
    if (result < 0 || sd_bus_message_read(answer, "u", &id) < 0)
        return std::nullopt;
    return static_cast<pid_t>(id);
}

} // namespace tallowmere::bench
