// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <avif/avif.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace tallowmere {

/// Y'CbCr to 8-bit BGRA with full-precision coefficients, interpolated chroma and rounding at the very end.
///
/// libyuv is several times as fast, but holds coefficients in seven bits, so that those above 2.0 lose their tip
/// (BT.709 and BT.2020 in limited range: blues a few steps off), and cuts chroma of more than 8 bits down before it
/// multiplies. This is for those pictures, and for planes that are RGB already.
class ExactConversion final
{
public:
    /// Nothing where libyuv is as good, or where the matrix isn't one of luma coefficients. @p image outlives this.
    [[nodiscard]] static std::optional<ExactConversion> of(const avifImage &image);

    /// Writes row @p y as width * 4 bytes; alpha is 255.
    void convertRow(std::uint32_t y, std::uint8_t *bgra);

private:
    ExactConversion(const avifImage &image, float red, float blue);

    void interleaveRow(std::uint32_t y, std::uint8_t *bgra) const;
    void loadLuma(std::uint32_t y);
    void loadChroma(int plane, std::uint32_t y, std::vector<float> &samples);

    const avifImage &m_image;
    float m_lumaScale;
    float m_lumaOffset;
    float m_chromaScale; ///< applied to sixteenfold samples
    float m_chromaOffset;
    float m_redFromCr;
    float m_greenFromCb;
    float m_greenFromCr;
    float m_blueFromCb;
    std::vector<float> m_luma;
    std::vector<float> m_cb;
    std::vector<float> m_cr;
    std::vector<std::uint16_t> m_blended; ///< one chroma row, fourfold: three parts of the nearer, one of the other
};

} // namespace tallowmere
