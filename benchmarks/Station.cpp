// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "benchmarks/Station.h"

#include "benchmarks/PhotoStore.h"
#include "tests/desktop/Replies.h"

#include <signal.h>

#include <algorithm>
#include <iostream>
#include <stdexcept>

namespace tallowmere::bench {

using desktop::waitUntil;

namespace {

constexpr std::chrono::milliseconds kRest{400};

/// No panels: the middle of a maximised window is the middle of the screen.
constexpr desktop::DisplayOptions kWholeScreen{
    .width = 1920, .height = 1080, .marginTop = 0, .marginBottom = 0, .marginLeft = 0, .marginRight = 0};

constexpr const char *kInTheMiddle = "<position force=\"yes\"><x>center</x><y>center</y></position>";

std::string rule(const std::string &windowClass, const std::string &effect)
{
    return "<application class=\"" + windowClass + "\" type=\"normal\">" + effect + "</application>";
}

std::string windowManagerConfiguration(Mode mode)
{
    // In the other mode each window has its own size. Some of the peers put theirs into a corner: only in the middle of
    // the screen can all be compared.
    const std::string rules = mode == Mode::maximised ? rule("*", "<maximized>yes</maximized>")
                                                      : rule("feh", kInTheMiddle) + rule("Geeqie", kInTheMiddle) +
                                                            rule("qimgv", kInTheMiddle);
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>"
           "<openbox_config xmlns=\"http://openbox.org/3.4/rc\">"
           "<focus><focusNew>yes</focusNew></focus>"
           "<placement><policy>Smart</policy><center>yes</center></placement>"
           "<theme><name>Clearlooks</name><titleLayout>NLIMC</titleLayout></theme>"
           "<desktops><number>1</number><popupTime>0</popupTime></desktops>"
           "<keyboard/><mouse/><applications>" +
           rules + "</applications></openbox_config>\n";
}

/// What a first launch leaves behind is there already, so that every round is a later one.
std::string settingsOf(Mode mode)
{
    const std::string common = "[General]\nDefaultFileAssociationsSet=true\n";
    return mode == Mode::maximised ? common + "AutoResizeToImageSize=false\n" : common;
}

} // namespace

std::string nameOf(Mode mode)
{
    return mode == Mode::maximised ? "maximised" : "default settings";
}

Station::Station(Mode ofUser) : mode(ofUser), desktop(kWholeScreen), m_environment(m_folders.environment())
{
    m_environment["DISPLAY"] = desktop.name();
    startWindowManager();
    std::filesystem::create_directories(m_folders.config() / "tallowmere");
    desktop::writeFile(m_folders.config() / "tallowmere" / "tallowmere.ini", settingsOf(mode));
    m_bus = std::make_unique<desktop::SessionBus>(m_environment);
    m_environment["DBUS_SESSION_BUS_ADDRESS"] = m_bus->address();
    m_bus->install(ApplicationClient::kName, std::string("[D-BUS Service]\nName=") + ApplicationClient::kName +
                                                 "\nExec=" TALLOWMERE_PROGRAM "\n");
    m_application = std::make_unique<ApplicationClient>(m_bus->address());
}

Station::~Station()
{
    // What the bus has started is its child and not ours.
    endApplication();
}

void Station::startWindowManager()
{
    const auto manager = [this] {
        return desktop::property<std::uint32_t>(desktop, desktop.x11Screen().root, "_NET_SUPPORTING_WM_CHECK");
    };
    const auto before = manager();
    const auto file = m_folders.root() / "openbox.xml";
    desktop::writeFile(file, windowManagerConfiguration(mode));
    m_windowManager = start({"openbox", "--replace", "--sm-disable", "--config-file", file});
    if (!waitUntil([&] { return !manager().empty() && manager() != before; }))
        throw std::runtime_error("the window manager did not start:\n" + m_windowManager->errors());
}

std::unique_ptr<desktop::Process> Station::start(const std::vector<std::string> &command) const
{
    return std::make_unique<desktop::Process>(
        desktop::Launch{.arguments = command, .environment = m_environment, .workingDirectory = {}, .user = {}});
}

void Station::waitForBareScreen() const
{
    const auto bare = [this] {
        return std::ranges::none_of(kMarkers, [this](const auto &colour) { return watch.shows(colour); });
    };
    if (!waitUntil(bare))
        throw std::runtime_error("a window of an earlier program stays on the screen");
}

std::optional<double> Station::timeToVisible(const std::vector<std::string> &command,
                                             const desktop::Colour &colour) const
{
    waitForBareScreen();
    const auto begin = Clock::now();
    const auto process = start(command);
    const auto passed = watch.until(colour, begin, [&] { return !process->running(); });
    if (!passed) {
        std::cerr << command.front() << ": not shown; " << (process->running() ? "still runs" : "has ended") << '\n'
                  << process->errors();
    }
    return passed;
}

std::unique_ptr<desktop::Process> Station::startAndRest(const std::vector<std::string> &command,
                                                        const desktop::Colour &colour) const
{
    waitForBareScreen();
    auto process = start(command);
    if (!watch.until(colour, Clock::now(), [&] { return !process->running(); }))
        return nullptr;
    const bool focused = waitUntil([&] {
        const auto own = windows.ofProcess(process->id());
        return !own.empty() && windows.hasFocus(own.front());
    });
    if (!focused)
        return nullptr;
    waitForRest(*process);
    return process;
}

void Station::waitForRest(const desktop::Process &process) const
{
    auto since = Clock::now();
    auto ticks = process.processorTicks();
    const bool rested = waitUntil([&] {
        if (const auto now = process.processorTicks(); now != ticks) {
            ticks = now;
            since = Clock::now();
        }
        return Clock::now() - since >= kRest;
    });
    if (!rested)
        throw std::runtime_error("a program never came to rest");
}

std::optional<double> Station::timeKey(std::uint32_t key, const desktop::Colour &colour) const
{
    const auto begin = Clock::now();
    input.press(key);
    return watch.until(colour, begin);
}

void Station::endApplication() const
{
    const auto process = m_application->process();
    if (!process)
        return;
    ::kill(*process, SIGTERM);
    const auto gone = [&] { return m_application->process() != process; };
    if (!waitUntil(gone, std::chrono::seconds{5})) {
        ::kill(*process, SIGKILL);
        [[maybe_unused]] const bool ended = waitUntil(gone);
    }
}

} // namespace tallowmere::bench
