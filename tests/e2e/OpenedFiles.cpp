// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/e2e/OpenedFiles.h"

#include <sys/inotify.h>
#include <unistd.h>

#include <array>
#include <cstring>
#include <stdexcept>

namespace tallowmere {

OpenedFiles::OpenedFiles(const std::filesystem::path &folder) : m_watch(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC))
{
    if (m_watch < 0 || ::inotify_add_watch(m_watch, folder.c_str(), IN_OPEN) < 0)
        throw std::runtime_error("cannot watch " + folder.string());
}

OpenedFiles::~OpenedFiles()
{
    ::close(m_watch);
}

const std::set<std::string> &OpenedFiles::soFar()
{
    std::array<char, 65536> buffer{};
    for (ssize_t size = 0; (size = ::read(m_watch, buffer.data(), buffer.size())) > 0;) {
        for (ssize_t at = 0; at < size;) {
            inotify_event event{};
            std::memcpy(&event, buffer.data() + at, sizeof event);
            if (event.len > 0)
                m_names.insert(buffer.data() + at + sizeof event);
            at += static_cast<ssize_t>(sizeof event + event.len);
        }
    }
    return m_names;
}

} // namespace tallowmere
