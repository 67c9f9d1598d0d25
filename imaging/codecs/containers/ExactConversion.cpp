// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/codecs/containers/ExactConversion.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace tallowmere {
namespace {

/// The shares of red and blue in luma (H.273, table 4).
std::optional<std::pair<float, float>> lumaShares(avifMatrixCoefficients matrix)
{
    switch (matrix) {
    case AVIF_MATRIX_COEFFICIENTS_BT709:
        return std::pair{0.2126F, 0.0722F};
    case AVIF_MATRIX_COEFFICIENTS_FCC:
        return std::pair{0.30F, 0.11F};
    case AVIF_MATRIX_COEFFICIENTS_UNSPECIFIED: // taken for BT.601, as everywhere
    case AVIF_MATRIX_COEFFICIENTS_BT470BG:
    case AVIF_MATRIX_COEFFICIENTS_BT601:
        return std::pair{0.299F, 0.114F};
    case AVIF_MATRIX_COEFFICIENTS_SMPTE240:
        return std::pair{0.212F, 0.087F};
    case AVIF_MATRIX_COEFFICIENTS_BT2020_NCL:
        return std::pair{0.2627F, 0.0593F};
    default:
        return std::nullopt;
    }
}

std::uint32_t sampleAt(const std::uint8_t *row, std::size_t x, bool wide)
{
    if (!wide)
        return row[x];
    std::uint16_t sample = 0;
    std::memcpy(&sample, row + x * 2, sizeof sample);
    return sample;
}

template <typename Function>
void forEachSample(const std::uint8_t *row, std::size_t count, bool wide, Function function)
{
    // Two loops, so that the compiler vectorises each.
    if (wide) {
        for (std::size_t x = 0; x < count; ++x)
            function(x, sampleAt(row, x, true));
    } else {
        for (std::size_t x = 0; x < count; ++x)
            function(x, row[x]);
    }
}

/// Rounded, then limited: compilers vectorise limits of integers, but not those of floats that may trap, and no call of
/// lround(). Values below -0.5 are rounded wrongly, to something that is limited to 0 in any case.
int toByte(float value)
{
    constexpr float kHalf = 0.5F;
    return std::clamp(static_cast<int>(value + kHalf), 0, 255);
}

struct Coefficients
{
    float redFromCr;
    float greenFromCb;
    float greenFromCr;
    float blueFromCb;
};

template <typename Sample>
void interleave(const Sample *__restrict green, const Sample *__restrict blue, const Sample *__restrict red,
                float scale, std::size_t count, std::uint8_t *__restrict bgra)
{
    const auto reduced = [=](Sample value) {
        if constexpr (sizeof(Sample) == 1)
            return static_cast<int>(value);
        else
            return toByte(static_cast<float>(static_cast<int>(value)) * scale);
    };
    for (std::size_t x = 0; x < count; ++x) {
        const int pixel =
            reduced(blue[x]) | reduced(green[x]) << 8 | reduced(red[x]) << 16 | static_cast<int>(0xff000000U);
        std::memcpy(bgra + x * 4, &pixel, 4);
    }
}

void toPixels(const float *__restrict luma, const float *__restrict cb, const float *__restrict cr,
              Coefficients factors, std::size_t count, std::uint8_t *__restrict bgra)
{
    for (std::size_t x = 0; x < count; ++x) {
        const int blue = toByte(luma[x] + factors.blueFromCb * cb[x]);
        const int green = toByte(luma[x] - factors.greenFromCb * cb[x] - factors.greenFromCr * cr[x]);
        const int red = toByte(luma[x] + factors.redFromCr * cr[x]);
        const int pixel = blue | green << 8 | red << 16 | static_cast<int>(0xff000000U);
        std::memcpy(bgra + x * 4, &pixel, 4); // little-endian, like everything that reads these rows
    }
}

} // namespace

std::optional<ExactConversion> ExactConversion::of(const avifImage &image)
{
    if (image.matrixCoefficients == AVIF_MATRIX_COEFFICIENTS_IDENTITY) {
        const bool plain = image.yuvFormat == AVIF_PIXEL_FORMAT_YUV444 && image.yuvRange == AVIF_RANGE_FULL;
        return plain ? std::optional(ExactConversion(image, 0, 0)) : std::nullopt;
    }
    const auto shares = lumaShares(image.matrixCoefficients);
    const bool steep =
        image.yuvRange == AVIF_RANGE_LIMITED && (image.matrixCoefficients == AVIF_MATRIX_COEFFICIENTS_BT709 ||
                                                 image.matrixCoefficients == AVIF_MATRIX_COEFFICIENTS_BT2020_NCL);
    if (!shares || (image.depth == 8 && (!steep || image.yuvFormat == AVIF_PIXEL_FORMAT_YUV400)))
        return std::nullopt;
    return ExactConversion(image, shares->first, shares->second);
}

