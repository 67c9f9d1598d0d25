// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/platform/freedesktop/PrivateBus.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <stdexcept>
#include <string>

namespace tallowmere::test {

namespace {

constexpr const char *kName = "app.tallowmere.Tallowmere";
constexpr const char *kPath = "/app/tallowmere/Tallowmere";
constexpr const char *kInterface = "org.freedesktop.Application";

void require(int result, const char *what)
{
    if (result < 0)
        throw std::runtime_error(std::string(what) + ": " + std::to_string(result));
}

sd_bus *connectTo(const QByteArray &address)
{
    sd_bus *bus = nullptr;
    require(sd_bus_new(&bus), "sd_bus_new");
    require(sd_bus_set_address(bus, address.constData()), "sd_bus_set_address");
    require(sd_bus_set_bus_client(bus, 1), "sd_bus_set_bus_client");
    require(sd_bus_start(bus), "sd_bus_start");
    return bus;
}

/// Nothing of the machine's own services can be started from here.
QByteArray configuration(const QByteArray &folder)
{
    return "<!DOCTYPE busconfig PUBLIC \"-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN\""
           " \"http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd\">\n"
           "<busconfig><type>session</type><listen>unix:path=" +
           folder +
           "/bus</listen><auth>EXTERNAL</auth><policy context=\"default\">"
           "<allow send_destination=\"*\" eavesdrop=\"true\"/><allow eavesdrop=\"true\"/><allow own=\"*\"/>"
           "</policy></busconfig>\n";
}

void appendPlatformData(sd_bus_message *message, const std::vector<BusCaller::Variant> &platformData)
{
    require(sd_bus_message_open_container(message, 'a', "{sv}"), "open_container");
    for (const BusCaller::Variant &entry : platformData)
        require(sd_bus_message_append(message, "{sv}", entry.key.constData(), "s", entry.text.constData()), "append");
    require(sd_bus_message_close_container(message), "close_container");
}

} // namespace

PrivateBus::PrivateBus()
{
    const FileURL file = m_folder.write("bus.conf", configuration(m_folder.path()));
    std::array<int, 2> ends{};
    require(pipe2(ends.data(), O_CLOEXEC), "pipe2");
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
    // In a container it complains of limits it may not raise; tests read standard error.
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    std::string program = "dbus-daemon";
    std::string config = "--config-file=" + file.path().toStdString();
    std::string print = "--print-address";
    std::string nofork = "--nofork";
    const std::array<char *, 5> arguments{program.data(), config.data(), print.data(), nofork.data(), nullptr};
    const int error = posix_spawnp(&m_daemon, program.c_str(), &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    close(ends[1]);
    // It prints its address once it listens there.
    char next = 0;
    while (error == 0 && read(ends[0], &next, 1) == 1 && next != '\n')
        m_address.append(next);
    close(ends[0]);
    if (m_address.isEmpty())
        throw std::runtime_error("dbus-daemon did not start");
}

PrivateBus::~PrivateBus()
{
    end();
}

void PrivateBus::stop()
{
    kill(m_daemon, SIGSTOP);
}

void PrivateBus::resume()
{
    kill(m_daemon, SIGCONT);
}

void PrivateBus::end()
{
    if (m_daemon <= 0)
        return;
    kill(m_daemon, SIGKILL);
    while (waitpid(m_daemon, nullptr, 0) < 0 && errno == EINTR) {
    }
    m_daemon = -1;
}

BusCaller::BusCaller(const QByteArray &address) : m_bus(connectTo(address)) {}

BusCaller::~BusCaller()
{
    sd_bus_close_unref(m_bus);
}

sd_bus_message *BusCaller::methodCall(const char *method)
{
    sd_bus_message *message = nullptr;
    require(sd_bus_message_new_method_call(m_bus, &message, kName, kPath, kInterface, method), "new_method_call");
    return message;
}

QByteArray BusCaller::send(sd_bus_message *message)
{
    constexpr std::uint64_t kTimeout = 30'000'000;
    sd_bus_error error = SD_BUS_ERROR_NULL;
    const int result = sd_bus_call(m_bus, message, kTimeout, &error, nullptr);
    const QByteArray name = result < 0 ? QByteArray(error.name) : QByteArray();
    sd_bus_error_free(&error);
    sd_bus_message_unref(message);
    return name;
}

QByteArray BusCaller::activate(const std::vector<Variant> &platformData)
{
    sd_bus_message *message = methodCall("Activate");
    appendPlatformData(message, platformData);
    return send(message);
}

QByteArray BusCaller::open(const std::vector<QByteArray> &uris, const std::vector<Variant> &platformData)
{
    sd_bus_message *message = methodCall("Open");
    require(sd_bus_message_open_container(message, 'a', "s"), "open_container");
    for (const QByteArray &uri : uris)
        require(sd_bus_message_append_basic(message, 's', uri.constData()), "append_basic");
    require(sd_bus_message_close_container(message), "close_container");
    appendPlatformData(message, platformData);
    return send(message);
}

QByteArray BusCaller::activateAction(const QByteArray &action)
{
    sd_bus_message *message = methodCall("ActivateAction");
    require(sd_bus_message_append(message, "sava{sv}", action.constData(), 0, 0), "append");
    return send(message);
}

QByteArray BusCaller::callWithWrongArguments(const QByteArray &method)
{
    sd_bus_message *message = methodCall(method.constData());
    require(sd_bus_message_append(message, "s", "nonsense"), "append");
    return send(message);
}

QByteArray BusCaller::ownerOf(const char *name)
{
    sd_bus_creds *creds = nullptr;
    if (sd_bus_get_name_creds(m_bus, name, SD_BUS_CREDS_UNIQUE_NAME, &creds) < 0)
        return {};
    const char *owner = nullptr;
    const QByteArray result = sd_bus_creds_get_unique_name(creds, &owner) < 0 ? QByteArray() : QByteArray(owner);
    sd_bus_creds_unref(creds);
    return result;
}

BusService::BusService(const QByteArray &address, const char *name, Reaction reaction,
                       std::function<void(sd_bus_message *)> inspect)
    : m_reaction(reaction), m_inspect(std::move(inspect)), m_bus(connectTo(address))
{
    require(sd_bus_add_filter(m_bus, nullptr, onMessage, this), "add_filter");
    require(sd_bus_request_name(m_bus, name, 0), "request_name");
    m_thread = std::thread([this] { serve(); });
}

BusService::~BusService()
{
    m_stopping = true;
    m_thread.join();
    if (m_bus)
        sd_bus_close_unref(m_bus);
}

int BusService::onMessage(sd_bus_message *message, void *userdata, sd_bus_error *)
{
    auto *self = static_cast<BusService *>(userdata);
    std::uint8_t type = 0;
    sd_bus_message_get_type(message, &type);
    if (type != SD_BUS_MESSAGE_METHOD_CALL)
        return 0;
    if (self->m_inspect)
        self->m_inspect(message);
    ++self->m_calls;
    switch (self->m_reaction) {
    case Reaction::reply:
        if (sd_bus_message_is_method_call(message, nullptr, "OpenDirectory") > 0)
            return sd_bus_reply_method_return(message, "o", "/request");
        return sd_bus_reply_method_return(message, "");
    case Reaction::ignore:
        return 1;
    case Reaction::disappear:
        self->m_stopping = true;
        return 1;
    }
    return 0;
}

void BusService::serve()
{
    while (!m_stopping) {
        const int processed = sd_bus_process(m_bus, nullptr);
        if (processed < 0)
            break;
        if (processed == 0)
            sd_bus_wait(m_bus, 10'000);
    }
    if (m_reaction == Reaction::disappear)
        m_bus = sd_bus_close_unref(m_bus);
}

bool eventually(const std::function<bool()> &condition)
{
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return true;
}

} // namespace tallowmere::test
