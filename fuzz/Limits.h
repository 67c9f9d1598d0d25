// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/codecs/Codec.h"

namespace tallowmere {

/// Small enough that an input is done with in milliseconds, large enough that pictures are shrunk, too.
[[nodiscard]] inline DecodeLimits fuzzLimits()
{
    DecodeLimits limits;
    limits.maxSide = 200;
    limits.maxSourceSide = 4096;
    limits.maxSourcePixels = std::uint64_t{1} << 20;
    limits.maxWorkingBytes = std::size_t{64} << 20;
    return limits;
}

} // namespace tallowmere
