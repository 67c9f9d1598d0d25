// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/pixels/ColourProfile.h"

#include <array>
#include <cstdint>
#include <memory>

namespace tallowmere {

/// The rendering intent of every conversion.
inline constexpr cmsUInt32Number kRenderingIntent = INTENT_PERCEPTUAL;

struct DeleteTransform
{
    void operator()(cmsHTRANSFORM transform) const { cmsDeleteTransform(transform); }
};
using ColourTransform = std::unique_ptr<void, DeleteTransform>;

/// Colours in a profile's space, told as light in sRGB's by the colour library's exact arithmetic: about 0.3 µs each.
class LightMeter final
{
public:
    /// Blue, green and red; from 0 to 1 is what sRGB can show.
    using Light = std::array<float, 3>;

    /// Lives no longer than @p context.
    LightMeter(cmsContext context, cmsHPROFILE profile);

    [[nodiscard]] bool usable() const { return m_transform != nullptr; }
    /// The profile is for one channel; blue stands for it.
    [[nodiscard]] bool grey() const { return m_grey; }
    /// Of a colour whose channels go from 0 to 1. Finite, whatever the profile holds.
    [[nodiscard]] Light operator()(float blue, float green, float red) const;

private:
    bool m_grey;
    ColourTransform m_transform;
};

/// The sRGB value (IEC 61966-2-1) of @p light; the curve goes on beyond 0 and 1.
[[nodiscard]] double signalFromLight(double light);

/// The same, clipped, for a byte.
[[nodiscard]] std::uint8_t byteFromLight(float light);

} // namespace tallowmere
