// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "support/FileURL.h"

#include <chrono>
#include <optional>

namespace tallowmere {

using FileTime = std::chrono::sys_time<std::chrono::milliseconds>;

/// What the file system says about a file. A value.
struct FileAttributes
{
    qint64 size = 0;                      ///< bytes
    std::optional<FileTime> creationDate; ///< nothing where the file system keeps none

    friend bool operator==(const FileAttributes &, const FileAttributes &) = default;
};

/// Reads file attributes. Any thread, several at a time; may block on a slow file system.
class FileAttributesReader
{
public:
    virtual ~FileAttributesReader() = default;
    /// Of what a link points to. Nothing when they can't be had. The file is not opened.
    [[nodiscard]] virtual std::optional<FileAttributes> attributes(const FileURL &file) const = 0;
};

} // namespace tallowmere
