// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/codecs/containers/HeifTiles.h"

#include "imaging/codecs/containers/HeifPlanes.h"
#include "imaging/codecs/containers/MediaCanvas.h"

#include <algorithm>
#include <cstring>

namespace tallowmere {
namespace {

constexpr std::size_t kBytesPerPixel = 4;

struct HandleDeleter
{
    void operator()(heif_image_handle *handle) const { heif_image_handle_release(handle); }
};
struct OptionsDeleter
{
    void operator()(heif_decoding_options *options) const { heif_decoding_options_free(options); }
};
using Picture = std::unique_ptr<heif_image, HeifImageDeleter>;

Picture decodeTile(heif_context *context, std::uint32_t id)
{
    heif_image_handle *handle = nullptr;
    heif_error error = heif_context_get_image_handle(context, id, &handle);
    if (error.code != heif_error_Ok)
        return nullptr;
    const std::unique_ptr<heif_image_handle, HandleDeleter> owner(handle);
    return Picture(decodeHeifPlanes(handle, error));
}

/// One row of tiles, as wide as the picture.
class Band final : public RowSink
{
public:
    explicit Band(std::uint32_t width) : m_width(width) {}

    /// The next tile starts at column @p x.
    [[nodiscard]] bool add(const avifImage &tile, std::uint32_t x, const DecodeLimits &limits)
    {
        m_x = x;
        m_row = 0;
        if (x == 0) {
            m_height = tile.height;
            const std::uint64_t bytes = PixelSize{m_width, m_height}.pixels() * kBytesPerPixel;
            if (bytes > limits.maxWorkingBytes / 4) // the budget allows for the picture, not for this
                return false;
            m_pixels.resize(static_cast<std::size_t>(bytes));
        }
        m_tileRow.resize(tile.width * kBytesPerPixel);
        return tile.height == m_height && x < m_width &&
               !deliverPlanes(tile, {}, {0, 0, {tile.width, tile.height}, Orientation::upright}, tile.height, limits,
                              *this);
    }

    [[nodiscard]] std::uint32_t width() const { return m_width; }
    [[nodiscard]] std::uint32_t height() const { return m_height; }
    [[nodiscard]] const std::byte *row(std::uint32_t y) const
    {
        return m_pixels.data() + std::size_t{y} * m_width * kBytesPerPixel;
    }

    [[nodiscard]] bool begin(const RowLayout &) override { return true; }
    [[nodiscard]] std::byte *nextRow() override { return m_tileRow.data(); }
    [[nodiscard]] bool rowDone() override
    {
        const std::size_t room = std::size_t{m_width - m_x} * kBytesPerPixel;
        std::memcpy(m_pixels.data() + (std::size_t{m_row++} * m_width + m_x) * kBytesPerPixel, m_tileRow.data(),
                    std::min(room, m_tileRow.size()));
        return true;
    }
    [[nodiscard]] DecodeFailure failure() const override { return DecodeFailure::corrupt; }

private:
    std::uint32_t m_width;
    std::uint32_t m_height = 0;
    std::uint32_t m_x = 0;
    std::uint32_t m_row = 0;
    std::vector<std::byte> m_pixels;
    std::vector<std::byte> m_tileRow;
};

/// False when a tile is missing.
bool fill(Band &band, heif_context *context, std::span<const std::uint32_t> tiles, const DecodeLimits &limits)
{
    std::uint32_t x = 0;
    for (const std::uint32_t id : tiles) {
        if (limits.cancelled && limits.cancelled())
            return false;
        const Picture tile = decodeTile(context, id);
        const auto planes = tile ? HeifPlanes::of(tile.get()) : std::nullopt;
        if (!planes || !band.add(planes->colour(), x, limits))
            return false;
        x += planes->colour().width;
    }
    return x >= band.width();
}

} // namespace

heif_image *decodeHeifPlanes(const heif_image_handle *handle, heif_error &error)
{
    const std::unique_ptr<heif_decoding_options, OptionsDeleter> options(heif_decoding_options_alloc());
    if (options)
        options->ignore_transformations = 1;
    heif_image *image = nullptr;
    error = heif_decode_image(handle, &image, heif_colorspace_undefined, heif_chroma_undefined, options.get());
    return error.code == heif_error_Ok ? image : nullptr;
}

std::optional<DecodeFailure> deliverTiles(heif_context *context, const MediaItem &grid, const RowLayout &layout,
                                          const Placement &placement, DecodeFailure whole, const DecodeLimits &limits,
                                          RowSink &sink)
{
    const auto canvas = MediaCanvas::of(grid);
    if (!canvas || grid.derivedFrom.size() != std::size_t{canvas->columns} * canvas->rows ||
        placement.size.width > canvas->size.width || placement.x > canvas->size.width - placement.size.width)
        return whole;
    Band band(canvas->size.width);
    bool begun = false;
    std::uint32_t top = 0;
    const std::uint32_t end = placement.y + placement.size.height;
    for (std::size_t r = 0; r < canvas->rows && top < end; ++r) {
        const auto tiles = std::span(grid.derivedFrom).subspan(r * canvas->columns, canvas->columns);
        if (!fill(band, context, tiles, limits))
            break;
        for (std::uint32_t y = std::max(top, placement.y); y < std::min(end, top + band.height()); ++y) {
            if (!begun && !sink.begin(layout))
                return sink.failure();
            begun = true;
            std::memcpy(sink.nextRow(), band.row(y - top) + placement.x * kBytesPerPixel,
                        placement.size.width * kBytesPerPixel);
            if (!sink.rowDone())
                return sink.failure();
        }
        top += band.height();
    }
    if (limits.cancelled && limits.cancelled())
        return DecodeFailure::cancelled;
    return begun ? std::nullopt : std::optional(whole);
}

} // namespace tallowmere
