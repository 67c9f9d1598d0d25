// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "support/FileURL.h"

#include <cstddef>
#include <optional>
#include <span>

namespace tallowmere {

/// A whole file in memory, straight from the kernel, so that freeing it gives the memory back at once.
///
/// A copy rather than a mapping: a mapped file that is cut short under us would end the program (SIGBUS).
/// Movable, not copyable.
class FileContents final
{
public:
    static constexpr std::size_t kMostBytes = std::size_t{2} << 30;

    /// Nothing for what is missing, forbidden, no regular file (a FIFO is refused without blocking), larger than
    /// @p mostBytes or failing on the way. A file that shrinks meanwhile gives what is left. Any thread; blocks.
    [[nodiscard]] static std::optional<FileContents> read(const FileURL &file, std::size_t mostBytes = kMostBytes);
    ~FileContents();
    FileContents(FileContents &&other) noexcept;
    FileContents &operator=(FileContents &&other) noexcept;
    FileContents(const FileContents &) = delete;
    FileContents &operator=(const FileContents &) = delete;

    [[nodiscard]] std::span<const std::byte> bytes() const { return {m_data, m_size}; }

private:
    FileContents() = default;
    [[nodiscard]] bool allocate(std::size_t room);
    [[nodiscard]] bool fill(int descriptor);

    void *m_mapping = nullptr;
    std::size_t m_mappingBytes = 0;
    std::byte *m_data = nullptr; ///< inside the mapping
    std::size_t m_room = 0;      ///< bytes from m_data that may be written
    std::size_t m_size = 0;      ///< bytes read
};

} // namespace tallowmere
