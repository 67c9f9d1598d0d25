// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <systemd/sd-bus.h>

#include <atomic>
#include <cstdint>
#include <string>
#include <thread>

namespace tallowmere::desktop {

/// A desktop portal that knows one setting, the colour scheme, and lives on a thread of its own.
///
/// Throws std::runtime_error when the bus does not let it in.
class SettingsPortal final
{
public:
    enum class Manner
    {
        answers,
        refuses, ///< knows no such setting
        isMute   ///< never answers, but tells of changes
    };
    /// @p scheme: 0 no preference, 1 dark, 2 light.
    SettingsPortal(const std::string &busAddress, std::uint32_t scheme, Manner manner = Manner::answers);
    ~SettingsPortal();
    SettingsPortal(const SettingsPortal &) = delete;
    SettingsPortal &operator=(const SettingsPortal &) = delete;

    /// The user changes the setting.
    void change(std::uint32_t scheme) { m_scheme = scheme; }
    [[nodiscard]] int questions() const { return m_questions; }

private:
    static int onMessage(sd_bus_message *message, void *userdata, sd_bus_error *error);
    void run();
    void tell(const char *group, const char *key, std::uint32_t value);

    const Manner m_manner;
    sd_bus *m_bus = nullptr;
    std::atomic<std::uint32_t> m_scheme;
    std::uint32_t m_told;
    std::atomic<int> m_questions{0};
    std::atomic<bool> m_stopping{false};
    std::thread m_thread;
};

} // namespace tallowmere::desktop
