// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/e2e/TaggedFile.h"

#include <sys/xattr.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <system_error>

namespace tallowmere {

namespace fs = std::filesystem;

namespace {

/// The error's number, or 0.
int setTags(const fs::path &file, std::string_view tags)
{
    return ::setxattr(file.c_str(), "user.xdg.tags", tags.data(), tags.size(), 0) == 0 ? 0 : errno;
}

} // namespace

TaggedFile::TaggedFile(const fs::path &file, std::string_view tags) : m_error(setTags(file, tags))
{
    std::string folder = "/var/tmp/tallowmere-XXXXXX";
    if (m_error == 0 || !::mkdtemp(folder.data()))
        return;
    m_folder = folder;
    const fs::path moved = m_folder / file.filename();
    fs::copy_file(file, moved);
    m_error = setTags(moved, tags);
    fs::remove(file);
    fs::create_symlink(moved, file);
}

TaggedFile::~TaggedFile()
{
    std::error_code ignored;
    if (!m_folder.empty())
        fs::remove_all(m_folder, ignored);
}

std::string TaggedFile::whyNot() const
{
    return std::string("no extended attributes where temporary files lie: ") + std::strerror(m_error);
}

} // namespace tallowmere
