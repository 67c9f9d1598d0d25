// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/desktop/AppMenuRegistrar.h"

#include <stdexcept>

namespace tallowmere::desktop {

namespace {

constexpr const char *kName = "com.canonical.AppMenu.Registrar";

void require(int result, const char *what)
{
    if (result < 0)
        throw std::runtime_error(std::string("bus: ") + what);
}

} // namespace

AppMenuRegistrar::AppMenuRegistrar(const std::string &busAddress)
{
    require(sd_bus_new(&m_bus), "new");
    require(sd_bus_set_address(m_bus, busAddress.c_str()), "address");
    require(sd_bus_set_bus_client(m_bus, 1), "client");
    require(sd_bus_start(m_bus), "start");
    require(sd_bus_add_filter(m_bus, nullptr, onMessage, this), "filter");
    require(sd_bus_request_name(m_bus, kName, 0), "name");
    m_thread = std::thread([this] { run(); });
}

AppMenuRegistrar::~AppMenuRegistrar()
{
    m_stopping = true;
    m_thread.join();
    sd_bus_flush_close_unref(m_bus);
}

std::optional<AppMenuRegistrar::Menu> AppMenuRegistrar::menu() const
{
    const std::lock_guard lock(m_mutex);
    return m_menu;
}

int AppMenuRegistrar::onMessage(sd_bus_message *message, void *userdata, sd_bus_error *)
{
    auto *self = static_cast<AppMenuRegistrar *>(userdata);
    if (sd_bus_message_is_method_call(message, kName, "UnregisterWindow") > 0)
        return sd_bus_reply_method_return(message, nullptr);
    if (sd_bus_message_is_method_call(message, kName, "RegisterWindow") <= 0)
        return 0;
    std::uint32_t window = 0;
    const char *path = "";
    if (sd_bus_message_read(message, "uo", &window, &path) >= 0) {
        const std::lock_guard lock(self->m_mutex);
        self->m_menu = Menu{sd_bus_message_get_sender(message), path};
    }
    return sd_bus_reply_method_return(message, nullptr);
}

void AppMenuRegistrar::run()
{
    constexpr std::uint64_t kAtMost = 10'000; // microseconds
    while (!m_stopping) {
        const int processed = sd_bus_process(m_bus, nullptr);
        if (processed < 0)
            return;
        if (processed == 0)
            sd_bus_wait(m_bus, kAtMost);
    }
}

} // namespace tallowmere::desktop
