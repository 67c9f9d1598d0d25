// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/pixels/ColourDescription.h"

#include <lcms2.h>

#include <array>
#include <memory>
#include <optional>

namespace tallowmere {

struct CloseProfile
{
    void operator()(void *profile) const { cmsCloseProfile(profile); }
};
using Profile = std::unique_ptr<void, CloseProfile>;

/// x and y of white, red, green and blue, in this order (CIE 1931).
using Chromaticities = std::array<double, 8>;

/// BT.709's, which sRGB shares.
inline constexpr Chromaticities kSRGBChromaticities{0.3127, 0.3290, 0.640, 0.330, 0.300, 0.600, 0.150, 0.060};

/// The value of @p signal (0 to 1) in light, by the curve of IEC 61966-2-1.
[[nodiscard]] double linearFromSRGB(double signal);

/// A profile whose three curves have @p light for the 256 signals of a byte. Null when the chromaticities span no area.
[[nodiscard]] Profile makeRGBProfile(cmsContext context, const Chromaticities &xy, const std::array<float, 256> &light);

/// sRGB's primaries and light as it is.
[[nodiscard]] Profile makeLinearProfile(cmsContext context);

/// PNG's gAMA and cHRM. Null for values no picture has.
[[nodiscard]] Profile makeProfile(cmsContext context, const GammaAndPrimaries &colour);

/// The file's own. Null unless it describes RGB or grey values and can be read.
[[nodiscard]] Profile openProfile(cmsContext context, const std::vector<std::byte> &icc);

} // namespace tallowmere
