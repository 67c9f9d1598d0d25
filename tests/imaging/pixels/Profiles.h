// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <lcms2.h>

#include <cstddef>
#include <memory>
#include <vector>

namespace tallowmere {

using ProfileBytes = std::shared_ptr<const std::vector<std::byte>>;

/// Takes over @p profile.
inline ProfileBytes bytesOf(cmsHPROFILE profile)
{
    cmsUInt32Number size = 0;
    cmsSaveProfileToMem(profile, nullptr, &size);
    auto bytes = std::make_shared<std::vector<std::byte>>(size);
    cmsSaveProfileToMem(profile, bytes->data(), &size);
    cmsCloseProfile(profile);
    return bytes;
}

inline ProfileBytes sRGBProfile(double version = 4.3)
{
    cmsHPROFILE profile = cmsCreate_sRGBProfile();
    cmsSetProfileVersion(profile, version);
    return bytesOf(profile);
}

inline ProfileBytes rgbProfile(const cmsCIExyYTRIPLE &primaries, double gamma)
{
    const cmsCIExyY white{0.3127, 0.3290, 1.0};
    const double sRGB[5] = {2.4, 1 / 1.055, 0.055 / 1.055, 1 / 12.92, 0.04045};
    cmsToneCurve *curve = gamma > 0 ? cmsBuildGamma(nullptr, gamma) : cmsBuildParametricToneCurve(nullptr, 4, sRGB);
    cmsToneCurve *const curves[3] = {curve, curve, curve};
    const ProfileBytes bytes = bytesOf(cmsCreateRGBProfile(&white, &primaries, curves));
    cmsFreeToneCurve(curve);
    return bytes;
}

inline constexpr cmsCIExyYTRIPLE kP3{{0.680, 0.320, 1}, {0.265, 0.690, 1}, {0.150, 0.060, 1}};
inline constexpr cmsCIExyYTRIPLE kBT709{{0.640, 0.330, 1}, {0.300, 0.600, 1}, {0.150, 0.060, 1}};

inline ProfileBytes displayP3Profile()
{
    return rgbProfile(kP3, 0);
}

inline ProfileBytes greyProfile(double gamma)
{
    cmsToneCurve *curve = cmsBuildGamma(nullptr, gamma);
    const ProfileBytes bytes = bytesOf(cmsCreateGrayProfile(cmsD50_xyY(), curve));
    cmsFreeToneCurve(curve);
    return bytes;
}

} // namespace tallowmere
