// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "tests/doubles/TestFolder.h"

#include <QByteArray>

#include <sys/types.h>
#include <systemd/sd-bus.h>

#include <atomic>
#include <functional>
#include <thread>
#include <vector>

namespace tallowmere::test {

/// A message bus of the test's own, with nobody on it. Ends with this object.
class PrivateBus final
{
public:
    PrivateBus();
    ~PrivateBus();
    PrivateBus(const PrivateBus &) = delete;
    PrivateBus &operator=(const PrivateBus &) = delete;

    [[nodiscard]] const QByteArray &address() const { return m_address; }
    /// Stopped, the bus still takes connections but answers nothing.
    void stop();
    void resume();
    /// Ends the daemon before its time: every connection breaks.
    void end();

private:
    TestFolder m_folder;
    QByteArray m_address;
    pid_t m_daemon = -1;
};

/// Another program on the bus, which calls and waits for the answer.
class BusCaller final
{
public:
    explicit BusCaller(const QByteArray &address);
    ~BusCaller();
    BusCaller(const BusCaller &) = delete;
    BusCaller &operator=(const BusCaller &) = delete;

    struct Variant
    {
        QByteArray key;
        QByteArray text;
    };
    /// Each answers the error's name, empty when there was none.
    QByteArray activate(const std::vector<Variant> &platformData = {});
    QByteArray open(const std::vector<QByteArray> &uris, const std::vector<Variant> &platformData = {});
    QByteArray activateAction(const QByteArray &action);
    /// Calls @p method with a single string where something else is expected.
    QByteArray callWithWrongArguments(const QByteArray &method);
    /// Empty when nobody owns it.
    [[nodiscard]] QByteArray ownerOf(const char *name);

private:
    QByteArray send(sd_bus_message *message);
    sd_bus_message *methodCall(const char *method);

    sd_bus *m_bus = nullptr;
};

/// Another program that owns a name, on a thread of its own, and does with each method call what the test says.
class BusService final
{
public:
    enum class Reaction
    {
        reply,     ///< an empty answer; the portal's with an object path
        ignore,    ///< read, never answered
        disappear, ///< the connection breaks instead of an answer
    };
    /// @p inspect sees each call on the service's thread.
    BusService(const QByteArray &address, const char *name, Reaction reaction,
               std::function<void(sd_bus_message *)> inspect = {});
    ~BusService();
    BusService(const BusService &) = delete;
    BusService &operator=(const BusService &) = delete;

    [[nodiscard]] int calls() const { return m_calls; }

private:
    static int onMessage(sd_bus_message *message, void *userdata, sd_bus_error *error);
    void serve();

    const Reaction m_reaction;
    const std::function<void(sd_bus_message *)> m_inspect;
    sd_bus *m_bus = nullptr;
    std::atomic<int> m_calls{0};
    std::atomic<bool> m_stopping{false};
    std::thread m_thread;
};

/// Waits until @p condition holds; false when it does not within half a minute.
[[nodiscard]] bool eventually(const std::function<bool()> &condition);

} // namespace tallowmere::test
