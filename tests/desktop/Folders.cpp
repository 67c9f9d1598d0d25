// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/desktop/Folders.h"

#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <utility>

namespace tallowmere::desktop {
namespace fs = std::filesystem;

TemporaryFolder::TemporaryFolder()
{
    std::string name = fs::temp_directory_path() / "tallowmere-XXXXXX";
    if (!::mkdtemp(name.data()))
        throw std::runtime_error("no temporary folder");
    m_path = name;
    // Another user may be the one who works in it.
    fs::permissions(m_path, fs::perms{0755});
}

TemporaryFolder::~TemporaryFolder()
{
    // A folder that a test has closed to its owner has to be opened before it can be emptied.
    std::error_code ignored;
    for (auto entry = fs::recursive_directory_iterator(m_path, fs::directory_options::skip_permission_denied, ignored);
         entry != fs::recursive_directory_iterator(); entry.increment(ignored)) {
        if (entry->symlink_status(ignored).type() == fs::file_type::directory)
            fs::permissions(entry->path(), fs::perms::owner_all, fs::perm_options::add, ignored);
    }
    fs::remove_all(m_path, ignored);
}

UserFolders::UserFolders(std::optional<uid_t> owner)
{
    for (const fs::path &folder :
         {home(), config(), data(), root() / "cache", root() / "state", root() / "run", pictures()}) {
        fs::create_directories(folder);
        if (owner && ::geteuid() == 0 && ::chown(folder.c_str(), *owner, *owner) != 0)
            throw std::runtime_error("cannot give away " + folder.string());
    }
    fs::permissions(root() / "run", fs::perms::owner_all);
}

Environment UserFolders::environment() const
{
    return {
        {"PATH", "/usr/local/bin:/usr/bin:/bin:/usr/sbin:/sbin"},
        {"LANG", "C.UTF-8"},
        {"HOME", home()},
        {"XDG_CONFIG_HOME", config()},
        {"XDG_DATA_HOME", data()},
        {"XDG_CACHE_HOME", root() / "cache"},
        {"XDG_STATE_HOME", root() / "state"},
        {"XDG_RUNTIME_DIR", root() / "run"},
    };
}

void writeFile(const fs::path &file, std::span<const std::byte> bytes)
{
    std::ofstream stream(file, std::ios::binary | std::ios::trunc);
    stream.write(reinterpret_cast<const char *>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    if (!stream.flush())
        throw std::runtime_error("cannot write " + file.string());
}

void writeFile(const fs::path &file, std::string_view text)
{
    writeFile(file, std::as_bytes(std::span(text)));
}

std::string readFile(const fs::path &file)
{
    std::ostringstream text;
    text << std::ifstream(file, std::ios::binary).rdbuf();
    return std::move(text).str();
}

} // namespace tallowmere::desktop
