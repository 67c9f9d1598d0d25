// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "tests/desktop/Waiting.h"

#include <sys/types.h>

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace tallowmere::desktop {

using Environment = std::map<std::string, std::string>;

/// The user id of an ordinary user that exists everywhere ("nobody").
inline constexpr uid_t kOrdinaryUser = 65534;

/// What to start, and how.
struct Launch
{
    std::vector<std::string> arguments;     ///< the program first; looked up in PATH when it holds no slash
    Environment environment;                ///< the whole of it: nothing is inherited
    std::filesystem::path workingDirectory; ///< empty: this process's own
    std::optional<uid_t> user;              ///< only root can become somebody else
    int inheritedDescriptor = -1;           ///< stays open in the program under the same number
};

/// A running program with its output, in a process group of its own. Ends with this object, children included.
///
/// Throws std::runtime_error when it can't be started. Threads: one at a time.
class Process final
{
public:
    explicit Process(const Launch &launch);
    ~Process();
    Process(const Process &) = delete;
    Process &operator=(const Process &) = delete;

    [[nodiscard]] pid_t id() const { return m_id; }
    [[nodiscard]] bool running();
    /// The exit status, 128 + the signal when one ended it; nothing when it still runs after @p limit.
    [[nodiscard]] std::optional<int> waitForExit(std::chrono::milliseconds limit = patience());
    /// Asks it to end and waits; kills what does not listen.
    void end();
    /// What it wrote so far; complete once it has ended.
    [[nodiscard]] std::string output() const;
    [[nodiscard]] std::string errors() const;
    [[nodiscard]] bool waitForOutput(const std::string &text, std::chrono::milliseconds limit = patience()) const;

    /// The most memory it ever had, in bytes; 0 once it has ended.
    [[nodiscard]] std::size_t peakMemory() const;
    /// Processor time used so far, in clock ticks.
    [[nodiscard]] unsigned long long processorTicks() const;

private:
    pid_t m_id = -1;
    std::optional<int> m_status;
    bool m_reaped = false;
    std::filesystem::path m_folder;
};

/// Runs a program to its end. Throws std::runtime_error when it can't be started or takes too long.
struct Finished
{
    int status = 0;
    std::string output;
    std::string errors;
};
[[nodiscard]] Finished run(const Launch &launch);

} // namespace tallowmere::desktop
