// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "support/RegularFile.h"

#include <fcntl.h>
#include <sys/stat.h>

namespace tallowmere {

std::optional<RegularFile> RegularFile::open(const FileURL &file)
{
    // Without O_NONBLOCK, opening a FIFO would wait for somebody to write to it.
    FileDescriptor descriptor(::open(file.path().constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    struct stat status = {};
    if (!descriptor.isOpen() || ::fstat(descriptor.number(), &status) != 0 || !S_ISREG(status.st_mode))
        return std::nullopt;
    return RegularFile{std::move(descriptor), static_cast<std::size_t>(status.st_size)};
}

} // namespace tallowmere
