// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>

namespace tallowmere {

/// How much room the machine, or the cgroup we live in, has left. Any thread.
class MemoryStatus
{
public:
    virtual ~MemoryStatus() = default;
    /// Nothing while memory is plentiful; otherwise how many bytes a cache may keep in all.
    [[nodiscard]] virtual std::optional<std::size_t> cacheBudget() = 0;
};

/// Says that memory is always plentiful: for tests and systems that don't tell.
class PlentifulMemory final : public MemoryStatus
{
public:
    [[nodiscard]] std::optional<std::size_t> cacheBudget() override { return std::nullopt; }
};

} // namespace tallowmere
