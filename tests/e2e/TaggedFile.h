// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace tallowmere {

/// Gives a file the tags of a file manager. Where its file system takes none, as a temporary one may, the file moves to
/// one that lasts, for as long as this object lives, and a link takes its place.
class TaggedFile final
{
public:
    TaggedFile(const std::filesystem::path &file, std::string_view tags);
    ~TaggedFile();
    TaggedFile(const TaggedFile &) = delete;
    TaggedFile &operator=(const TaggedFile &) = delete;

    /// False: neither file system takes them.
    [[nodiscard]] bool tagged() const { return m_error == 0; }
    [[nodiscard]] std::string whyNot() const;

private:
    std::filesystem::path m_folder; ///< where the file has moved; empty: nowhere
    int m_error;
};

} // namespace tallowmere
