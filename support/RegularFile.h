// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "support/FileDescriptor.h"
#include "support/FileURL.h"

#include <cstddef>
#include <optional>

namespace tallowmere {

/// A file that is open for reading and is nothing but a file: no folder, no FIFO, no device.
struct RegularFile
{
    FileDescriptor descriptor;
    std::size_t size = 0; ///< bytes, when it was opened

    /// Nothing for what is missing, forbidden or of another kind; a FIFO is refused without blocking. A file that
    /// another process holds a lease on is waited for: 45 s at most, unless the system is set up otherwise. Any thread.
    [[nodiscard]] static std::optional<RegularFile> open(const FileURL &file);
};

} // namespace tallowmere
