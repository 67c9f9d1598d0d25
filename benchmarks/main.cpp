// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
//
// Measures the program as its user meets it: from outside, by what stands on the screen. See --help.

#include "benchmarks/Measurements.h"
#include "benchmarks/Options.h"
#include "tests/desktop/Folders.h"

#include <csignal>
#include <cstdlib>
#include <iomanip>
#include <iostream>
#include <thread>

namespace {

using namespace tallowmere::bench;

std::string processorName()
{
    const std::string text = tallowmere::desktop::readFile("/proc/cpuinfo");
    constexpr std::string_view kKey = "model name\t: ";
    const auto at = text.find(kKey);
    return at == std::string::npos ? "unknown processor"
                                   : text.substr(at + kKey.size(), text.find('\n', at) - at - kKey.size());
}

double loadAverage()
{
    return std::strtod(tallowmere::desktop::readFile("/proc/loadavg").c_str(), nullptr);
}

void describeRun(const Options &options, double load, const WatchCost &cost)
{
    std::cout
        << "## Benchmarks\n\n"
        << processorName() << ", " << std::thread::hardware_concurrency()
        << " cores; 1920 × 1080 virtual screen; warm page cache; " << options.rounds
        << " rounds after one that is not counted; load average before: " << load << ".\n"
        << "A time ends when the picture's colour stands in the middle of the screen. Looked at every "
        << std::setprecision(2) << cost.interval << " ms, which takes " << cost.ownShare * 100
        << " % of a core here and " << cost.serverShare * 100
        << " % in the X server (beyond 100 ms, every 0.2 % of the time passed).\n\n"
        << "The floor of a start: the toolkit's smallest window until it is seen, and then the library's plain full\n"
        << "decode on top. Of a request to a running program, and of a step to a picture that is not decoded ahead:\n"
        << "the smallest window's answer to a key, and the plain decode on top. Of the other steps: that answer "
           "alone.\n"
        << "Of a decode: the library's plain full decode, on all cores where it can. Of a listing: reading the\n"
        << "folder. Of memory: the smallest window. Of a painted frame: one copy of its bytes.\n"
        << "Of colours: the colour library on one core; either's conversion is made before, and timed on its own.\n";
    constexpr double kQuiet = 0.5;
    if (load > kQuiet)
        std::cout << "\n**The machine was busy when this began: take the figures for rough ones.**\n";
}

void measureRound(const std::vector<std::unique_ptr<Station>> &stations, const PhotoStore &store,
                  const std::vector<Viewer> &peers, int round, Results &results)
{
    for (const auto &station : stations) {
        measureStarts(*station, store, peers, round, results);
        measureOpens(*station, store, results);
        measureSteps(*station, store, results);
        measureMemory(*station, store, peers, results);
    }
    measureDecoding(store, results);
    measureColours(results);
    measureListing(store, results);
    measurePainting(results);
}

void run(const Options &options)
{
    const double load = loadAverage();
    const PhotoStore store(TALLOWMERE_BENCH_PHOTOS);
    const auto peers = options.peers ? installedPeers() : std::vector<Viewer>();
    std::vector<std::unique_ptr<Station>> stations;
    for (const Mode mode : kModes)
        stations.push_back(std::make_unique<Station>(mode));
    const WatchCost cost = stations.front()->watch.cost();
    Results results(options.word);
    for (int round = 0; round <= options.rounds; ++round) {
        std::cerr << "round " << round << " of " << options.rounds << (round == 0 ? " (warms up)" : "") << '\n';
        measureRound(stations, store, peers, round, results);
        if (round == 0)
            results.discardValues();
    }
    describeRun(options, load, cost);
    results.print(std::cout);
}

} // namespace

int main(int count, char **arguments)
{
    std::signal(SIGPIPE, SIG_IGN);
    try {
        const Options options = parseOptions({arguments + 1, arguments + count});
        if (options.help)
            std::cout << kUsage;
        else
            run(options);
        return EXIT_SUCCESS;
    } catch (const std::exception &error) {
        std::cerr << "tallowmere_bench: " << error.what() << '\n';
        return EXIT_FAILURE;
    }
}
