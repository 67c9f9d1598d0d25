// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/codecs/containers/PlanarRows.h"

#include "imaging/codecs/containers/ExactConversion.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>

namespace tallowmere {
namespace {

constexpr std::size_t kBytesPerPixel = 4;
/// High enough that the overlap costs little, low enough to stay in the second-level cache.
constexpr std::uint32_t kStripRows = 64;
/// Chroma is interpolated between rows: a strip needs its neighbours. Even, because chroma rows are shared by two.
constexpr std::uint32_t kOverlapRows = 2;

struct ImageDeleter
{
    void operator()(avifImage *image) const { avifImageDestroy(image); }
};

/// Some rows of the picture as BGRA.
class Strip final
{
public:
    explicit Strip(const avifImage &image)
        : m_image(image), m_view(avifImageCreateEmpty()), m_exact(ExactConversion::of(image)),
          m_rowBytes(image.width * kBytesPerPixel),
          m_pixels(new (std::nothrow) std::uint8_t[m_rowBytes * (kStripRows + 2 * kOverlapRows)])
    {}

    [[nodiscard]] bool isNull() const { return !m_view || !m_pixels; }

    /// Rows @p first (even) to @p end, for the sake of those from @p wanted to @p wantedEnd.
    [[nodiscard]] bool convert(std::uint32_t first, std::uint32_t wanted, std::uint32_t wantedEnd, std::uint32_t end)
    {
        m_first = first;
        if (!m_exact)
            return convertByLibrary(end);
        for (std::uint32_t y = wanted; y < wantedEnd; ++y)
            m_exact->convertRow(y, rowAt(y));
        return true;
    }

    [[nodiscard]] const std::uint8_t *row(std::uint32_t y) const { return rowAt(y); }

private:
    [[nodiscard]] std::uint8_t *rowAt(std::uint32_t y) const { return m_pixels.get() + (y - m_first) * m_rowBytes; }

    [[nodiscard]] bool convertByLibrary(std::uint32_t end)
    {
        const avifCropRect area{0, m_first, m_image.width, end - m_first};
        if (avifImageSetViewRect(m_view.get(), &m_image, &area) != AVIF_RESULT_OK)
            return false;
        m_view->alphaPlane = nullptr; // alpha goes its own way, see applyAlpha()
        m_view->alphaPremultiplied = AVIF_FALSE;
        avifRGBImage rgb;
        avifRGBImageSetDefaults(&rgb, m_view.get());
        rgb.depth = 8;
        rgb.format = AVIF_RGB_FORMAT_BGRA;
        rgb.pixels = m_pixels.get();
        rgb.rowBytes = static_cast<std::uint32_t>(m_rowBytes);
        return avifImageYUVToRGB(m_view.get(), &rgb) == AVIF_RESULT_OK;
    }

    const avifImage &m_image;
    std::unique_ptr<avifImage, ImageDeleter> m_view;
    std::optional<ExactConversion> m_exact;
    std::size_t m_rowBytes;
    std::unique_ptr<std::uint8_t[]> m_pixels;
    std::uint32_t m_first = 0;
};

/// Alpha reduced to 8 bits with rounding.
unsigned alphaSample(const AlphaPlane &alpha, const std::uint8_t *row, std::size_t x)
{
    if (alpha.depth <= 8)
        return row[x];
    std::uint16_t sample = 0;
    std::memcpy(&sample, row + x * 2, 2);
    const unsigned full = (1U << alpha.depth) - 1;
    return (std::min<unsigned>(sample, full) * 255U + full / 2) / full;
}

unsigned straightened(unsigned value, unsigned alpha)
{
    return alpha == 0 ? 0 : std::min(255U, (value * 255U + alpha / 2) / alpha);
}

void applyAlpha(std::byte *row, const AlphaPlane &alpha, const Placement &part, std::uint32_t y)
{
    const std::uint8_t *samples = alpha.data + y * alpha.rowBytes;
    for (std::uint32_t x = 0; x < part.size.width; ++x) {
        std::byte *pixel = row + x * kBytesPerPixel;
        const unsigned opacity = alphaSample(alpha, samples, std::size_t{part.x} + x);
        pixel[3] = static_cast<std::byte>(opacity);
        if (!alpha.premultiplied)
            continue;
        for (int c = 0; c < 3; ++c)
            pixel[c] = static_cast<std::byte>(straightened(std::to_integer<unsigned>(pixel[c]), opacity));
    }
}

} // namespace

std::optional<DecodeFailure> deliverPlanes(const avifImage &image, const AlphaPlane &alpha, const Placement &placement,
                                           std::uint32_t rowsReady, const DecodeLimits &limits, RowSink &sink)
{
    Strip strip(image);
    if (strip.isNull())
        return DecodeFailure::outOfMemory;
    const std::uint32_t available = std::min(rowsReady, image.height);
    const std::uint32_t end = std::min(placement.y + placement.size.height, available);
    for (std::uint32_t y = placement.y; y < end;) {
        if (limits.cancelled && limits.cancelled())
            return DecodeFailure::cancelled;
        const std::uint32_t first = (y - std::min(y, kOverlapRows)) & ~1U;
        const std::uint32_t next = std::min(end, (y & ~1U) + kStripRows);
        if (!strip.convert(first, y, next, std::min(available, next + kOverlapRows)))
            return DecodeFailure::unsupported;
        for (; y < next; ++y) {
            std::byte *row = sink.nextRow();
            std::memcpy(row, strip.row(y) + placement.x * kBytesPerPixel, placement.size.width * kBytesPerPixel);
            if (alpha.data)
                applyAlpha(row, alpha, placement, y);
            if (!sink.rowDone())
                return sink.failure();
        }
    }
    return end > placement.y ? std::nullopt : std::optional(DecodeFailure::corrupt);
}

} // namespace tallowmere
