// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

namespace tallowmere {

/// Turns rows of ink into rows of light: CMYK samples of 8 bits into opaque sRGB as B, G, R, A.
///
/// Follows an ICC profile where there is a usable one, else the naive rule (1 - ink)(1 - black). One thread.
class CmykConversion final
{
public:
    enum class Samples
    {
        ink,
        inverted
    }; ///< inverted, as Adobe writes them: 255 is no ink

    /// @p icc may be empty; a profile that is broken or not of CMYK is left aside.
    CmykConversion(std::span<const std::byte> icc, Samples samples);
    ~CmykConversion();
    CmykConversion(const CmykConversion &) = delete;
    CmykConversion &operator=(const CmykConversion &) = delete;

    void convertRow(const std::uint8_t *cmyk, std::byte *bgra, std::uint32_t pixels) const;

private:
    struct Link;
    std::unique_ptr<Link> m_link; ///< null: the naive rule
    Samples m_samples;
};

} // namespace tallowmere
