// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <span>

namespace tallowmere {

/// Undoes PNG's row filter @p type (0 to 4) in place.
///
/// @p above is the finished row before it and as long, or zeros for the first. @p bytesPerPixel is 1 to 4. False for a
/// type that does not exist. Any thread.
[[nodiscard]] bool undoPngFilter(std::byte type, std::span<std::byte> row, std::span<const std::byte> above,
                                 unsigned bytesPerPixel);

} // namespace tallowmere
