// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
//
// window_picture [--config FOLDER] PICTURE PROGRAM [ARGUMENT...]
//
// Runs a program on a private display, and writes a PNG of its window once the
// program rests and the window no longer changes. Exits 0 only when it did.

#include "tests/desktop/Screen.h"
#include "tests/desktop/Windows.h"

#include <cstdlib>
#include <iostream>
#include <stdexcept>

namespace {

using namespace tallowmere::desktop;

struct Task
{
    std::string config;
    std::string picture;
    std::vector<std::string> command;
};

Task parse(int count, char **arguments)
{
    std::vector<std::string> words(arguments + 1, arguments + count);
    Task task;
    if (words.size() > 2 && words.front() == "--config") {
        task.config = words[1];
        words.erase(words.begin(), words.begin() + 2);
    }
    if (words.size() < 2)
        throw std::runtime_error("usage: window_picture [--config FOLDER] PICTURE PROGRAM [ARGUMENT...]");
    task.picture = words.front();
    task.command.assign(words.begin() + 1, words.end());
    return task;
}

/// Settings that change how a program looks may be tried from outside.
void passOn(Environment &environment)
{
    for (const char *name :
         {"LANG", "LC_ALL", "QT_SCALE_FACTOR", "QT_STYLE_OVERRIDE", "QT_QPA_PLATFORMTHEME", "GTK_THEME"}) {
        if (const char *value = std::getenv(name))
            environment[name] = value;
    }
}

/// The window's picture, as soon as neither it nor the program's use of the processor has changed for a second.
Picture settledPicture(const VirtualDesktop &desktop, Process &program, WindowId window)
{
    const Screen screen(desktop);
    const Windows windows(desktop);
    constexpr auto kRest = std::chrono::seconds{1};
    auto since = std::chrono::steady_clock::now();
    Picture last;
    unsigned long long ticks = 0;
    const bool settled = waitUntil([&] {
        const auto now = program.processorTicks();
        const Picture picture = screen.capture(windows.frame(window));
        if (now != ticks || picture != last || !program.running()) {
            since = std::chrono::steady_clock::now();
            ticks = now;
            last = picture;
        }
        return !last.pixels.empty() && std::chrono::steady_clock::now() - since >= kRest;
    });
    if (!settled)
        throw std::runtime_error("the window never came to rest");
    return last;
}

void carryOut(const Task &task)
{
    const VirtualDesktop desktop;
    const UserFolders folders;
    Launch launch{.arguments = task.command, .environment = folders.environment(), .workingDirectory = {}, .user = {}};
    launch.environment["DISPLAY"] = desktop.name();
    launch.environment["DBUS_SESSION_BUS_ADDRESS"] = "unix:path=" + (folders.root() / "no-bus").string();
    if (!task.config.empty())
        launch.environment["XDG_CONFIG_HOME"] = task.config;
    passOn(launch.environment);
    Process program(launch);
    const Windows windows(desktop);
    const bool shown = waitUntil([&] { return !program.running() || !windows.ofProcess(program.id()).empty(); });
    if (!shown || !program.running())
        throw std::runtime_error("no window appeared\n" + program.errors());
    const Picture picture = settledPicture(desktop, program, windows.ofProcess(program.id()).front());
    program.end();
    std::cout << program.output() << std::flush;
    std::cerr << program.errors();
    writePng(picture, task.picture);
}

} // namespace

int main(int count, char **arguments)
{
    try {
        carryOut(parse(count, arguments));
        return EXIT_SUCCESS;
    } catch (const std::exception &error) {
        std::cerr << "window_picture: " << error.what() << '\n';
        return EXIT_FAILURE;
    }
}
