// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <linux/capability.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstdio>

namespace tallowmere::test {

/// Takes from the process all that root may do beyond an ordinary user: permission bits bind it and its threads can't
/// become more important. There is no way back, so it is for child processes; one that fails ends with status 99.
inline void becomeOrdinaryUser()
{
    __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct nothing[2]{};
    const rlimit neverLowerNice{0, 0};
    if (::syscall(SYS_capset, &header, nothing) != 0 || ::setrlimit(RLIMIT_NICE, &neverLowerNice) != 0) {
        std::perror("becoming an ordinary user");
        _exit(99);
    }
}

} // namespace tallowmere::test
