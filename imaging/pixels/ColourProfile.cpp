// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/pixels/ColourProfile.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tallowmere {
namespace {

struct FreeCurve
{
    void operator()(cmsToneCurve *curve) const { cmsFreeToneCurve(curve); }
};

using Curve = std::unique_ptr<cmsToneCurve, FreeCurve>;

Profile makeRGBProfile(cmsContext context, const Chromaticities &xy, const Curve &curve)
{
    if (!curve)
        return nullptr;
    const cmsCIExyY white{xy[0], xy[1], 1.0};
    const cmsCIExyYTRIPLE primaries{{xy[2], xy[3], 1.0}, {xy[4], xy[5], 1.0}, {xy[6], xy[7], 1.0}};
    cmsToneCurve *const curves[3] = {curve.get(), curve.get(), curve.get()};
    return Profile(cmsCreateRGBProfileTHR(context, &white, &primaries, curves));
}

/// Encoders write 1/2.2, rounded this or that way, for what is sRGB: its curve is meant.
bool meansSRGB(double gamma)
{
    return gamma > 0.45 && gamma < 0.46;
}

} // namespace

double linearFromSRGB(double signal)
{
    return signal <= 0.04045 ? signal / 12.92 : std::pow((signal + 0.055) / 1.055, 2.4);
}

Profile makeRGBProfile(cmsContext context, const Chromaticities &xy, const std::array<float, 256> &light)
{
    const bool sane = std::all_of(xy.begin(), xy.end(), [](double value) { return value >= -0.1 && value <= 1.1; });
    if (!sane || xy[1] < 0.01)
        return nullptr;
    const double area = (xy[4] - xy[2]) * (xy[7] - xy[3]) - (xy[6] - xy[2]) * (xy[5] - xy[3]);
    if (std::abs(area) < 1e-3)
        return nullptr;
    const Curve curve(
        cmsBuildTabulatedToneCurveFloat(context, static_cast<cmsUInt32Number>(light.size()), light.data()));
    return makeRGBProfile(context, xy, curve);
}

Profile makeLinearProfile(cmsContext context)
{
    // A formula, not a table: turning a table round takes the library some thirty milliseconds.
    return makeRGBProfile(context, kSRGBChromaticities, Curve(cmsBuildGamma(context, 1.0)));
}

Profile makeProfile(cmsContext context, const GammaAndPrimaries &colour)
{
    if (!(colour.gamma > 0.05 && colour.gamma < 10.0))
        return nullptr;
    std::array<float, 256> light{};
    for (std::size_t i = 0; i < light.size(); ++i) {
        const double signal = static_cast<double>(i) / 255.0;
        light[i] =
            static_cast<float>(meansSRGB(colour.gamma) ? linearFromSRGB(signal) : std::pow(signal, 1.0 / colour.gamma));
    }
    return makeRGBProfile(context, colour.xy.value_or(kSRGBChromaticities), light);
}

Profile openProfile(cmsContext context, const std::vector<std::byte> &icc)
{
    if (icc.empty() || icc.size() > std::numeric_limits<cmsUInt32Number>::max())
        return nullptr;
    Profile profile(cmsOpenProfileFromMemTHR(context, icc.data(), static_cast<cmsUInt32Number>(icc.size())));
    if (!profile)
        return nullptr;
    const cmsColorSpaceSignature space = cmsGetColorSpace(profile.get());
    const cmsProfileClassSignature kind = cmsGetDeviceClass(profile.get());
    const bool describesPixels = kind == cmsSigInputClass || kind == cmsSigDisplayClass || kind == cmsSigOutputClass ||
                                 kind == cmsSigColorSpaceClass;
    if (!describesPixels || (space != cmsSigRgbData && space != cmsSigGrayData))
        return nullptr;
    return profile;
}

} // namespace tallowmere
