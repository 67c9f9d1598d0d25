// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "benchmarks/PhotoStore.h"

#include <functional>
#include <string>
#include <vector>

namespace tallowmere::bench {

/// A picture viewer as it is started from a terminal.
struct Viewer
{
    std::string name; ///< its column
    std::function<std::vector<std::string>(const std::filesystem::path &)> command;
};

[[nodiscard]] Viewer ownViewer();
/// The smallest window of the same toolkit, of this size in pixels; it takes no file.
[[nodiscard]] std::vector<std::string> floorWindow(int width = 600, int height = 400);
/// Those of the peers that are installed. Nobody's settings are used: each has an empty home.
[[nodiscard]] std::vector<Viewer> installedPeers();

} // namespace tallowmere::bench
