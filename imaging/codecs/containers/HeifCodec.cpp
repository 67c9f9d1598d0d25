// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/codecs/containers/HeifCodec.h"

#include "imaging/codecs/containers/HeifPlanes.h"
#include "imaging/codecs/containers/HeifTiles.h"
#include "imaging/codecs/containers/MediaBudget.h"

#include <memory>

namespace tallowmere {
namespace {

/// Tiles of a grid are decoded side by side.
constexpr int kThreads = 2;
constexpr std::size_t kMaxProfileBytes = std::size_t{4} << 20;

/// libde265 keeps a picture of its own beside the one it is copied to, and its tables.
constexpr LibraryCosts kCosts{2, 1, kThreads, false, true};

struct ContextDeleter
{
    void operator()(heif_context *context) const { heif_context_free(context); }
};
struct HandleDeleter
{
    void operator()(heif_image_handle *handle) const { heif_image_handle_release(handle); }
};
using Context = std::unique_ptr<heif_context, ContextDeleter>;
using Handle = std::unique_ptr<heif_image_handle, HandleDeleter>;
using Picture = std::unique_ptr<heif_image, HeifImageDeleter>;

DecodeFailure failureOf(const heif_error &error)
{
    if (error.subcode == heif_suberror_Security_limit_exceeded)
        return DecodeFailure::tooLarge;
    switch (error.code) {
    case heif_error_Memory_allocation_error:
        return DecodeFailure::outOfMemory;
    case heif_error_Unsupported_filetype:
    case heif_error_Unsupported_feature:
        return DecodeFailure::unsupported;
    default:
        return DecodeFailure::corrupt;
    }
}

/// What the item's own colour boxes say: a profile goes before code points.
ColourDescription colourOfItem(const MediaFile &media, const MediaItem &item)
{
    ColourDescription colour;
    for (const MediaProperty &property : media.properties(item)) {
        if (property.type != fourCC("colr"))
            continue;
        ByteReader reader(property.payload);
        const FourCC kind = reader.u32();
        const auto profile = reader.rest();
        if ((kind == fourCC("prof") || kind == fourCC("rICC")) && !profile.empty() &&
            profile.size() <= kMaxProfileBytes) {
            colour.icc = std::make_shared<const std::vector<std::byte>>(profile.begin(), profile.end());
        } else if (kind == fourCC("nclx")) {
            const Cicp points{reader.u16(), reader.u16(), reader.u16(), (reader.u8() & 0x80U) != 0};
            constexpr int kUnspecified = 2;
            if (reader.ok() && (points.primaries != kUnspecified || points.transfer != kUnspecified))
                colour.cicp = points;
        }
    }
    if (colour.icc)
        colour.cicp.reset();
    return colour;
}

/// Some cameras tag only the tiles of a grid.
ColourDescription colourOf(const MediaFile &media, const MediaItem &item)
{
    ColourDescription colour = colourOfItem(media, item);
    const MediaItem *tile = item.derivedFrom.empty() ? nullptr : media.item(item.derivedFrom.front());
    return colour.unknown() && tile ? colourOfItem(media, *tile) : colour;
}

/// Opens the primary picture without decoding it.
std::variant<Handle, DecodeFailure> open(heif_context *context, std::span<const std::byte> file,
                                         const DecodeLimits &limits)
{
    heif_context_set_max_decoding_threads(context, kThreads);
    // Holds for every item of the file, thumbnails and gain maps too; what the picture itself takes is settled.
    heif_context_set_maximum_image_size_limit(context, static_cast<int>(limits.maxSourceSide) + 1);
    const heif_error read = heif_context_read_from_memory_without_copy(context, file.data(), file.size(), nullptr);
    // A file that ends early is an error too, but its items are known by then: see deliverTiles().
    if (read.code != heif_error_Ok && read.subcode != heif_suberror_End_of_data)
        return failureOf(read);
    heif_image_handle *handle = nullptr;
    const heif_error error = heif_context_get_primary_image_handle(context, &handle);
    if (error.code != heif_error_Ok)
        return failureOf(read.code != heif_error_Ok ? read : error);
    return Handle(handle);
}

/// Decodes what has been found to be within the limits.
std::optional<DecodeFailure> deliver(heif_context *context, const heif_image_handle *handle, const MediaFile &media,
                                     const MediaBudget &budget, const DecodeLimits &limits, RowSink &sink)
{
    const MediaItem &primary = *media.primary();
    RowLayout layout;
    layout.storedSize = budget.stored;
    layout.colour = colourOf(media, primary);
    const auto place = [&](PixelSize decoded) {
        const Placement placement = placementOf(media, primary, decoded, TransformOrder::asListed);
        layout.rows = placement.size;
        layout.orientation = placement.orientation;
        return placement;
    };

    heif_error error{};
    const Picture picture(decodeHeifPlanes(handle, error));
    if (!picture) {
        if (primary.type != fourCC("grid") || budget.hasAlpha)
            return failureOf(error);
        const Placement placement = place(budget.stored);
        return deliverTiles(context, primary, layout, placement, failureOf(error), limits, sink);
    }
    const auto planes = HeifPlanes::of(picture.get());
    if (!planes)
        return DecodeFailure::unsupported;
    AlphaPlane alpha = planes->alpha();
    alpha.premultiplied = heif_image_handle_is_premultiplied_alpha(handle) != 0;
    layout.hasAlpha = alpha.data != nullptr;
    const PixelSize decoded{planes->colour().width, planes->colour().height};
    const Placement placement = place(decoded);
    if (!sink.begin(layout))
        return sink.failure();
    return deliverPlanes(planes->colour(), alpha, placement, decoded.height, limits, sink);
}

} // namespace

bool HeifCodec::recognises(std::span<const std::byte> head) const
{
    return mediaFamily(head) == MediaFamily::heif;
}

std::optional<PixelSize> HeifCodec::storedSize(std::span<const std::byte> file) const
{
    return storedSizeOfPrimary(file);
}

std::optional<DecodeFailure> HeifCodec::decode(std::span<const std::byte> file, const DecodeLimits &limits,
                                               RowSink &sink) const
{
    const auto media = MediaFile::read(file);
    if (!media) // a sequence without a still picture, or the short form of the container: libheif 1.15 reads neither
        return hasTracks(file) || Box::find(file, fourCC("mini")) ? DecodeFailure::unsupported : DecodeFailure::corrupt;
    const auto budget = MediaBudget::of(*media, limits, kCosts);
    if (const auto *failure = std::get_if<DecodeFailure>(&budget))
        return *failure;
    const Context context(heif_context_alloc());
    if (!context)
        return DecodeFailure::outOfMemory;
    const auto handle = open(context.get(), file, limits);
    if (const auto *failure = std::get_if<DecodeFailure>(&handle))
        return *failure;
    if (limits.cancelled && limits.cancelled())
        return DecodeFailure::cancelled;
    return deliver(context.get(), std::get<Handle>(handle).get(), *media, std::get<MediaBudget>(budget), limits, sink);
}

} // namespace tallowmere
