// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/codecs/containers/HeifPlanes.h"

namespace tallowmere {
namespace {

struct NclxDeleter
{
    void operator()(heif_color_profile_nclx *nclx) const { heif_nclx_color_profile_free(nclx); }
};

avifPixelFormat formatOf(heif_chroma chroma)
{
    switch (chroma) {
    case heif_chroma_monochrome:
        return AVIF_PIXEL_FORMAT_YUV400;
    case heif_chroma_420:
        return AVIF_PIXEL_FORMAT_YUV420;
    case heif_chroma_422:
        return AVIF_PIXEL_FORMAT_YUV422;
    case heif_chroma_444:
        return AVIF_PIXEL_FORMAT_YUV444;
    default:
        return AVIF_PIXEL_FORMAT_NONE;
    }
}

/// A plane of the size and depth expected; null otherwise.
const std::uint8_t *planeOf(const heif_image *image, heif_channel channel, PixelSize size, int depth, int *stride)
{
    if (!heif_image_has_channel(image, channel) || heif_image_get_bits_per_pixel_range(image, channel) != depth ||
        heif_image_get_width(image, channel) < static_cast<int>(size.width) ||
        heif_image_get_height(image, channel) < static_cast<int>(size.height))
        return nullptr;
    return heif_image_get_plane_readonly(image, channel, stride);
}

} // namespace

std::optional<HeifPlanes> HeifPlanes::of(const heif_image *image)
{
    const bool rgb = heif_image_get_colorspace(image) == heif_colorspace_RGB;
    const heif_channel first = rgb ? heif_channel_G : heif_channel_Y;
    const avifPixelFormat format = formatOf(heif_image_get_chroma_format(image));
    const int width = heif_image_get_width(image, first);
    const int height = heif_image_get_height(image, first);
    const int depth = heif_image_get_bits_per_pixel_range(image, first);
    if (format == AVIF_PIXEL_FORMAT_NONE || width <= 0 || height <= 0 || (depth != 8 && depth != 10 && depth != 12))
        return std::nullopt;

    HeifPlanes planes;
    planes.m_colour.reset(avifImageCreate(static_cast<std::uint32_t>(width), static_cast<std::uint32_t>(height),
                                          static_cast<std::uint32_t>(depth), format));
    if (!planes.m_colour)
        return std::nullopt;
    // With the identity matrix green stands where luma does, then blue, then red (H.273, 8.3).
    constexpr heif_channel kRgb[] = {heif_channel_G, heif_channel_B, heif_channel_R};
    constexpr heif_channel kYuv[] = {heif_channel_Y, heif_channel_Cb, heif_channel_Cr};
    const int count = format == AVIF_PIXEL_FORMAT_YUV400 ? 1 : 3;
    if (!planes.borrow(image, rgb ? kRgb : kYuv, count) || !planes.borrowAlpha(image))
        return std::nullopt;
    planes.readRange(image, rgb);
    return planes;
}

bool HeifPlanes::borrow(const heif_image *image, const heif_channel (&channels)[3], int count)
{
    avifPixelFormatInfo info{};
    avifGetPixelFormatInfo(m_colour->yuvFormat, &info);
    const PixelSize luma{m_colour->width, m_colour->height};
    const PixelSize chroma{(luma.width + (1U << info.chromaShiftX) - 1) >> info.chromaShiftX,
                           (luma.height + (1U << info.chromaShiftY) - 1) >> info.chromaShiftY};
    m_colour->imageOwnsYUVPlanes = AVIF_FALSE;
    for (int i = 0; i < count; ++i) {
        int stride = 0;
        const auto *plane =
            planeOf(image, channels[i], i == 0 ? luma : chroma, static_cast<int>(m_colour->depth), &stride);
        if (!plane || stride <= 0)
            return false;
        m_colour->yuvPlanes[i] = const_cast<std::uint8_t *>(plane); // only ever read
        m_colour->yuvRowBytes[i] = static_cast<std::uint32_t>(stride);
    }
    return true;
}

bool HeifPlanes::borrowAlpha(const heif_image *image)
{
    if (!heif_image_has_channel(image, heif_channel_Alpha))
        return true;
    const int depth = heif_image_get_bits_per_pixel_range(image, heif_channel_Alpha);
    int stride = 0;
    m_alpha.data = planeOf(image, heif_channel_Alpha, {m_colour->width, m_colour->height}, depth, &stride);
    m_alpha.rowBytes = static_cast<std::size_t>(stride);
    m_alpha.depth = static_cast<unsigned>(depth);
    return m_alpha.data && depth >= 8 && depth <= 16;
}

void HeifPlanes::readRange(const heif_image *image, bool rgb)
{
    m_colour->yuvRange = AVIF_RANGE_FULL;
    if (rgb) {
        m_colour->matrixCoefficients = AVIF_MATRIX_COEFFICIENTS_IDENTITY;
        return;
    }
    heif_color_profile_nclx *found = nullptr;
    if (heif_image_get_nclx_color_profile(image, &found).code != heif_error_Ok || !found)
        return;
    const std::unique_ptr<heif_color_profile_nclx, NclxDeleter> nclx(found);
    m_colour->colorPrimaries = static_cast<avifColorPrimaries>(nclx->color_primaries);
    m_colour->matrixCoefficients = static_cast<avifMatrixCoefficients>(nclx->matrix_coefficients);
    m_colour->yuvRange = nclx->full_range_flag != 0 ? AVIF_RANGE_FULL : AVIF_RANGE_LIMITED;
}

} // namespace tallowmere
