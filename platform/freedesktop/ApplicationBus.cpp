// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "platform/freedesktop/ApplicationBus.h"

#include "platform/freedesktop/ApplicationInterface.h"
#include "support/Diagnostics.h"

#include <pthread.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <cstdint>

namespace tallowmere {

namespace {

using Clock = std::chrono::steady_clock;

} // namespace

/// One connection: what has been asked of the bus and what it answered. Bus thread only.
class ApplicationBus::Session final
{
public:
    enum class Name
    {
        unknown,
        ours,
        taken,
        refused
    };
    enum class HandOver
    {
        unknown,
        taken,
        vanished,
        failed
    };

    Session(const Options &options, const Handler &handler)
        : m_timeout(options.handOverTimeout), m_bus(openSessionBus(options.address))
    {
        // Before the name is asked for: whoever sees the name may call at once.
        if (m_bus && !serveApplicationInterface(m_bus.get(), handler))
            m_bus.reset();
    }

    [[nodiscard]] sd_bus *bus() const { return m_bus.get(); }
    [[nodiscard]] bool connected() const { return m_bus && sd_bus_is_open(m_bus.get()) > 0; }
    [[nodiscard]] Name name() const { return m_name; }
    [[nodiscard]] HandOver handOver() const { return m_handOver; }

    [[nodiscard]] bool askForName()
    {
        m_name = Name::unknown;
        // No flags: neither queue behind an owner nor take its place.
        return sd_bus_request_name_async(m_bus.get(), nullptr, kApplicationName, 0, onNameReply, this) >= 0;
    }

    [[nodiscard]] bool beginHandOver(const ApplicationStart &start)
    {
        m_handOver = HandOver::unknown;
        m_handOverDeadline = Clock::now() + m_timeout;
        const MessagePtr call = handOverCall(m_bus.get(), start);
        return call && sd_bus_call_async(m_bus.get(), nullptr, call.get(), onHandOverReply, this,
                                         static_cast<std::uint64_t>(std::chrono::microseconds(m_timeout).count())) >= 0;
    }

private:
    static int onNameReply(sd_bus_message *reply, void *userdata, sd_bus_error *)
    {
        constexpr std::uint32_t kPrimaryOwner = 1; // of the D-Bus specification's RequestName
        constexpr std::uint32_t kExists = 3;
        std::uint32_t code = 0;
        Name &name = static_cast<Session *>(userdata)->m_name;
        if (sd_bus_message_is_method_error(reply, nullptr) > 0 || sd_bus_message_read_basic(reply, 'u', &code) < 0)
            name = Name::refused;
        else
            name = code == kPrimaryOwner ? Name::ours : code == kExists ? Name::taken : Name::refused;
        return 1;
    }

    static int onHandOverReply(sd_bus_message *reply, void *userdata, sd_bus_error *)
    {
        auto *self = static_cast<Session *>(userdata);
        const sd_bus_error *error = sd_bus_message_get_error(reply);
        if (!error)
            self->m_handOver = HandOver::taken;
        else
            self->m_handOver = self->hasVanished(error) ? HandOver::vanished : HandOver::failed;
        return 1;
    }

    [[nodiscard]] bool hasVanished(const sd_bus_error *error) const
    {
        if (sd_bus_error_has_name(error, SD_BUS_ERROR_SERVICE_UNKNOWN) ||
            sd_bus_error_has_name(error, SD_BUS_ERROR_NAME_HAS_NO_OWNER))
            return true;
        // The bus says "no reply" for an owner that died with our call unanswered; the library says the same when
        // the time is up.
        return sd_bus_error_has_name(error, SD_BUS_ERROR_NO_REPLY) && Clock::now() < m_handOverDeadline;
    }

    const std::chrono::milliseconds m_timeout;
    Name m_name = Name::unknown;
    HandOver m_handOver = HandOver::unknown;
    Clock::time_point m_handOverDeadline;
    BusPtr m_bus; // last: closing it runs no callback, but nothing it could call may be gone
};

ApplicationBus::ApplicationBus(Options options, Handler handler, std::function<void()> lost)
    : m_options(std::move(options)), m_handler(std::move(handler)), m_lost(std::move(lost)),
      m_wakeFd(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
{}

ApplicationBus::~ApplicationBus()
{
    {
        const std::lock_guard lock(m_mutex);
        m_stopping = true;
    }
    eventfd_write(m_wakeFd, 1);
    if (m_thread.joinable())
        m_thread.join();
    close(m_wakeFd);
}

ApplicationBus::Role ApplicationBus::start(ApplicationStart start)
{
    m_thread = std::thread([this, start = std::move(start)] {
        pthread_setname_np(pthread_self(), "tallowmere.bus");
        run(start);
        settle(Role::noBus); // wherever it ended without a word
    });
    std::unique_lock lock(m_mutex);
    // The thread keeps the time itself; the cap is for an address whose host name takes long to resolve.
    m_settled.wait_for(lock, m_options.connectTimeout + m_options.handOverTimeout,
                       [this] { return m_role.has_value(); });
    if (!m_role)
        m_role = Role::noBus;
    return *m_role;
}

void ApplicationBus::settle(Role role)
{
    const std::lock_guard lock(m_mutex);
    if (!m_role)
        m_role = role;
    m_settled.notify_all();
}

void ApplicationBus::run(const ApplicationStart &start)
{
    Session session(m_options, m_handler);
    if (!session.connected())
        return;
    const auto stopping = [this] {
        const std::lock_guard lock(m_mutex);
        return m_stopping;
    };
    const auto serve = [&](Clock::time_point deadline, const std::function<bool()> &done) {
        serveUntil(session.bus(), deadline, m_wakeFd, [&] { return stopping() || done(); });
        return session.connected() && !stopping();
    };
    const auto nameIsKnown = [&] { return session.name() != Session::Name::unknown; };
    const auto never = Clock::time_point::max();
    const auto deadline = Clock::now() + m_options.connectTimeout;

    constexpr int kAttempts = 5; // each one: the owner vanished before it took our files
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        if (!session.askForName() || !serve(deadline, nameIsKnown))
            return;
        if (!nameIsKnown()) {
            // Start without the bus, but stay: a slow bus may still make us the instance that later starts find.
            settle(Role::noBus);
            if (!serve(never, nameIsKnown))
                return;
        }
        if (session.name() == Session::Name::ours) {
            settle(Role::owner);
            serve(never, [] { return false; });
            if (m_lost && !stopping())
                m_lost();
            return;
        }
        {
            const std::lock_guard lock(m_mutex);
            if (m_role || session.name() == Session::Name::refused)
                return;
        }
        if (!session.beginHandOver(start) ||
            !serve(never, [&] { return session.handOver() != Session::HandOver::unknown; }))
            return;
        if (session.handOver() == Session::HandOver::taken)
            return settle(Role::handedOver);
        if (session.handOver() == Session::HandOver::failed) {
            printError("the running instance does not answer; opening a window of its own");
            return settle(Role::unanswered);
        }
    }
}

} // namespace tallowmere
