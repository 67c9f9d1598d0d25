// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>

namespace tallowmere {

/// Rows @p first up to but not including @p end.
struct RowPart
{
    std::uint32_t first = 0;
    std::uint32_t end = 0;
    /// To be asked before each row; once false, the rest is not wanted any more.
    const std::function<bool()> &goesOn;
};

/// Has @p work done on all parts of @p rows rows, on a second thread too where @p pixels, those to be read, are worth
/// one. False when it was given up: @p cancelled (may be empty; asked now and then, in the caller's thread only; while
/// it does not answer no thread works) said true, or a thread ran out of memory. Any thread.
[[nodiscard]] bool workOnRowParts(std::uint32_t rows, std::uint64_t pixels, const std::function<bool()> &cancelled,
                                  const std::function<void(const RowPart &)> &work);

} // namespace tallowmere
