// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/codecs/containers/AvifCodec.h"

#include "imaging/codecs/containers/MediaBudget.h"
#include "imaging/codecs/containers/PlanarRows.h"

#include <algorithm>
#include <limits>
#include <memory>

namespace tallowmere {
namespace {

/// More than one gains on tiled pictures of many megapixels, and costs nothing on others.
constexpr int kThreads = 2;
/// Enough for twenty minutes at 60 frames a second; each takes a few dozen bytes though only one is shown.
constexpr std::uint32_t kMaxFrames = 72'000;
/// The largest a sample can get: 4:4:4 in 16-bit words, film grain in a second copy, the decoder's own tables.
constexpr std::uint64_t kWorstBytesPerPixel = 13;
constexpr std::size_t kMaxProfileBytes = std::size_t{4} << 20;

/// dav1d lends its planes to libavif, which keeps the decoder of every tile until the end.
constexpr LibraryCosts kCosts{1, 1, std::numeric_limits<unsigned>::max(), true};

struct DecoderDeleter
{
    void operator()(avifDecoder *decoder) const { avifDecoderDestroy(decoder); }
};
using Decoder = std::unique_ptr<avifDecoder, DecoderDeleter>;

DecodeFailure failureOf(avifResult result)
{
    switch (result) {
    case AVIF_RESULT_OUT_OF_MEMORY:
        return DecodeFailure::outOfMemory;
    case AVIF_RESULT_NOT_IMPLEMENTED:
    case AVIF_RESULT_UNSUPPORTED_DEPTH:
    case AVIF_RESULT_NO_CODEC_AVAILABLE:
        return DecodeFailure::unsupported;
    default:
        return DecodeFailure::corrupt;
    }
}

ColourDescription colourOf(const avifImage &image)
{
    ColourDescription colour;
    if (image.icc.size > 0 && image.icc.size <= kMaxProfileBytes) {
        const auto *bytes = reinterpret_cast<const std::byte *>(image.icc.data);
        colour.icc = std::make_shared<const std::vector<std::byte>>(bytes, bytes + image.icc.size);
    } else if (image.colorPrimaries != AVIF_COLOR_PRIMARIES_UNSPECIFIED ||
               image.transferCharacteristics != AVIF_TRANSFER_CHARACTERISTICS_UNSPECIFIED) {
        colour.cicp = Cicp{image.colorPrimaries, image.transferCharacteristics, image.matrixCoefficients,
                           image.yuvRange == AVIF_RANGE_FULL};
    }
    return colour;
}

/// How many pixels one coded picture may have.
std::variant<std::uint64_t, DecodeFailure> pictureLimit(const std::optional<MediaFile> &media,
                                                        std::span<const std::byte> file, const DecodeLimits &limits)
{
    const bool tracks = hasTracks(file);
    std::uint64_t pixels = 0;
    if (media && media->primary()) {
        const auto budget = MediaBudget::of(*media, limits, kCosts);
        if (const auto *failure = std::get_if<DecodeFailure>(&budget))
            return *failure;
        pixels = std::get<MediaBudget>(budget).largestPicture;
    } else if (!tracks) {
        return DecodeFailure::corrupt;
    }
    // Tracks describe themselves only as they are read: what they hold is bounded by the worst it can be.
    if (tracks)
        pixels = std::max<std::uint64_t>(pixels, limits.maxWorkingBytes / kWorstBytesPerPixel);
    return std::min<std::uint64_t>(pixels, limits.maxSourcePixels);
}

/// Hands out the file. What lies behind its end is "not here yet" to libavif, so that the upper tiles of a truncated
/// grid are decoded.
class FileSource final
{
public:
    explicit FileSource(std::span<const std::byte> file) : m_file(file)
    {
        m_io.read = read;
        m_io.persistent = AVIF_TRUE;
        m_io.sizeHint = file.size() + kMostMissing;
        m_io.data = this;
    }
    FileSource(const FileSource &) = delete;
    FileSource &operator=(const FileSource &) = delete;

    [[nodiscard]] avifIO *io() { return &m_io; }

private:
    /// libavif takes no more than this for an item, however much the file says it has.
    static constexpr std::uint64_t kMostMissing = std::uint64_t{64} << 20;
    /// Box headers are read in blocks of this size, which may reach beyond the end of a whole file.
    static constexpr std::size_t kHeaderBlock = 32;

