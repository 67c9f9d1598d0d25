// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/desktop/Accessibility.h"

#include <systemd/sd-bus.h>

#include <algorithm>
#include <filesystem>
#include <stdexcept>

namespace tallowmere::desktop {
namespace {

constexpr const char *kAccessible = "org.a11y.atspi.Accessible";
constexpr const char *kAction = "org.a11y.atspi.Action";
constexpr const char *kRootPath = "/org/a11y/atspi/accessible/root";
constexpr const char *kRegistry = "org.a11y.atspi.Registry";

void require(int result, const char *what)
{
    if (result < 0)
        throw std::runtime_error(std::string("accessibility bus: ") + what);
}

/// One question and its answer, which goes with it.
class Answer
{
public:
    template <typename... Arguments>
    Answer(sd_bus *bus, const std::string &owner, const std::string &path, const char *interface, const char *method,
           const char *types = "", Arguments... arguments)
    {
        if (!bus)
            return;
        m_arrived = sd_bus_call_method(bus, owner.c_str(), path.c_str(), interface, method, nullptr, &m_message, types,
                                       arguments...) >= 0;
    }
    ~Answer() { sd_bus_message_unref(m_message); }
    Answer(const Answer &) = delete;
    Answer &operator=(const Answer &) = delete;

    [[nodiscard]] bool arrived() const { return m_arrived; }
    /// False when the answer does not hold that, or nothing more of it.
    template <typename... Values>
    bool read(const char *types, Values *...values)
    {
        return m_arrived && sd_bus_message_read(m_message, types, values...) > 0;
    }
    bool enter(char container, const char *contents)
    {
        return m_arrived && sd_bus_message_enter_container(m_message, container, contents) > 0;
    }
    /// Out of the container entered last, whatever is left in it.
    bool leave()
    {
        while (sd_bus_message_skip(m_message, nullptr) > 0) {
        }
        return sd_bus_message_exit_container(m_message) >= 0;
    }
    [[nodiscard]] std::string text()
    {
        const char *value = nullptr;
        return read("s", &value) ? value : std::string();
    }

private:
    sd_bus_message *m_message = nullptr;
    bool m_arrived = false;
};

std::vector<Accessible> childrenOf(sd_bus *bus, const std::string &owner, const std::string &path)
{
    std::vector<Accessible> children;
    Answer answer(bus, owner, path, kAccessible, "GetChildren");
    const char *childOwner = nullptr;
    const char *childPath = nullptr;
    if (answer.enter('a', "(so)")) {
        while (answer.read("(so)", &childOwner, &childPath))
            children.emplace_back(bus, childOwner, childPath);
    }
    return children;
}

/// Where Debian's and others' packages keep what nobody calls by hand.
std::string helperProgram(const std::string &name)
{
    for (const char *folder : {"/usr/libexec/", "/usr/lib/at-spi2-core/", "/usr/lib/"}) {
        if (std::filesystem::exists(folder + name))
            return folder + name;
    }
    throw std::runtime_error("not installed: " + name);
}

} // namespace

std::string Accessible::textProperty(const char *name) const
{
    Answer answer(m_bus, m_owner, m_path, "org.freedesktop.DBus.Properties", "Get", "ss", kAccessible, name);
    return answer.enter('v', "s") ? answer.text() : std::string();
}

std::string Accessible::textAnswer(const char *method) const
{
    return Answer(m_bus, m_owner, m_path, kAccessible, method).text();
}

bool Accessible::exists() const
{
    return !role().empty() && role() != "invalid";
}

std::string Accessible::name() const
{
    return textProperty("Name");
}

std::string Accessible::description() const
{
    return textProperty("Description");
}

std::string Accessible::role() const
{
    return textAnswer("GetRoleName");
}

bool Accessible::is(State state) const
{
    constexpr unsigned kBits = 32;
    const auto number = static_cast<unsigned>(state);
    std::uint32_t words[2] = {0, 0};
    Answer answer(m_bus, m_owner, m_path, kAccessible, "GetState");
    if (!answer.enter('a', "u") || !answer.read("u", &words[0]) || !answer.read("u", &words[1]))
        return false;
    return (words[number / kBits] >> (number % kBits) & 1U) != 0;
}

std::vector<Accessible> Accessible::children() const
{
    return childrenOf(m_bus, m_owner, m_path);
}

std::string Accessible::label() const
{
    constexpr std::uint32_t kLabelledBy = 2;
    Answer answer(m_bus, m_owner, m_path, kAccessible, "GetRelationSet");
    if (!answer.enter('a', "(ua(so))"))
        return {};
    while (answer.enter('r', "ua(so)")) {
        std::uint32_t relation = 0;
        answer.read("u", &relation);
        const char *owner = nullptr;
        const char *path = nullptr;
        if (answer.enter('a', "(so)") && answer.read("(so)", &owner, &path) && relation == kLabelledBy)
            return Accessible(m_bus, owner, path).name();
        if (!answer.leave() || !answer.leave())
            return {};
    }
    return {};
}

Rectangle Accessible::extents() const
{
    constexpr std::uint32_t kOfTheScreen = 0;
    Rectangle area;
    Answer answer(m_bus, m_owner, m_path, "org.a11y.atspi.Component", "GetExtents", "u", kOfTheScreen);
    answer.read("(iiii)", &area.x, &area.y, &area.width, &area.height);
    return area;
}

std::string Accessible::text() const
{
    constexpr int kToTheEnd = -1;
    return Answer(m_bus, m_owner, m_path, "org.a11y.atspi.Text", "GetText", "ii", 0, kToTheEnd).text();
}

std::vector<std::string> Accessible::actions() const
{
    std::vector<std::string> names;
    Answer answer(m_bus, m_owner, m_path, kAction, "GetActions");
    const char *name = nullptr;
    const char *description = nullptr;
    const char *keys = nullptr;
    if (answer.enter('a', "(sss)")) {
        while (answer.read("(sss)", &name, &description, &keys))
            names.emplace_back(name);
    }
    return names;
}

bool Accessible::perform(const std::string &action) const
{
    const auto names = actions();
    const auto found = std::ranges::find(names, action);
    if (found == names.end())
        return false;
    return sd_bus_call_method_async(m_bus, nullptr, m_owner.c_str(), m_path.c_str(), kAction, "DoAction", nullptr,
                                    nullptr, "i", static_cast<int>(found - names.begin())) >= 0 &&
           sd_bus_flush(m_bus) >= 0;
}

bool Accessible::setText(const std::string &text) const
{
    Answer answer(m_bus, m_owner, m_path, "org.a11y.atspi.EditableText", "SetTextContents", "s", text.c_str());
    int accepted = 0;
    return answer.read("b", &accepted) && accepted != 0;
}

Accessible Accessible::find(const std::function<bool(const Accessible &)> &wanted) const
{
    for (const Accessible &child : children()) {
        if (wanted(child))
            return child;
        if (const Accessible below = child.find(wanted); below.m_bus)
            return below;
    }
    return {};
}

Accessible Accessible::find(std::string_view role, std::string_view name) const
{
    return find([&](const Accessible &each) { return each.role() == role && each.name() == name; });
}

std::vector<Accessible> Accessible::all(std::string_view role) const
{
    std::vector<Accessible> found;
    for (const Accessible &child : children()) {
        if (child.role() == role)
            found.push_back(child);
        const auto below = child.all(role);
        found.insert(found.end(), below.begin(), below.end());
    }
    return found;
}

std::string Accessible::described(int depth) const
{
    std::string line(static_cast<std::size_t>(depth) * 2, ' ');
    line.append(role()).append(" \"").append(name()).append("\"");
    if (const auto more = description(); !more.empty())
        line.append(" (").append(more).append(")");
    if (const auto written = text(); !written.empty())
        line.append(" text \"").append(written).append("\"");
    for (const auto &[state, word] : {std::pair{State::checked, " checked"},
                                      {State::focused, " focused"},
                                      {State::showing, " showing"},
                                      {State::enabled, " enabled"}})
        line.append(is(state) ? word : "");
    for (const auto &action : actions())
        line.append(" [").append(action).append("]");
    line.append("\n");
    for (const Accessible &child : children())
        line.append(child.described(depth + 1));
    return line;
}

AccessibilityBus::AccessibilityBus(const SessionBus &bus, const Environment &environment, std::optional<uid_t> user)
{
    const Launch launcher{.arguments = {helperProgram("at-spi-bus-launcher"), "--launch-immediately"},
                          .environment = environment,
                          .workingDirectory = {},
                          .user = user};
    m_launcher = std::make_unique<Process>(launcher);
    if (!waitUntil([&] { return bus.hasOwner("org.a11y.Bus") || !m_launcher->running(); }))
        throw std::runtime_error("the accessibility bus did not start:\n" + m_launcher->errors());
    const Finished answer = bus.call("org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus.GetAddress");
    const auto begin = answer.output.find('\'');
    const auto end = answer.output.find('\'', begin + 1);
    if (answer.status != 0 || begin == std::string::npos || end == std::string::npos)
        throw std::runtime_error("no accessibility bus: " + answer.errors + m_launcher->errors());
    const std::string address = answer.output.substr(begin + 1, end - begin - 1);

    require(sd_bus_new(&m_bus), "new");
    require(sd_bus_set_address(m_bus, address.c_str()), "address");
    require(sd_bus_set_bus_client(m_bus, 1), "client");
    require(sd_bus_start(m_bus), "start");
    require(sd_bus_set_method_call_timeout(m_bus,
                                           static_cast<std::uint64_t>(std::chrono::microseconds(patience()).count())),
            "time limit");
    const Accessible registry(m_bus, kRegistry, kRootPath);
    if (!waitUntil([&] { return registry.exists(); }))
        throw std::runtime_error("no registry of accessible programs:\n" + m_launcher->errors());
}

AccessibilityBus::~AccessibilityBus()
{
    sd_bus_close_unref(m_bus);
}

std::optional<pid_t> AccessibilityBus::processOf(const std::string &name) const
{
    Answer answer(m_bus, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                  "GetConnectionUnixProcessID", "s", name.c_str());
    std::uint32_t process = 0;
    if (!answer.read("u", &process))
        return std::nullopt;
    return static_cast<pid_t>(process);
}

std::optional<Accessible> AccessibilityBus::application(pid_t process) const
{
    std::optional<Accessible> found;
    const Accessible registry(m_bus, kRegistry, kRootPath);
    const bool announced = waitUntil([&] {
        for (const Accessible &each : registry.children()) {
            if (processOf(each.owner()) == process)
                found = each;
        }
        return found.has_value();
    });
    return announced ? found : std::nullopt;
}

} // namespace tallowmere::desktop
