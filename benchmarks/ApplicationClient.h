// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <sys/types.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

struct sd_bus;

namespace tallowmere::bench {

/// Talks to the program over the session bus as a file manager does: from a process that is connected already.
///
/// Throws std::runtime_error when the bus can't be reached or spoken to.
class ApplicationClient final
{
public:
    explicit ApplicationClient(const std::string &busAddress);

    /// org.freedesktop.Application.Open with one file. Returns once the message is sent.
    void open(const std::filesystem::path &file) const;
    /// Who answers to the program's name; nothing when nobody does.
    [[nodiscard]] std::optional<pid_t> process() const;

    static constexpr const char *kName = "app.tallowmere.Tallowmere";

private:
    struct Close
    {
        void operator()(sd_bus *bus) const;
    };
    std::unique_ptr<sd_bus, Close> m_bus;
};

} // namespace tallowmere::bench
