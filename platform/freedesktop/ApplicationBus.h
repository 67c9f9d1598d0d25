// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/ApplicationRequest.h"

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

namespace tallowmere {

/// The program's name on the session bus: it makes the first start the only instance, brings it the requests of
/// the desktop and of later starts (org.freedesktop.Application), and hands a later start over to it.
///
/// Lives on a thread of its own, so that requests are taken before a window system is connected. Every failure
/// of the bus means the same: the program runs without it.
class ApplicationBus final
{
public:
    enum class Role
    {
        owner,      ///< requests come to us
        handedOver, ///< a running instance took what this start was given: nothing is left to do
        unanswered, ///< another instance has the name and does not answer
        noBus,      ///< none, or one that does not answer in time
    };

    struct Options
    {
        QByteArray address; ///< of the bus; empty: the session's own
        /// Connecting and asking for the name take 2 ms; a bus that hangs must not keep the photo from its reader.
        std::chrono::milliseconds connectTimeout{1000};
        /// A running instance answers from its bus thread in 1 ms, however busy it is; one that does not is stopped.
        std::chrono::milliseconds handOverTimeout{2000};
    };

    /// Runs on the bus's thread, in the order in which the requests came; must not block.
    using Handler = std::function<void(ApplicationRequest)>;

    /// @p lost runs on the bus's thread, at most once, when the bus ends while the name is ours; may be empty.
    ApplicationBus(Options options, Handler handler, std::function<void()> lost = {});
    /// Gives the name back.
    ~ApplicationBus();
    ApplicationBus(const ApplicationBus &) = delete;
    ApplicationBus &operator=(const ApplicationBus &) = delete;

    /// Once. Returns when the role is settled, at the latest after both time-outs. Standard error gets one line
    /// when there is a running instance that does not answer.
    [[nodiscard]] Role start(ApplicationStart start);

private:
    class Session;

    void run(const ApplicationStart &start);
    void settle(Role role);

    const Options m_options;
    const Handler m_handler;
    const std::function<void()> m_lost;
    const int m_wakeFd;
    std::mutex m_mutex;
    std::condition_variable m_settled;
    std::optional<Role> m_role; ///< guarded by m_mutex
    bool m_stopping = false;    ///< guarded by m_mutex
    std::thread m_thread;
};

} // namespace tallowmere
