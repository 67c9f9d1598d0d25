// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/codecs/WebpContainer.h"

#include "imaging/codecs/Exif.h"

#include <webp/decode.h>
#include <webp/demux.h>

#include <algorithm>
#include <array>
#include <cstring>

namespace tallowmere {
namespace {

/// Real profiles end far below; what is larger is not worth carrying along with every picture.
constexpr std::size_t kMaxProfileBytes = std::size_t{4} << 20;

struct DemuxerDeleter
{
    void operator()(WebPDemuxer *demuxer) const { WebPDemuxDelete(demuxer); }
};
using Demuxer = std::unique_ptr<WebPDemuxer, DemuxerDeleter>;

const std::uint8_t *bytesOf(std::span<const std::byte> data)
{
    return reinterpret_cast<const std::uint8_t *>(data.data());
}

std::span<const std::byte> spanOf(const WebPData &data)
{
    return {reinterpret_cast<const std::byte *>(data.bytes), data.size};
}

/// The first chunk of that name; empty when there is none.
std::span<const std::byte> chunk(const WebPDemuxer *demuxer, const char (&name)[5])
{
    WebPChunkIterator iterator{};
    if (!WebPDemuxGetChunk(demuxer, name, 1, &iterator))
        return {};
    const auto payload = spanOf(iterator.chunk); // points into the file, not into the iterator
    WebPDemuxReleaseChunkIterator(&iterator);
    return payload;
}

ColourDescription colourOf(std::span<const std::byte> profile)
{
    ColourDescription colour;
    if (!profile.empty() && profile.size() <= kMaxProfileBytes)
        colour.icc = std::make_shared<const std::vector<std::byte>>(profile.begin(), profile.end());
    return colour;
}

/// What the bitstream's own header says of the frame.
bool readFrameHeader(WebpContainer &container)
{
    WebPBitstreamFeatures features{};
    if (WebPGetFeatures(bytesOf(container.bitstream), container.bitstream.size(), &features) != VP8_STATUS_OK ||
        features.width <= 0 || features.height <= 0)
        return false;
    container.frame = {static_cast<std::uint32_t>(features.width), static_cast<std::uint32_t>(features.height)};
    container.frameHasAlpha = features.has_alpha != 0;
    container.lossless = features.format == 2;
    return true;
}

/// The chunks are out of order or contradict one another, yet the picture may still be readable.
std::optional<WebpContainer> readBitstreamOnly(std::span<const std::byte> file)
{
    WebpContainer container;
    container.bitstream = file;
    if (!readFrameHeader(container))
        return std::nullopt;
    container.canvas = container.frame;
    container.hasAlpha = container.frameHasAlpha;
    return container;
}

} // namespace

std::optional<WebpContainer> WebpContainer::read(std::span<const std::byte> file)
{
    const WebPData data{bytesOf(file), file.size()};
    WebPDemuxState state = WEBP_DEMUX_PARSE_ERROR;
    const Demuxer demuxer(WebPDemuxPartial(&data, &state));
    WebPIterator frame{};
    if (!demuxer || !WebPDemuxGetFrame(demuxer.get(), 1, &frame))
        return readBitstreamOnly(file);

    WebpContainer container;
    container.bitstream = spanOf(frame.fragment);
    container.frameX = static_cast<std::uint32_t>(std::max(frame.x_offset, 0));
    container.frameY = static_cast<std::uint32_t>(std::max(frame.y_offset, 0));
    WebPDemuxReleaseIterator(&frame);
    if (!readFrameHeader(container))
        return std::nullopt;

    container.canvas = {WebPDemuxGetI(demuxer.get(), WEBP_FF_CANVAS_WIDTH),
                        WebPDemuxGetI(demuxer.get(), WEBP_FF_CANVAS_HEIGHT)};
    const auto &canvas = container.canvas;
    if (container.frameX > canvas.width || container.frame.width > canvas.width - container.frameX ||
        container.frameY > canvas.height || container.frame.height > canvas.height - container.frameY)
        return std::nullopt;

    const bool animated = (WebPDemuxGetI(demuxer.get(), WEBP_FF_FORMAT_FLAGS) & ANIMATION_FLAG) != 0;
    // A still picture's flag may promise an alpha that the bitstream lacks: the bitstream knows. A canvas larger
    // than its first frame is bare around it; the background colour is a hint that viewers leave aside.
    container.hasAlpha = container.frameHasAlpha || (animated && container.frame != canvas);
    container.colour = colourOf(chunk(demuxer.get(), "ICCP"));
    container.orientation = orientationFromExifBlock(chunk(demuxer.get(), "EXIF"));
    return container;
}

} // namespace tallowmere
