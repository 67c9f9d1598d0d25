// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/pixels/LightMeter.h"

#include <algorithm>
#include <cmath>

namespace tallowmere {

LightMeter::LightMeter(cmsContext context, cmsHPROFILE profile) : m_grey(cmsGetColorSpace(profile) == cmsSigGrayData)
{
    const Profile screen = makeLinearProfile(context);
    if (screen)
        m_transform.reset(cmsCreateTransformTHR(context, profile, m_grey ? TYPE_GRAY_FLT : TYPE_BGR_FLT, screen.get(),
                                                TYPE_BGR_FLT, kRenderingIntent,
                                                cmsFLAGS_NOCACHE | cmsFLAGS_NOOPTIMIZE));
}

LightMeter::Light LightMeter::operator()(float blue, float green, float red) const
{
    // A hostile profile's curves may hold anything at all.
    constexpr float kMostLight = 16.0F;
    const Light in{blue, green, red};
    Light out{};
    cmsDoTransform(m_transform.get(), in.data(), out.data(), 1);
    for (float &light : out)
        light = std::isfinite(light) ? std::clamp(light, -kMostLight, kMostLight) : 0.0F;
    return out;
}

double signalFromLight(double light)
{
    return light <= 0.0031308 ? light * 12.92 : 1.055 * std::pow(light, 1.0 / 2.4) - 0.055;
}

std::uint8_t byteFromLight(float light)
{
    return static_cast<std::uint8_t>(std::lround(signalFromLight(std::clamp(light, 0.0F, 1.0F)) * 255.0));
}

} // namespace tallowmere
