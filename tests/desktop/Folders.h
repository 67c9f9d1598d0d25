// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "tests/desktop/Process.h"

#include <cstddef>
#include <filesystem>
#include <span>
#include <string_view>

namespace tallowmere::desktop {

/// A temporary folder, removed with this object whatever modes its contents have.
class TemporaryFolder final
{
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder &) = delete;
    TemporaryFolder &operator=(const TemporaryFolder &) = delete;

    [[nodiscard]] const std::filesystem::path &path() const { return m_path; }

private:
    std::filesystem::path m_path;
};

/// A user's folders on an empty machine: home, configuration, data, cache, state and run time.
class UserFolders final
{
public:
    /// @p owner: whose the folders are; only root can give them away.
    explicit UserFolders(std::optional<uid_t> owner = std::nullopt);

    [[nodiscard]] const std::filesystem::path &root() const { return m_folder.path(); }
    [[nodiscard]] std::filesystem::path home() const { return root() / "home"; }
    [[nodiscard]] std::filesystem::path config() const { return root() / "config"; }
    [[nodiscard]] std::filesystem::path data() const { return root() / "data"; }
    /// A folder for pictures, inside the home.
    [[nodiscard]] std::filesystem::path pictures() const { return home() / "Pictures"; }
    /// HOME, the XDG_* folders, PATH and a UTF-8 locale; no display and no bus.
    [[nodiscard]] Environment environment() const;

private:
    TemporaryFolder m_folder;
};

void writeFile(const std::filesystem::path &file, std::span<const std::byte> bytes);
void writeFile(const std::filesystem::path &file, std::string_view text);
/// Empty when it can't be read.
[[nodiscard]] std::string readFile(const std::filesystem::path &file);

} // namespace tallowmere::desktop
