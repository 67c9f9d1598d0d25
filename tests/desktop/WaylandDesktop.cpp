// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/desktop/WaylandDesktop.h"

#include <stdexcept>

namespace tallowmere::desktop {

WaylandDesktop::WaylandDesktop(const std::filesystem::path &runtimeFolder, Shell shell)
    : m_environment(m_folders.environment())
{
    m_environment["XDG_RUNTIME_DIR"] = runtimeFolder;
    m_compositor = std::make_unique<Process>(
        Launch{// "debug" is what lets anybody take a picture of the output.
               .arguments = {"weston", "--backend=headless-backend.so", "--use-pixman", "--no-config", "--idle-time=0",
                             shell == Shell::kiosk ? "--shell=kiosk-shell.so" : "--shell=desktop-shell.so", "--debug",
                             "--width=1280", "--height=800", "--socket=" + name()},
               .environment = m_environment,
               .workingDirectory = m_folders.root(),
               .user = {}});
    const auto ready = [&] { return !m_compositor->running() || std::filesystem::exists(runtimeFolder / name()); };
    if (!waitUntil(ready) || !m_compositor->running())
        throw std::runtime_error("the compositor did not start:\n" + m_compositor->output() + m_compositor->errors());
    m_environment["WAYLAND_DISPLAY"] = name();
}

Picture WaylandDesktop::capture() const
{
    // The tool names its file after the time, into the folder where it runs.
    const TemporaryFolder folder;
    const Finished shot = run({.arguments = {"weston-screenshooter"},
                               .environment = m_environment,
                               .workingDirectory = folder.path(),
                               .user = {}});
    for (const auto &entry : std::filesystem::directory_iterator(folder.path()))
        return readPng(entry.path());
    throw std::runtime_error("no picture of the output: " + shot.errors);
}

} // namespace tallowmere::desktop
