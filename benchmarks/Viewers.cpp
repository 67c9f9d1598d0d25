// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "benchmarks/Viewers.h"

#include <algorithm>
#include <utility>

namespace tallowmere::bench {
namespace {

bool installed(const std::string &program)
{
    return std::filesystem::exists(std::filesystem::path("/usr/bin") / program);
}

/// @p options: what makes it show the whole picture, fitted to its window, and nothing beside it, as Tallowmere does.
Viewer viewer(const std::string &name, const std::vector<std::string> &options)
{
    return {name, [=](const std::filesystem::path &file) {
                std::vector<std::string> command{name};
                command.insert(command.end(), options.begin(), options.end());
                command.push_back(file);
                return command;
            }};
}

} // namespace

Viewer ownViewer()
{
    auto own = viewer(TALLOWMERE_PROGRAM, {});
    own.name = "Tallowmere";
    return own;
}

std::vector<std::string> floorWindow(int width, int height)
{
    return {TALLOWMERE_FLOOR_WINDOW, std::to_string(width), std::to_string(height)};
}

std::vector<Viewer> installedPeers()
{
    std::vector<Viewer> peers{
        // Larger pictures are shrunk to the window or the screen, smaller ones enlarged. Where its
        // window is not maximised it now and then moves it into a corner after all, which counts as "not shown".
        viewer("feh", {"--scale-down", "--auto-zoom"}),
        // Scale mode "fit": the whole picture, enlarged or shrunk.
        viewer("nsxiv", {"-s", "f"}),
        // Fits larger pictures by itself.
        viewer("viewnior", {}),
        // Without its list of files beside the picture.
        viewer("geeqie", {"--without-tools"}),
        // Fits by itself.
        viewer("qimgv", {}),
    };
    std::erase_if(peers, [](const Viewer &peer) { return !installed(peer.name); });
    return peers;
}

} // namespace tallowmere::bench
