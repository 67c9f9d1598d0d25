// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <initializer_list>
#include <optional>
#include <stdexcept>
#include <string>

namespace tallowmere::test {

/// What a test tells of a child process, where googletest's own checks would go unheard.
struct ChildFailure : std::runtime_error
{
    using std::runtime_error::runtime_error;
};

/// This machine does not let the child do what the test needs.
struct ChildRefused : std::runtime_error
{
    using std::runtime_error::runtime_error;
};

inline void require(bool condition, const std::string &what)
{
    if (!condition)
        throw ChildFailure(what);
}

/// Runs @p work in a child of this process. A ChildFailure fails the test and a ChildRefused skips it, each with its
/// text.
void inChild(const std::function<void()> &work);

struct RefusedCall
{
    long number; ///< SYS_…
    int error;
};
/// From now on the kernel answers these system calls of this process with the error. There is no way back. Throws
/// ChildRefused.
void refuseSystemCalls(std::initializer_list<RefusedCall> calls);

/// From now on this process may mount, and nobody else sees it. Throws ChildRefused.
void enterPrivateMounts();

/// Runs @p work in a child that is killed when it has entered its @p stop-th system call, before the kernel carries
/// that out. False when it came to its end before; nothing when it can't be traced here.
[[nodiscard]] std::optional<bool> killedAtSystemCall(int stop, const std::function<void()> &work);

} // namespace tallowmere::test
