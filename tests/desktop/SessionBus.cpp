// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/desktop/SessionBus.h"

#include <stdexcept>

namespace tallowmere::desktop {
namespace {

constexpr const char *kBusName = "org.freedesktop.DBus";
constexpr const char *kBusPath = "/org/freedesktop/DBus";

std::string configuration(const std::filesystem::path &folder)
{
    // The test may sit on the bus as root while its program is an ordinary user.
    return "<busconfig><type>session</type>"
           "<listen>unix:path=" +
           (folder / "bus").string() +
           "</listen>"
           "<auth>EXTERNAL</auth>"
           "<servicedir>" +
           (folder / "services").string() +
           "</servicedir>"
           "<policy context=\"default\"><allow user=\"*\"/><allow own=\"*\"/>"
           "<allow send_destination=\"*\" eavesdrop=\"true\"/><allow eavesdrop=\"true\"/></policy>"
           "</busconfig>\n";
}

/// The text between the first pair of @p open and @p close.
std::string between(const std::string &text, char open, char close)
{
    const auto begin = text.find(open);
    const auto end = text.find(close, begin + 1);
    return begin == std::string::npos || end == std::string::npos ? std::string()
                                                                  : text.substr(begin + 1, end - begin - 1);
}

} // namespace

SessionBus::SessionBus(Environment environment) : m_environment(std::move(environment))
{
    std::filesystem::create_directory(m_folder.path() / "services");
    const auto file = m_folder.path() / "bus.conf";
    writeFile(file, configuration(m_folder.path()));
    m_daemon = std::make_unique<Process>(
        Launch{.arguments = {"dbus-daemon", "--nofork", "--print-address", "--config-file=" + file.string()},
               .environment = m_environment,
               .workingDirectory = {},
               .user = {}});
    if (!m_daemon->waitForOutput("\n"))
        throw std::runtime_error("the session bus did not start:\n" + m_daemon->errors());
    const std::string printed = m_daemon->output();
    m_address = printed.substr(0, printed.find('\n'));
    m_environment["DBUS_SESSION_BUS_ADDRESS"] = m_address;
}

SessionBus::~SessionBus() = default;

void SessionBus::install(const std::string &name, const std::string &description) const
{
    writeFile(m_folder.path() / "services" / (name + ".service"), description);
    const Finished answer = call(kBusName, kBusPath, std::string(kBusName) + ".ReloadConfig");
    if (answer.status != 0)
        throw std::runtime_error("the bus did not take a service: " + answer.errors);
}

Finished SessionBus::call(const std::string &name, const std::string &path, const std::string &method,
                          const std::vector<std::string> &arguments) const
{
    Launch launch{.arguments = {"gdbus", "call", "--session", "--timeout", "60", "--dest", name, "--object-path", path,
                                "--method", method},
                  .environment = m_environment,
                  .workingDirectory = {},
                  .user = {}};
    launch.arguments.insert(launch.arguments.end(), arguments.begin(), arguments.end());
    return run(launch);
}

bool SessionBus::hasOwner(const std::string &name) const
{
    const Finished answer = call(kBusName, kBusPath, std::string(kBusName) + ".NameHasOwner", {name});
    if (answer.status != 0)
        throw std::runtime_error("the bus does not answer: " + answer.errors);
    return answer.output.find("true") != std::string::npos;
}

std::optional<pid_t> SessionBus::processOf(const std::string &name) const
{
    const Finished answer = call(kBusName, kBusPath, std::string(kBusName) + ".GetConnectionUnixProcessID", {name});
    const std::string number = between(answer.output, ' ', ',');
    if (answer.status != 0 || number.empty())
        return std::nullopt;
    return static_cast<pid_t>(std::stol(number));
}

} // namespace tallowmere::desktop
