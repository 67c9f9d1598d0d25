// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/pixels/CicpProfile.h"

#include <algorithm>
#include <cmath>

namespace tallowmere {
namespace {

/// ITU-R BT.2408: diffuse white in HDR, shown as the white of an ordinary screen.
constexpr double kReferenceWhite = 203.0; // cd/m²
/// What HDR pictures are mastered for, when no one says otherwise.
constexpr double kMasteringPeak = 1000.0; // cd/m²

// SMPTE ST 2084.
constexpr double kM1 = 2610.0 / 16384.0;
constexpr double kM2 = 2523.0 / 4096.0 * 128.0;
constexpr double kC1 = 3424.0 / 4096.0;
constexpr double kC2 = 2413.0 / 4096.0 * 32.0;
constexpr double kC3 = 2392.0 / 4096.0 * 32.0;

double nitsFromPQ(double signal)
{
    const double root = std::pow(signal, 1.0 / kM2);
    return 10000.0 * std::pow(std::max(root - kC1, 0.0) / (kC2 - kC3 * root), 1.0 / kM1);
}

double pqFromNits(double nits)
{
    const double power = std::pow(std::clamp(nits / 10000.0, 0.0, 1.0), kM1);
    return std::pow((kC1 + kC2 * power) / (1.0 + kC3 * power), kM2);
}

/// ITU-R BT.2100: the inverse OETF, then the OOTF of a 1000 cd/m² screen, taken channel by channel.
double nitsFromHLG(double signal)
{
    constexpr double a = 0.17883277, b = 0.28466892, c = 0.55991073;
    const double scene = signal <= 0.5 ? signal * signal / 3.0 : (std::exp((signal - c) / a) + b) / 12.0;
    return kMasteringPeak * std::pow(scene, 1.2);
}

/// The roll-off of ITU-R BT.2390: dark and middle tones keep their light, highlights are bent under screen white.
double rolledOff(double nits)
{
    const double peak = pqFromNits(kMasteringPeak);
    const double most = pqFromNits(kReferenceWhite) / peak;
    const double knee = 1.5 * most - 0.5;
    double e = std::min(pqFromNits(nits) / peak, 1.0);
    if (e > knee) {
        const double t = (e - knee) / (1.0 - knee);
        const double t2 = t * t, t3 = t2 * t;
        e = (2 * t3 - 3 * t2 + 1) * knee + (t3 - 2 * t2 + t) * (1.0 - knee) + (-2 * t3 + 3 * t2) * most;
    }
    return nitsFromPQ(e * peak) / kReferenceWhite;
}

std::optional<Chromaticities> chromaticitiesOf(std::uint16_t primaries)
{
    switch (primaries) {
    case 1: // BT.709
    case 2: // unspecified
        return kSRGBChromaticities;
    case 4: // BT.470 M
        return Chromaticities{0.310, 0.316, 0.67, 0.33, 0.21, 0.71, 0.14, 0.08};
    case 5: // BT.470 B/G, BT.601 with 625 lines
        return Chromaticities{0.3127, 0.3290, 0.64, 0.33, 0.29, 0.60, 0.15, 0.06};
    case 6: // BT.601 with 525 lines
    case 7: // SMPTE ST 240
        return Chromaticities{0.3127, 0.3290, 0.630, 0.340, 0.310, 0.595, 0.155, 0.070};
    case 8: // film with illuminant C
        return Chromaticities{0.310, 0.316, 0.681, 0.319, 0.243, 0.692, 0.145, 0.049};
    case 9: // BT.2020
        return Chromaticities{0.3127, 0.3290, 0.708, 0.292, 0.170, 0.797, 0.131, 0.046};
    case 11: // SMPTE RP 431: DCI-P3
        return Chromaticities{0.314, 0.351, 0.680, 0.320, 0.265, 0.690, 0.150, 0.060};
    case 12: // SMPTE EG 432: Display P3
        return Chromaticities{0.3127, 0.3290, 0.680, 0.320, 0.265, 0.690, 0.150, 0.060};
    case 22: // EBU Tech 3213
        return Chromaticities{0.3127, 0.3290, 0.630, 0.340, 0.295, 0.605, 0.155, 0.077};
    default:
        return std::nullopt;
    }
}

} // namespace

std::optional<double> lightFromSignal(std::uint16_t transfer, double signal)
{
    switch (transfer) {
    // These are cameras' curves; no screen undoes them, and desktops show such values as they stand.
    case 1:  // BT.709
    case 6:  // BT.601
    case 7:  // SMPTE ST 240
    case 11: // IEC 61966-2-4
    case 12: // BT.1361
    case 14: // BT.2020, 10 bits
    case 15: // BT.2020, 12 bits
    case 2:  // unspecified
    case 13: // sRGB
        return linearFromSRGB(signal);
    case 4:
        return std::pow(signal, 2.2);
    case 5:
        return std::pow(signal, 2.8);
    case 8:
        return signal;
    case 16:
        return rolledOff(nitsFromPQ(signal));
    case 17: // SMPTE ST 428; its white is at 48 / 52.37 of the range
        return std::min(std::pow(signal, 2.6) * 52.37 / 48.0, 1.0);
    case 18:
        return rolledOff(nitsFromHLG(signal));
    default:
        return std::nullopt;
    }
}

Profile makeProfile(cmsContext context, const Cicp &cicp)
{
    const auto xy = chromaticitiesOf(cicp.primaries);
    if (!xy)
        return nullptr;
    std::array<float, 256> light{};
    for (std::size_t i = 0; i < light.size(); ++i) {
        const auto value = lightFromSignal(cicp.transfer, static_cast<double>(i) / 255.0);
        if (!value)
            return nullptr;
        light[i] = static_cast<float>(*value);
    }
    return makeRGBProfile(context, *xy, light);
}

} // namespace tallowmere
