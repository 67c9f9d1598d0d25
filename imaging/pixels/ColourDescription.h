// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace tallowmere {

/// Coding-independent code points (ITU-T H.273) of an image's colour.
struct Cicp
{
    std::uint16_t primaries = 2; ///< 2 means unspecified, in each of the three
    std::uint16_t transfer = 2;
    std::uint16_t matrix = 2;
    bool fullRange = true;

    friend bool operator==(const Cicp &, const Cicp &) = default;
};

/// A power law and the chromaticities of white, red, green and blue (PNG's gAMA and cHRM chunks).
struct GammaAndPrimaries
{
    double gamma = 1.0 / 2.2;                ///< the encoding exponent, as gAMA has it
    std::optional<std::array<double, 8>> xy; ///< white x y, red x y, green x y, blue x y; absent: those of sRGB

    friend bool operator==(const GammaAndPrimaries &, const GammaAndPrimaries &) = default;
};

/// What a file says of the meaning of its pixel values. All absent: taken for sRGB.
struct ColourDescription
{
    std::shared_ptr<const std::vector<std::byte>> icc; ///< an ICC profile as stored, unchecked
    std::optional<Cicp> cicp; ///< goes before the profile where a format says so: then icc is null
    std::optional<GammaAndPrimaries> gamma;

    [[nodiscard]] bool unknown() const { return !icc && !cicp && !gamma; }
};

} // namespace tallowmere
