// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/desktop/SettingsPortal.h"

#include <stdexcept>
#include <string_view>

namespace tallowmere::desktop {

namespace {

constexpr const char *kPath = "/org/freedesktop/portal/desktop";
constexpr const char *kInterface = "org.freedesktop.portal.Settings";
constexpr const char *kGroup = "org.freedesktop.appearance";
constexpr const char *kKey = "color-scheme";

void require(int result, const char *what)
{
    if (result < 0)
        throw std::runtime_error(std::string("bus: ") + what);
}

} // namespace

SettingsPortal::SettingsPortal(const std::string &busAddress, std::uint32_t scheme, Manner manner)
    : m_manner(manner), m_scheme(scheme), m_told(scheme)
{
    require(sd_bus_new(&m_bus), "new");
    require(sd_bus_set_address(m_bus, busAddress.c_str()), "address");
    require(sd_bus_set_bus_client(m_bus, 1), "client");
    require(sd_bus_start(m_bus), "start");
    require(sd_bus_add_filter(m_bus, nullptr, onMessage, this), "filter");
    require(sd_bus_request_name(m_bus, "org.freedesktop.portal.Desktop", 0), "name");
    m_thread = std::thread([this] { run(); });
}

SettingsPortal::~SettingsPortal()
{
    m_stopping = true;
    m_thread.join();
    sd_bus_flush_close_unref(m_bus);
}

int SettingsPortal::onMessage(sd_bus_message *message, void *userdata, sd_bus_error *)
{
    auto *self = static_cast<SettingsPortal *>(userdata);
    if (sd_bus_message_is_method_call(message, kInterface, "Read") <= 0)
        return 0;
    const char *group = "";
    const char *key = "";
    sd_bus_message_read(message, "ss", &group, &key);
    ++self->m_questions;
    if (self->m_manner == Manner::isMute)
        return 1;
    if (self->m_manner == Manner::refuses || std::string_view(group) != kGroup || std::string_view(key) != kKey)
        return sd_bus_reply_method_errorf(message, "org.freedesktop.portal.Error.NotFound", "no such setting");
    self->m_told = self->m_scheme;
    return sd_bus_reply_method_return(message, "v", "v", "u", self->m_told);
}

void SettingsPortal::tell(const char *group, const char *key, std::uint32_t value)
{
    sd_bus_emit_signal(m_bus, kPath, kInterface, "SettingChanged", "ssv", group, key, "u", value);
}

void SettingsPortal::run()
{
    constexpr std::uint64_t kAtMost = 10'000; // microseconds
    while (!m_stopping) {
        if (const std::uint32_t scheme = m_scheme; scheme != m_told) {
            m_told = scheme;
            // Other settings change, too: they are nobody's business here.
            tell("org.example.desktop", kKey, 3 - scheme);
            tell(kGroup, "accent-color", 3 - scheme);
            tell(kGroup, kKey, scheme);
        }
        const int processed = sd_bus_process(m_bus, nullptr);
        if (processed < 0)
            return;
        if (processed == 0)
            sd_bus_wait(m_bus, kAtMost);
    }
}

} // namespace tallowmere::desktop
