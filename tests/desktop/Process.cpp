// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/desktop/Process.h"

#include "tests/desktop/Folders.h"

#include <fcntl.h>
#include <grp.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>

namespace tallowmere::desktop {
namespace {

std::filesystem::path makeFolder()
{
    std::string name = std::filesystem::temp_directory_path() / "tallowmere-process-XXXXXX";
    if (!::mkdtemp(name.data()))
        throw std::runtime_error("no temporary folder");
    return name;
}

int openForWriting(const std::filesystem::path &file)
{
    const int descriptor = ::open(file.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | O_APPEND, 0600);
    if (descriptor < 0)
        throw std::runtime_error("cannot write " + file.string());
    return descriptor;
}

std::vector<char *> pointers(std::vector<std::string> &texts)
{
    std::vector<char *> result;
    result.reserve(texts.size() + 1);
    for (std::string &text : texts)
        result.push_back(text.data());
    result.push_back(nullptr);
    return result;
}

/// Between fork and exec: only calls that are safe there.
struct Child
{
    char *const *arguments;
    char *const *environment;
    const char *workingDirectory;
    int output;
    int errors;
    int inherited;
    std::optional<uid_t> user;
    pid_t parent;

    [[noreturn]] void become(int failure) const
    {
        ::setpgid(0, 0);
        const int nothing = ::open("/dev/null", O_RDONLY);
        ::dup2(nothing, STDIN_FILENO);
        ::dup2(output, STDOUT_FILENO);
        ::dup2(errors, STDERR_FILENO);
        if (inherited >= 0)
            ::fcntl(inherited, F_SETFD, 0);
        bool ready = !workingDirectory || ::chdir(workingDirectory) == 0;
        if (user && ::geteuid() == 0) {
            ready = ready && ::setgroups(0, nullptr) == 0 && ::setresgid(*user, *user, *user) == 0 &&
                    ::setresuid(*user, *user, *user) == 0;
        }
        // A test that is itself killed leaves no servers behind. Asked for after the change of user, which forgets it.
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (ready && ::getppid() == parent)
            ::execvpe(arguments[0], arguments, environment);
        const int error = errno;
        [[maybe_unused]] const auto written = ::write(failure, &error, sizeof error);
        ::_exit(127);
    }
};

int statusOf(const siginfo_t &ended)
{
    return ended.si_code == CLD_EXITED ? ended.si_status : 128 + ended.si_status;
}

} // namespace

Process::Process(const Launch &launch) : m_folder(makeFolder())
{
    auto arguments = launch.arguments;
    std::vector<std::string> environment;
    for (const auto &[name, value] : launch.environment)
        environment.push_back(name + '=' + value);
    const auto argumentPointers = pointers(arguments);
    const auto environmentPointers = pointers(environment);

    int failure[2];
    if (::pipe2(failure, O_CLOEXEC) != 0)
        throw std::runtime_error("no pipe");
    const int output = openForWriting(m_folder / "output");
    const int errors = openForWriting(m_folder / "errors");
    const std::string directory = launch.workingDirectory;
    const Child child{argumentPointers.data(),
                      environmentPointers.data(),
                      directory.empty() ? nullptr : directory.c_str(),
                      output,
                      errors,
                      launch.inheritedDescriptor,
                      launch.user,
                      ::getpid()};
    m_id = ::fork();
    if (m_id == 0)
        child.become(failure[1]);
    for (const int descriptor : {output, errors, failure[1]})
        ::close(descriptor);
    int error = 0;
    const auto received = m_id < 0 ? ssize_t{0} : ::read(failure[0], &error, sizeof error);
    ::close(failure[0]);
    if (m_id < 0 || received > 0) {
        if (m_id > 0)
            ::waitpid(m_id, nullptr, 0);
        std::filesystem::remove_all(m_folder);
        throw std::runtime_error("cannot start " + launch.arguments.front() + ": " + std::strerror(error));
    }
}

Process::~Process()
{
    end();
    std::error_code ignored;
    std::filesystem::remove_all(m_folder, ignored);
}

bool Process::running()
{
    if (m_status)
        return false;
    // Left unreaped until end(): so long its id, and with it its group's, belongs to nobody else.
    siginfo_t ended{};
    if (::waitid(P_PID, static_cast<id_t>(m_id), &ended, WEXITED | WNOHANG | WNOWAIT) != 0 || ended.si_pid != m_id)
        return true;
    m_status = statusOf(ended);
    return false;
}

std::optional<int> Process::waitForExit(std::chrono::milliseconds limit)
{
    if (!waitUntil([this] { return !running(); }, limit))
        return std::nullopt;
    return m_status;
}

void Process::end()
{
    if (m_reaped)
        return;
    if (running()) {
        ::kill(m_id, SIGTERM);
        if (!waitForExit(std::chrono::seconds{5})) {
            ::kill(m_id, SIGKILL);
            [[maybe_unused]] const auto status = waitForExit();
        }
    }
    // What it started and left behind: the group outlives its leader.
    ::kill(-m_id, SIGKILL);
    ::waitpid(m_id, nullptr, 0);
    m_reaped = true;
}

std::string Process::output() const
{
    return readFile(m_folder / "output");
}

std::string Process::errors() const
{
    return readFile(m_folder / "errors");
}

bool Process::waitForOutput(const std::string &text, std::chrono::milliseconds limit) const
{
    return waitUntil([&] { return output().find(text) != std::string::npos; }, limit);
}

std::size_t Process::peakMemory() const
{
    std::ifstream status("/proc/" + std::to_string(m_id) + "/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with("VmHWM:"))
            return std::stoull(line.substr(6)) * 1024;
    }
    return 0;
}

unsigned long long Process::processorTicks() const
{
    const std::string text = readFile("/proc/" + std::to_string(m_id) + "/stat");
    // The second field, the name in brackets, may hold blanks.
    std::istringstream fields(text.substr(std::min(text.size(), text.rfind(')') + 1)));
    std::vector<std::string> values(std::istream_iterator<std::string>(fields), {});
    constexpr std::size_t kUserTime = 11;
    constexpr std::size_t kSystemTime = 12;
    return values.size() > kSystemTime ? std::stoull(values[kUserTime]) + std::stoull(values[kSystemTime]) : 0;
}

Finished run(const Launch &launch)
{
    Process process(launch);
    const auto status = process.waitForExit();
    if (!status)
        throw std::runtime_error(launch.arguments.front() + " did not end");
    return {*status, process.output(), process.errors()};
}

} // namespace tallowmere::desktop
