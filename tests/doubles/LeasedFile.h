// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "support/FileDescriptor.h"

#include <fcntl.h>

#include <csignal>
#include <utility>

namespace tallowmere::test {

/// Keeps everybody else from opening a file until it is released, as a file server does and a slow disk might.
///
/// The file is this user's own and open nowhere else. The kernel ends a lease by force after 45 seconds.
class LeasedFile final
{
public:
    explicit LeasedFile(const char *path) : m_file(::open(path, O_RDWR | O_CLOEXEC))
    {
        // Who wants to open the file raises a signal; by default one that ends the process.
        m_held = ::fcntl(m_file.number(), F_SETSIG, SIGURG) == 0 && ::fcntl(m_file.number(), F_SETLEASE, F_WRLCK) == 0;
    }
    ~LeasedFile() { release(); }
    LeasedFile(const LeasedFile &) = delete;
    LeasedFile &operator=(const LeasedFile &) = delete;

    /// False where the file system knows no leases.
    [[nodiscard]] bool held() const { return m_held; }
    void release()
    {
        if (std::exchange(m_held, false))
            ::fcntl(m_file.number(), F_SETLEASE, F_UNLCK);
    }

private:
    FileDescriptor m_file;
    bool m_held = false;
};

} // namespace tallowmere::test
