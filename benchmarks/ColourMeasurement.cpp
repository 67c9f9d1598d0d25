// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "benchmarks/Clock.h"
#include "benchmarks/Measurements.h"
#include "imaging/pixels/ColourConversion.h"
#include "imaging/pixels/ScreenColours.h"
#include "tests/imaging/pixels/Profiles.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <new>
#include <random>
#include <stdexcept>
#include <utility>
#include <vector>

namespace tallowmere::bench {
namespace {

constexpr PixelSize kPicture{4000, 3000};

ColourDescription describedBy(ProfileBytes profile)
{
    ColourDescription colour;
    colour.icc = std::move(profile);
    return colour;
}

/// Slow changes and some noise, as photographs have them.
PixelBuffer makePixels()
{
    PixelBuffer pixels = PixelBuffer::allocate(kPicture);
    if (pixels.isNull())
        throw std::bad_alloc();
    std::minstd_rand noise(7);
    for (std::uint32_t y = 0; y < kPicture.height; ++y) {
        auto *row = reinterpret_cast<std::uint32_t *>(pixels.row(y));
        for (std::uint32_t x = 0; x < kPicture.width; ++x) {
            const std::uint32_t grain = static_cast<std::uint32_t>(noise()) >> 4;
            const auto channel = [&](std::uint32_t base, unsigned shift) {
                return std::min(base + (grain >> shift) % 16, 255U) << shift;
            };
            row[x] = 0xff000000U | channel(x * 240 / kPicture.width, 0) | channel(y * 240 / kPicture.height, 8) |
                     channel((x + y) % 480 / 2, 16);
        }
    }
    return pixels;
}

double timeConversion(const ProfileBytes &profile)
{
    DecodedImage image;
    image.pixels = makePixels();
    image.colour = describedBy(profile);
    const auto remembered = ColourConversion::toSRGB(image.colour);
    const auto begin = Clock::now();
    const bool converted = convertToScreenColours(image);
    const double passed = millisecondsSince(begin);
    if (!remembered || !converted || !image.storedAverage)
        throw std::runtime_error("the colours were not converted");
    return passed;
}

/// The colour library alone, on one core, as its documentation shows.
double timeLibrary(const ProfileBytes &profile)
{
    PixelBuffer pixels = makePixels();
    const TransformHandle transform = transformToSRGB(profile, TYPE_BGRA_8, 0);
    const auto begin = Clock::now();
    cmsDoTransform(transform.get(), pixels.row(0), pixels.row(0), static_cast<cmsUInt32Number>(kPicture.pixels()));
    return millisecondsSince(begin);
}

/// The same profile made at another time: not one of those remembered.
ProfileBytes madeAnew(const ProfileBytes &profile)
{
    static std::uint8_t second = 0;
    constexpr std::size_t kSecondsAt = 35;
    auto bytes = std::make_shared<std::vector<std::byte>>(*profile);
    bytes->at(kSecondsAt) = std::byte{++second};
    return bytes;
}

double timeMaking(const ProfileBytes &profile)
{
    const ColourDescription colour = describedBy(madeAnew(profile));
    const auto begin = Clock::now();
    const auto conversion = ColourConversion::toSRGB(colour);
    const double passed = millisecondsSince(begin);
    if (!conversion)
        throw std::runtime_error("no conversion was made");
    return passed;
}

double timeLibrarysMaking(const ProfileBytes &profile)
{
    const auto begin = Clock::now();
    const TransformHandle transform = transformToSRGB(profile, TYPE_BGRA_8, 0);
    return millisecondsSince(begin);
}

void measure(const Row &row, const ProfileBytes &profile, double (*ours)(const ProfileBytes &),
             double (*floor)(const ProfileBytes &), Results &results)
{
    if (results.wants(row, kProgram))
        results.add(row, kProgram, ours(profile));
    if (results.wants(row, kFloor))
        results.add(row, kFloor, floor(profile));
}

} // namespace

void measureColours(Results &results)
{
    const std::pair<std::string, ProfileBytes (*)()> cases[] = {
        {"Display P3", displayP3Profile},
        // sRGB with its colours made paler.
        {"a profile of measured points", [] { return bentProfile(sRGBProfile(), 0, -15); }}};
    for (const auto &[name, make] : cases) {
        const Row pixels{"Colours, 12 MP to the screen's", name};
        const Row making{"Colours, a conversion made once for a profile", name};
        if (!results.wants(pixels) && !results.wants(making))
            continue;
        const ProfileBytes profile = make();
        measure(pixels, profile, timeConversion, timeLibrary, results);
        measure(making, profile, timeMaking, timeLibrarysMaking, results);
    }
}

} // namespace tallowmere::bench
