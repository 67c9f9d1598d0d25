// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "support/MainQueuePump.h"

#include <chrono>
#include <functional>

namespace tallowmere::test {

/// Runs the jobs of @p queue as they come, without any event loop, until @p done says so. False when that has not
/// come about within the limit, which is generous for slow machines.
[[nodiscard]] bool runUntil(PostedMainQueue &queue, const std::function<bool()> &done,
                            std::chrono::seconds limit = std::chrono::seconds(30));

} // namespace tallowmere::test
