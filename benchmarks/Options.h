// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace tallowmere::bench {

/// What the user of the benchmarks wants.
struct Options
{
    int rounds = 15;
    std::string word; ///< only rows whose section or name holds it
    bool peers = false;
    bool help = false;
};

inline constexpr const char *kUsage =
    "usage: tallowmere_bench [--rounds N] [--case WORD] [--peers]\n"
    "\n"
    "  --rounds N    measure everything N times (15), after one round that warms the caches\n"
    "  --case WORD   only the rows whose heading or name contains WORD, such as \"Start\", \"Bus\", \"Key\", \"PNG\"\n"
    "  --peers       measure the other viewers that are installed, too\n";

/// Throws std::runtime_error that says what is wrong.
[[nodiscard]] Options parseOptions(const std::vector<std::string> &words);

} // namespace tallowmere::bench
