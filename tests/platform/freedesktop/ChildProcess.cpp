// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/platform/freedesktop/ChildProcess.h"

#include <gtest/gtest.h>

#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstring>
#include <fstream>
#include <vector>

namespace tallowmere::test {
namespace {

constexpr char kFailed = 'F';
constexpr char kRefused = 'R';

[[noreturn]] void report(int pipe, char kind, const std::string &text)
{
    const std::string message = kind + text;
    [[maybe_unused]] const ssize_t size = ::write(pipe, message.data(), message.size());
    _exit(1);
}

std::string readToEnd(int pipe)
{
    std::string text;
    std::array<char, 4096> buffer{};
    for (ssize_t size = 0; (size = ::read(pipe, buffer.data(), buffer.size())) > 0;)
        text.append(buffer.data(), static_cast<std::size_t>(size));
    return text;
}

std::string because(const std::string &what)
{
    return what + ": " + std::strerror(errno);
}

void writeOnce(const char *file, const std::string &text)
{
    std::ofstream(file) << text;
}

int waitFor(pid_t child)
{
    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    return status;
}

} // namespace

void inChild(const std::function<void()> &work)
{
    int pipe[2];
    ASSERT_EQ(::pipe(pipe), 0);
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        ::close(pipe[0]);
        // Writing itself may be what is refused.
        const int kept = pipe[1];
        try {
            work();
        } catch (const ChildFailure &failure) {
            report(kept, kFailed, failure.what());
        } catch (const ChildRefused &refusal) {
            report(kept, kRefused, refusal.what());
        }
        _exit(0);
    }
    ::close(pipe[1]);
    const std::string text = readToEnd(pipe[0]);
    ::close(pipe[0]);
    const int status = waitFor(child);
    if (!text.empty() && text.front() == kRefused)
        GTEST_SKIP() << text.substr(1);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0)
        << (text.empty() ? "wait status " + std::to_string(status) : text.substr(1));
}

void refuseSystemCalls(std::initializer_list<RefusedCall> calls)
{
    std::vector<sock_filter> filter;
    filter.push_back(BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)));
    for (const RefusedCall &call : calls) {
        filter.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, static_cast<__u32>(call.number), 0, 1));
        filter.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | static_cast<__u32>(call.error)));
    }
    filter.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW));
    sock_fprog program{static_cast<unsigned short>(filter.size()), filter.data()};
    if (::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 || ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) != 0)
        throw ChildRefused(because("system calls can't be filtered here"));
}

void enterPrivateMounts()
{
    const std::string user = std::to_string(::geteuid());
    const std::string group = std::to_string(::getegid());
    if (::unshare(CLONE_NEWNS) != 0) {
        if (::unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0)
            throw ChildRefused(because("mounts can't be made here"));
        writeOnce("/proc/self/setgroups", "deny");
        writeOnce("/proc/self/uid_map", user + ' ' + user + " 1");
        writeOnce("/proc/self/gid_map", group + ' ' + group + " 1");
    }
    if (::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0)
        throw ChildRefused(because("mounts can't be made private here"));
}

std::optional<bool> killedAtSystemCall(int stop, const std::function<void()> &work)
{
    const pid_t child = ::fork();
    if (child == 0) {
        if (::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0)
            _exit(99);
        std::raise(SIGSTOP);
        work();
        _exit(0);
    }
    int status = waitFor(child);
    if (!WIFSTOPPED(status))
        return std::nullopt;
    ::ptrace(PTRACE_SETOPTIONS, child, nullptr, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL);
    constexpr int kSystemCallStop = SIGTRAP | 0x80;
    // Every call stops twice: on its way in and out.
    for (int stops = 0; stops < 2 * stop - 1;) {
        ::ptrace(PTRACE_SYSCALL, child, nullptr, nullptr);
        status = waitFor(child);
        if (!WIFSTOPPED(status))
            return false;
        if (WSTOPSIG(status) == kSystemCallStop)
            ++stops;
    }
    ::kill(child, SIGKILL);
    waitFor(child);
    return true;
}

} // namespace tallowmere::test
