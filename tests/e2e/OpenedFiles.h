// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <set>
#include <string>

namespace tallowmere {

/// Notes which files of a folder anybody opens, from its construction on.
class OpenedFiles final
{
public:
    /// Throws std::runtime_error when the kernel won't watch the folder.
    explicit OpenedFiles(const std::filesystem::path &folder);
    ~OpenedFiles();
    OpenedFiles(const OpenedFiles &) = delete;
    OpenedFiles &operator=(const OpenedFiles &) = delete;

    /// Names; the folder itself is not among them.
    [[nodiscard]] const std::set<std::string> &soFar();

private:
    int m_watch;
    std::set<std::string> m_names;
};

} // namespace tallowmere
