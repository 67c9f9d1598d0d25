// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <filesystem>
#include <span>
#include <vector>

namespace tallowmere::bench {

[[nodiscard]] std::vector<std::byte> readBytes(const std::filesystem::path &file);

/// Decodes a picture in full to four bytes a pixel in fresh memory with the format's own library, in the shortest way
/// its documentation shows: no scaling, no colour management. Where the library can share the work among the cores
/// it does. The format is told by the file's extension. Throws std::runtime_error when the library refuses.
void decodePlainly(const std::filesystem::path &file, std::span<const std::byte> bytes);

/// Milliseconds that takes, with the file in memory already.
[[nodiscard]] double timePlainDecode(const std::filesystem::path &file);

} // namespace tallowmere::bench
