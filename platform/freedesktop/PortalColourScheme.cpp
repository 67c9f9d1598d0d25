// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "platform/freedesktop/PortalColourScheme.h"

#include "platform/freedesktop/SessionBus.h"
#include "support/Queues.h"

#include <poll.h>
#include <pthread.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <cstdint>
#include <cstring>
#include <optional>

namespace tallowmere {

namespace {

constexpr const char *kPortal = "org.freedesktop.portal.Desktop";
constexpr const char *kPath = "/org/freedesktop/portal/desktop";
constexpr const char *kInterface = "org.freedesktop.portal.Settings";
constexpr const char *kNamespace = "org.freedesktop.appearance";
constexpr const char *kKey = "color-scheme";

ColourScheme schemeFrom(std::uint32_t value)
{
    constexpr std::uint32_t kDark = 1;
    constexpr std::uint32_t kLight = 2;
    return value == kDark ? ColourScheme::dark : value == kLight ? ColourScheme::light : ColourScheme::noPreference;
}

/// An answer to Read() has the value in two variants, a signal in one.
std::optional<ColourScheme> readScheme(sd_bus_message *message)
{
    constexpr int kDeepest = 4;
    for (int depth = 0; depth < kDeepest; ++depth) {
        char type = 0;
        const char *contents = nullptr;
        if (sd_bus_message_peek_type(message, &type, &contents) <= 0)
            return std::nullopt;
        std::uint32_t value = 0;
        if (type == SD_BUS_TYPE_UINT32 && sd_bus_message_read_basic(message, type, &value) > 0)
            return schemeFrom(value);
        if (type != SD_BUS_TYPE_VARIANT || sd_bus_message_enter_container(message, type, contents) <= 0)
            return std::nullopt;
    }
    return std::nullopt;
}

} // namespace

/// One connection. Its own thread only.
class PortalColourScheme::Session final
{
public:
    Session(const QByteArray &address, std::function<void(ColourScheme)> report)
        : m_report(std::move(report)), m_bus(openSessionBus(address))
    {
        // The signals first: no change can slip in between.
        if (!m_bus ||
            sd_bus_match_signal_async(m_bus.get(), nullptr, kPortal, kPath, kInterface, "SettingChanged", onChange,
                                      nullptr, this) < 0 ||
            sd_bus_call_method_async(m_bus.get(), nullptr, kPortal, kPath, kInterface, "Read", onAnswer, this, "ss",
                                     kNamespace, kKey) < 0)
            m_bus.reset();
    }

    [[nodiscard]] sd_bus *bus() const { return m_bus.get(); }

private:
    static int onAnswer(sd_bus_message *message, void *userdata, sd_bus_error *)
    {
        auto *self = static_cast<Session *>(userdata);
        if (sd_bus_message_is_method_error(message, nullptr) == 0 && !self->m_last)
            self->take(readScheme(message));
        return 1;
    }

    static int onChange(sd_bus_message *message, void *userdata, sd_bus_error *)
    {
        const char *group = nullptr;
        const char *key = nullptr;
        if (sd_bus_message_read(message, "ss", &group, &key) > 0 && std::strcmp(group, kNamespace) == 0 &&
            std::strcmp(key, kKey) == 0)
            static_cast<Session *>(userdata)->take(readScheme(message));
        return 0;
    }

    void take(std::optional<ColourScheme> scheme)
    {
        if (!scheme || scheme == m_last)
            return;
        m_last = scheme;
        m_report(*scheme);
    }

    const std::function<void(ColourScheme)> m_report;
    std::optional<ColourScheme> m_last;
    BusPtr m_bus; // last: closing it runs no callback, but nothing it could call may be gone
};

PortalColourScheme::PortalColourScheme(MainQueue &mainQueue, QByteArray busAddress)
    : m_mainQueue(mainQueue), m_busAddress(std::move(busAddress)), m_stopFd(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
{}

PortalColourScheme::~PortalColourScheme()
{
    eventfd_write(m_stopFd, 1);
    if (m_thread.joinable())
        m_thread.join();
    close(m_stopFd);
}

void PortalColourScheme::start(Changed changed)
{
    m_changed = std::make_shared<Changed>(std::move(changed));
    const auto report = [&mainQueue = m_mainQueue, weak = std::weak_ptr(m_changed)](ColourScheme scheme) {
        mainQueue.async([weak, scheme] {
            if (const auto call = weak.lock())
                (*call)(scheme);
        });
    };
    m_thread = std::thread([address = m_busAddress, stopFd = m_stopFd, report] {
        pthread_setname_np(pthread_self(), "tallowmere.look");
        const Session session(address, report);
        if (!session.bus())
            return;
        const auto stopped = [stopFd] {
            pollfd polled{stopFd, POLLIN, 0};
            return poll(&polled, 1, 0) > 0;
        };
        serveUntil(session.bus(), std::chrono::steady_clock::time_point::max(), stopFd, stopped);
    });
}

} // namespace tallowmere
