// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "benchmarks/Clock.h"
#include "benchmarks/Measurements.h"
#include "imaging/pixels/ScreenColours.h"

#include <lcms2.h>

#include <algorithm>
#include <memory>
#include <new>
#include <random>
#include <stdexcept>
#include <utility>
#include <vector>

namespace tallowmere::bench {
namespace {

using Profile = std::unique_ptr<void, decltype(&cmsCloseProfile)>;

constexpr PixelSize kPicture{4000, 3000};

/// As wide as the screens of telephones.
Profile wideGamutProfile()
{
    const cmsCIExyY white{0.3127, 0.3290, 1.0};
    const cmsCIExyYTRIPLE primaries{{0.680, 0.320, 1.0}, {0.265, 0.690, 1.0}, {0.150, 0.060, 1.0}};
    const std::unique_ptr<cmsToneCurve, decltype(&cmsFreeToneCurve)> curve(cmsBuildGamma(nullptr, 2.2),
                                                                           &cmsFreeToneCurve);
    cmsToneCurve *const curves[] = {curve.get(), curve.get(), curve.get()};
    return {cmsCreateRGBProfile(&white, &primaries, curves), &cmsCloseProfile};
}

/// Measured points that no curves and matrix stand for: sRGB with its colours made paler.
Profile bentProfile()
{
    const Profile screen(cmsCreate_sRGBProfile(), &cmsCloseProfile);
    const Profile paler(cmsCreateBCHSWabstractProfile(17, 0, 1, 0, -15, 0, 0), &cmsCloseProfile);
    cmsHPROFILE chain[] = {screen.get(), paler.get()};
    const std::unique_ptr<void, decltype(&cmsDeleteTransform)> transform(
        cmsCreateMultiprofileTransform(chain, 2, TYPE_RGB_16, TYPE_Lab_16, INTENT_PERCEPTUAL, 0), &cmsDeleteTransform);
    Profile bent(cmsTransform2DeviceLink(transform.get(), 4.3, 0), &cmsCloseProfile);
    cmsSetDeviceClass(bent.get(), cmsSigInputClass);
    return bent;
}

ColourDescription describedBy(cmsHPROFILE profile)
{
    cmsUInt32Number size = 0;
    cmsSaveProfileToMem(profile, nullptr, &size);
    auto bytes = std::make_shared<std::vector<std::byte>>(size);
    if (bytes->empty() || !cmsSaveProfileToMem(profile, bytes->data(), &size))
        throw std::runtime_error("no colour profile");
    ColourDescription colour;
    colour.icc = std::move(bytes);
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

double timeConversion(const ColourDescription &colour)
{
    DecodedImage image;
    image.pixels = makePixels();
    image.colour = colour;
    const auto begin = Clock::now();
    const bool converted = convertToScreenColours(image);
    const double passed = millisecondsSince(begin);
    if (!converted || !image.storedAverage)
        throw std::runtime_error("the colours were not converted");
    return passed;
}

/// The colour library alone, on one core, as its documentation shows.
double timeLibrary(cmsHPROFILE profile)
{
    PixelBuffer pixels = makePixels();
    const auto begin = Clock::now();
    const Profile screen(cmsCreate_sRGBProfile(), &cmsCloseProfile);
    const std::unique_ptr<void, decltype(&cmsDeleteTransform)> transform(
        cmsCreateTransform(profile, TYPE_BGRA_8, screen.get(), TYPE_BGRA_8, INTENT_PERCEPTUAL, 0), &cmsDeleteTransform);
    cmsDoTransform(transform.get(), pixels.row(0), pixels.row(0), static_cast<cmsUInt32Number>(kPicture.pixels()));
    return millisecondsSince(begin);
}

} // namespace

void measureColours(Results &results)
{
    const std::pair<std::string, Profile (*)()> cases[] = {{"Display P3", wideGamutProfile},
                                                           {"a profile of measured points", bentProfile}};
    for (const auto &[name, make] : cases) {
        const Row row{"Colours, 12 MP to the screen's", name};
        if (!results.wants(row))
            continue;
        const Profile profile = make();
        if (results.wants(row, kProgram))
            results.add(row, kProgram, timeConversion(describedBy(profile.get())));
        results.add(row, kFloor, timeLibrary(profile.get()));
    }
}

} // namespace tallowmere::bench