    static avifResult read(avifIO *io, std::uint32_t, std::uint64_t offset, std::size_t size, avifROData *out)
    {
        const auto file = static_cast<const FileSource *>(io->data)->m_file;
        if (offset > file.size())
            return AVIF_RESULT_WAITING_ON_IO;
        const std::size_t left = file.size() - static_cast<std::size_t>(offset);
        if (size > left && size > kHeaderBlock)
            return AVIF_RESULT_WAITING_ON_IO;
        out->data = reinterpret_cast<const std::uint8_t *>(file.data() + offset);
        out->size = std::min(size, left);
        return AVIF_RESULT_OK;
    }

    std::span<const std::byte> m_file;
    avifIO m_io{};
};

Decoder makeDecoder(FileSource &source, std::uint64_t pixels, const DecodeLimits &limits)
{
    Decoder decoder(avifDecoderCreate());
    if (!decoder)
        return decoder;
    decoder->maxThreads = kThreads;
    decoder->strictFlags = AVIF_STRICT_DISABLED; // older encoders leave out pixi and more; every viewer shows them
    decoder->ignoreExif = AVIF_TRUE;
    decoder->ignoreXMP = AVIF_TRUE;
    decoder->imageCountLimit = kMaxFrames;
    decoder->imageDimensionLimit = limits.maxSourceSide;
    constexpr std::uint64_t kMost = AVIF_DEFAULT_IMAGE_SIZE_LIMIT; // more is refused as an invalid setting
    decoder->imageSizeLimit = static_cast<std::uint32_t>(std::min(pixels, kMost));
    decoder->allowIncremental = AVIF_TRUE;
    avifDecoderSetIO(decoder.get(), source.io());
    return decoder;
}

Placement placementIn(const std::optional<MediaFile> &media, const avifImage &image)
{
    const PixelSize size{image.width, image.height};
    if (const MediaItem *primary = media ? media->primary() : nullptr)
        return placementOf(*media, *primary, size, TransformOrder::cropRotateMirror);
    return {0, 0, size, Orientation::upright};
}

} // namespace

bool AvifCodec::recognises(std::span<const std::byte> head) const
{
    return mediaFamily(head) == MediaFamily::avif;
}

std::optional<PixelSize> AvifCodec::storedSize(std::span<const std::byte> file) const
{
    if (const auto size = storedSizeOfPrimary(file))
        return size;
    FileSource source(file);
    const Decoder decoder = makeDecoder(source, AVIF_DEFAULT_IMAGE_SIZE_LIMIT, {});
    if (!decoder || avifDecoderParse(decoder.get()) != AVIF_RESULT_OK)
        return std::nullopt;
    return PixelSize{decoder->image->width, decoder->image->height};
}

std::optional<DecodeFailure> AvifCodec::decode(std::span<const std::byte> file, const DecodeLimits &limits,
                                               RowSink &sink) const
{
    const auto media = MediaFile::read(file);
    const auto pixels = pictureLimit(media, file, limits);
    if (const auto *failure = std::get_if<DecodeFailure>(&pixels))
        return *failure;
    FileSource source(file);
    const Decoder decoder = makeDecoder(source, std::get<std::uint64_t>(pixels), limits);
    if (!decoder)
        return DecodeFailure::outOfMemory;
    if (const avifResult parsed = avifDecoderParse(decoder.get()); parsed != AVIF_RESULT_OK)
        return failureOf(parsed);
    if (limits.cancelled && limits.cancelled())
        return DecodeFailure::cancelled;
    const avifResult result = avifDecoderNextImage(decoder.get());
    const std::uint32_t rows = avifDecoderDecodedRowCount(decoder.get());
    if (result != AVIF_RESULT_OK && (result != AVIF_RESULT_WAITING_ON_IO || rows == 0))
        return failureOf(result);

    const avifImage &image = *decoder->image;
    const Placement placement = placementIn(media, image);
    const PixelSize stored = storedSizeOfPrimary(file).value_or(PixelSize{image.width, image.height});
    if (!sink.begin({placement.size, stored, placement.orientation, image.alphaPlane != nullptr, colourOf(image)}))
        return sink.failure();
    const AlphaPlane alpha{image.alphaPlane, image.alphaRowBytes, image.depth, image.alphaPremultiplied != AVIF_FALSE};
    return deliverPlanes(image, alpha, placement, rows, limits, sink);
}

} // namespace tallowmere
