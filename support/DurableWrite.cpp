// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "support/DurableWrite.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace tallowmere {

int writeDurably(int descriptor, QByteArrayView bytes)
{
    while (!bytes.isEmpty()) {
        const ssize_t written = ::write(descriptor, bytes.data(), static_cast<std::size_t>(bytes.size()));
        if (written < 0 && errno != EINTR)
            return errno;
        bytes = bytes.sliced(std::max<ssize_t>(written, 0));
    }
    return ::fsync(descriptor) == 0 || errno == EINVAL || errno == ENOSYS ? 0 : errno;
}

} // namespace tallowmere