ExactConversion::ExactConversion(const avifImage &image, float red, float blue)
    : m_image(image), m_redFromCr(2 * (1 - red)), m_blueFromCb(2 * (1 - blue)), m_luma(image.width), m_cb(image.width),
      m_cr(image.width), m_blended(image.width)
{
    const float green = 1 - red - blue;
    m_greenFromCb = blue * m_blueFromCb / green;
    m_greenFromCr = red * m_redFromCr / green;
    const bool limited = image.yuvRange == AVIF_RANGE_LIMITED;
    const auto full = static_cast<float>((1U << image.depth) - 1);
    const auto unit = static_cast<float>(1U << (image.depth - 8));
    m_lumaScale = limited ? 255.0F / (219 * unit) : 255.0F / full;
    m_lumaOffset = limited ? 16 * unit : 0.0F;
    m_chromaScale = (limited ? 255.0F / (224 * unit) : 255.0F / full) / 16;
    m_chromaOffset = 128 * unit * 16;
}

void ExactConversion::loadLuma(std::uint32_t y)
{
    const std::uint8_t *row = m_image.yuvPlanes[AVIF_CHAN_Y] + std::size_t{y} * m_image.yuvRowBytes[AVIF_CHAN_Y];
    float *__restrict out = m_luma.data();
    const float scale = m_lumaScale;
    const float offset = m_lumaOffset;
    forEachSample(row, m_image.width, m_image.depth > 8, [=](std::size_t x, std::uint32_t sample) {
        out[x] = (static_cast<float>(static_cast<int>(sample)) - offset) * scale;
    });
}

void ExactConversion::loadChroma(int plane, std::uint32_t y, std::vector<float> &samples)
{
    avifPixelFormatInfo info{};
    avifGetPixelFormatInfo(m_image.yuvFormat, &info);
    const bool wide = m_image.depth > 8;
    const std::uint32_t columns = (m_image.width + info.chromaShiftX) >> info.chromaShiftX;
    const std::uint32_t rows = (m_image.height + info.chromaShiftY) >> info.chromaShiftY;
    const auto rowAt = [&](std::uint32_t index) {
        return m_image.yuvPlanes[plane] + std::size_t{index} * m_image.yuvRowBytes[plane];
    };
    const std::uint32_t near = y >> info.chromaShiftY;
    std::uint32_t far = near;
    if (info.chromaShiftY != 0)
        far = (y & 1U) != 0 ? std::min(near + 1, rows - 1) : near - std::min(near, 1U);

    std::uint16_t *__restrict blended = m_blended.data();
    forEachSample(rowAt(near), columns, wide,
                  [=](std::size_t x, std::uint32_t sample) { blended[x] = static_cast<std::uint16_t>(3 * sample); });
    forEachSample(rowAt(far), columns, wide, [=](std::size_t x, std::uint32_t sample) {
        blended[x] = static_cast<std::uint16_t>(blended[x] + sample);
    });

    const float scale = m_chromaScale;
    const float offset = m_chromaOffset;
    const auto value = [=](int sixteenfold) { return (static_cast<float>(sixteenfold) - offset) * scale; };
    float *__restrict out = samples.data();
    if (info.chromaShiftX == 0) {
        for (std::uint32_t x = 0; x < columns; ++x)
            out[x] = value(4 * blended[x]);
        return;
    }
    out[0] = value(4 * blended[0]);
    for (std::uint32_t c = 0; c + 1 < columns; ++c) {
        out[2 * c + 1] = value(3 * blended[c] + blended[c + 1]);
        out[2 * c + 2] = value(3 * blended[c + 1] + blended[c]);
    }
    if (m_image.width == 2 * columns)
        out[m_image.width - 1] = value(4 * blended[columns - 1]);
}

void ExactConversion::interleaveRow(std::uint32_t y, std::uint8_t *bgra) const
{
    const auto row = [&](int plane) { return m_image.yuvPlanes[plane] + std::size_t{y} * m_image.yuvRowBytes[plane]; };
    const auto wide = [&](int plane) { return reinterpret_cast<const std::uint16_t *>(row(plane)); };
    if (m_image.depth > 8)
        interleave(wide(0), wide(1), wide(2), m_lumaScale, m_image.width, bgra);
    else
        interleave<std::uint8_t>(row(0), row(1), row(2), m_lumaScale, m_image.width, bgra);
}

void ExactConversion::convertRow(std::uint32_t y, std::uint8_t *bgra)
{
    if (m_image.matrixCoefficients == AVIF_MATRIX_COEFFICIENTS_IDENTITY)
        return interleaveRow(y, bgra);
    loadLuma(y);
    if (m_image.yuvFormat != AVIF_PIXEL_FORMAT_YUV400) {
        loadChroma(AVIF_CHAN_U, y, m_cb);
        loadChroma(AVIF_CHAN_V, y, m_cr);
    }
    toPixels(m_luma.data(), m_cb.data(), m_cr.data(), {m_redFromCr, m_greenFromCb, m_greenFromCr, m_blueFromCb},
             m_image.width, bgra);
}

} // namespace tallowmere
