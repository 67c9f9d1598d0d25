// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "benchmarks/Clock.h"
#include "benchmarks/Measurements.h"
#include "benchmarks/PlainDecoders.h"
#include "imaging/codecs/Decode.h"

namespace tallowmere::bench {
namespace {

/// Nothing when the program does not read it.
std::optional<double> timeOwnDecode(const std::filesystem::path &file)
{
    const auto bytes = readBytes(file);
    const auto begin = Clock::now();
    const auto result = decodeImage(bytes, DecodeLimits{});
    const double passed = millisecondsSince(begin);
    return std::holds_alternative<DecodedImage>(result) ? std::optional(passed) : std::nullopt;
}

} // namespace

void measureDecoding(const PhotoStore &store, Results &results)
{
    for (const Photo &photo : store.photos()) {
        const Row row{"Decode, to at most 4000 pixels a side", photo.label};
        if (!results.wants(row))
            continue;
        if (results.wants(row, kProgram))
            results.add(row, kProgram, timeOwnDecode(photo.file));
        results.add(row, kFloor, timePlainDecode(photo.file));
    }
}

} // namespace tallowmere::bench
