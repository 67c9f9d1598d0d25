// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "tests/desktop/Folders.h"
#include "tests/desktop/Process.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tallowmere::desktop {

/// A private session bus, open to every user of this machine. Ends with this object.
///
/// Throws std::runtime_error when the bus does not come up or a question about it goes unanswered.
class SessionBus final
{
public:
    /// @p environment is what programs started by the bus get; they find this bus's address in it, too.
    explicit SessionBus(Environment environment);
    ~SessionBus();
    SessionBus(const SessionBus &) = delete;
    SessionBus &operator=(const SessionBus &) = delete;

    [[nodiscard]] const std::string &address() const { return m_address; }
    /// Makes a service startable. @p description: the text of its .service file.
    void install(const std::string &name, const std::string &description) const;

    /// Calls a method; @p arguments are written as GVariant texts. The status is not 0 when the call failed.
    [[nodiscard]] Finished call(const std::string &name, const std::string &path, const std::string &method,
                                const std::vector<std::string> &arguments = {}) const;
    [[nodiscard]] bool hasOwner(const std::string &name) const;
    [[nodiscard]] std::optional<pid_t> processOf(const std::string &name) const;

private:
    TemporaryFolder m_folder;
    Environment m_environment;
    std::string m_address;
    std::unique_ptr<Process> m_daemon;
};

} // namespace tallowmere::desktop
