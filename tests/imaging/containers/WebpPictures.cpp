// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "WebpPictures.h"

#include <webp/encode.h>

#include <stdexcept>

namespace tallowmere {
namespace {

Bytes littleEndian(std::uint32_t value, std::size_t count)
{
    Bytes result;
    for (std::size_t i = 0; i < count; ++i)
        result.push_back(static_cast<std::byte>(value >> (8 * i)));
    return result;
}

} // namespace

Bytes makeWebp(PixelSize size, bool lossless, const PaintFunction &paint)
{
    std::vector<std::uint8_t> pixels;
    for (std::uint32_t y = 0; y < size.height; ++y) {
        for (std::uint32_t x = 0; x < size.width; ++x) {
            const auto pixel = paint(x, y);
            pixels.insert(pixels.end(), pixel.begin(), pixel.end());
        }
    }
    const int width = static_cast<int>(size.width);
    const int height = static_cast<int>(size.height);
    std::uint8_t *output = nullptr;
    const std::size_t length = lossless ? WebPEncodeLosslessRGBA(pixels.data(), width, height, width * 4, &output)
                                        : WebPEncodeRGBA(pixels.data(), width, height, width * 4, 90, &output);
    if (length == 0)
        throw std::runtime_error("libwebp did not encode");
    const auto *first = reinterpret_cast<const std::byte *>(output);
    Bytes file(first, first + length);
    WebPFree(output);
    return file;
}

Bytes webpBitstream(const Bytes &file)
{
    const bool extended = file[15] == std::byte{'X'};
    return {file.begin() + (extended ? 30 : 12), file.end()};
}

Bytes riffChunk(std::string_view type, std::span<const std::byte> payload)
{
    const Bytes padding(payload.size() % 2);
    return joined({bytesOf(type), littleEndian(static_cast<std::uint32_t>(payload.size()), 4), payload, padding});
}

Bytes riffFile(std::initializer_list<std::span<const std::byte>> chunks)
{
    return riffChunk("RIFF", joined({bytesOf("WEBP"), joined(chunks)}));
}

Bytes extendedHeader(unsigned flags, PixelSize canvas)
{
    return riffChunk("VP8X", joined({littleEndian(flags, 4), littleEndian(canvas.width - 1, 3),
                                     littleEndian(canvas.height - 1, 3)}));
}

Bytes animationFrame(std::uint32_t x, std::uint32_t y, PixelSize size, const Bytes &bitstream)
{
    return riffChunk("ANMF", joined({littleEndian(x / 2, 3), littleEndian(y / 2, 3), littleEndian(size.width - 1, 3),
                                     littleEndian(size.height - 1, 3), littleEndian(100, 3), Bytes(1), bitstream}));
}

Bytes animationHeader()
{
    // A background of opaque magenta, which nobody paints.
    return riffChunk("ANIM", joined({littleEndian(0xffff00ff, 4), Bytes(2)}));
}

} // namespace tallowmere
