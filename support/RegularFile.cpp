// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "support/RegularFile.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <string>

namespace tallowmere {
namespace {

// Without O_NONBLOCK, opening a FIFO would wait for somebody to write to it.
constexpr int kWithoutWaiting = O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK;
constexpr int kWaiting = O_RDONLY | O_CLOEXEC | O_NOCTTY;

bool isRegular(const FileDescriptor &descriptor, struct stat &status)
{
    return descriptor.isOpen() && ::fstat(descriptor.number(), &status) == 0 && S_ISREG(status.st_mode);
}

/// Of a file that another process, such as a server that shares it, has leased: it is asked to let go, and the kernel
/// takes the lease away from it after a while (fcntl(2)).
FileDescriptor openLeased(const FileURL &file)
{
    // The path may lead to something else by now: what has been looked at is what is opened.
    const FileDescriptor place(::open(file.path().constData(), O_PATH | O_CLOEXEC));
    struct stat status = {};
    if (!isRegular(place, status))
        return {};
    const std::string link = "/proc/self/fd/" + std::to_string(place.number());
    return FileDescriptor(::open(link.c_str(), kWaiting));
}

} // namespace

std::optional<RegularFile> RegularFile::open(const FileURL &file)
{
    FileDescriptor descriptor(::open(file.path().constData(), kWithoutWaiting));
    if (!descriptor.isOpen() && errno == EWOULDBLOCK)
        descriptor = openLeased(file);
    struct stat status = {};
    if (!isRegular(descriptor, status))
        return std::nullopt;
    return RegularFile{std::move(descriptor), static_cast<std::size_t>(status.st_size)};
}

} // namespace tallowmere
