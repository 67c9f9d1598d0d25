// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/pixels/RowParts.h"

#include <atomic>
#include <mutex>
#include <new>
#include <system_error>
#include <thread>

namespace tallowmere {
namespace {

/// Under this many pixels a second thread is not ready before the first has finished.
constexpr std::uint64_t kPixelsWorthAThread = 400'000;
/// Taken by whichever thread is free; a reduction reads some rows at their edges twice.
constexpr std::uint32_t kParts = 6;
constexpr std::uint32_t kRowsBetweenQuestions = 16;

} // namespace

bool workOnRowParts(std::uint32_t rows, std::uint64_t pixels, const std::function<bool()> &cancelled,
                    const std::function<void(const RowPart &)> &work)
{
    std::atomic<std::uint32_t> nextPart = 0;
    std::atomic<bool> stopped = false;
    const auto edge = [&](std::uint32_t part) {
        return static_cast<std::uint32_t>(std::uint64_t{rows} * part / kParts);
    };
    const auto takeParts = [&](const std::function<bool()> &goesOn) {
        try {
            for (std::uint32_t part = nextPart++; part < kParts && !stopped; part = nextPart++) {
                if (edge(part) < edge(part + 1))
                    work({edge(part), edge(part + 1), goesOn});
            }
        } catch (const std::bad_alloc &) {
            stopped = true;
        }
    };
    std::mutex asking; // a question may take its time, for the sake of more urgent work: both threads wait for it
    std::thread helper;
    if (pixels >= kPixelsWorthAThread && std::thread::hardware_concurrency() > 1) {
        try {
            helper = std::thread([&] {
                takeParts([&] {
                    const std::lock_guard wait(asking);
                    return !stopped;
                });
            });
        } catch (const std::system_error &) {
            // Out of threads: this one does it all.
        }
    }
    std::uint32_t asked = 0;
    takeParts([&] {
        if (cancelled && asked++ % kRowsBetweenQuestions == 0) {
            const std::lock_guard wait(asking);
            if (cancelled())
                stopped = true;
        }
        return !stopped;
    });
    if (helper.joinable())
        helper.join();
    return !stopped;
}

} // namespace tallowmere
