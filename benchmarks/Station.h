// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "benchmarks/ApplicationClient.h"
#include "benchmarks/ScreenWatch.h"
#include "tests/desktop/Input.h"
#include "tests/desktop/SessionBus.h"
#include "tests/desktop/Windows.h"

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tallowmere::bench {

/// How a user has set things up.
enum class Mode
{
    maximised, ///< the window manager maximises every new window; the program leaves its window's size alone
    defaults,  ///< the program's settings untouched: the window takes the picture's size, within 0.25 s
};
inline constexpr std::array kModes{Mode::maximised, Mode::defaults};
[[nodiscard]] std::string nameOf(Mode mode);

/// A desk to measure at: a screen of 1920 x 1080 with a window manager, a session bus, a user's folders.
///
/// Throws std::runtime_error when the desktop does not come up.
class Station final
{
public:
    explicit Station(Mode mode);
    ~Station();
    Station(const Station &) = delete;
    Station &operator=(const Station &) = delete;

    const Mode mode;
    const desktop::VirtualDesktop desktop;
    const ScreenWatch watch{desktop};
    const desktop::Input input{desktop};
    const desktop::Windows windows{desktop};

    /// Returns once nothing of an earlier program is to be seen in the middle of the screen.
    void waitForBareScreen() const;
    /// Starts a program with this desk's display, bus and folders.
    [[nodiscard]] std::unique_ptr<desktop::Process> start(const std::vector<std::string> &command) const;
    /// Milliseconds from before the start until @p colour is seen. The program ends afterwards.
    [[nodiscard]] std::optional<double> timeToVisible(const std::vector<std::string> &command,
                                                      const desktop::Colour &colour) const;
    /// A program that shows @p colour, is at rest and has the keyboard; null when it does not come to that.
    [[nodiscard]] std::unique_ptr<desktop::Process> startAndRest(const std::vector<std::string> &command,
                                                                 const desktop::Colour &colour) const;
    /// Returns once @p process has not used the processor for a while.
    void waitForRest(const desktop::Process &process) const;
    /// Milliseconds from the key press until @p colour is seen.
    [[nodiscard]] std::optional<double> timeKey(std::uint32_t key, const desktop::Colour &colour) const;

    [[nodiscard]] const ApplicationClient &application() const { return *m_application; }
    /// Ends the program that answers on the bus, which the bus has started, and waits until it is gone.
    void endApplication() const;

private:
    void startWindowManager();

    desktop::UserFolders m_folders;
    desktop::Environment m_environment;
    std::unique_ptr<desktop::Process> m_windowManager;
    std::unique_ptr<desktop::SessionBus> m_bus;
    std::unique_ptr<ApplicationClient> m_application;
};

} // namespace tallowmere::bench
