// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "tests/imaging/codecs/Pictures.h"

// WebP files: bitstreams by libwebp's encoder, the chunks around them put together here.
namespace tallowmere {

using PaintFunction = std::function<std::array<std::uint8_t, 4>(std::uint32_t x, std::uint32_t y)>; ///< R, G, B, A

/// A whole file with nothing but the bitstream and, if there is any, its alpha.
[[nodiscard]] Bytes makeWebp(PixelSize size, bool lossless, const PaintFunction &paint);
/// The chunks of such a file: VP8L, or VP8, or ALPH and VP8.
[[nodiscard]] Bytes webpBitstream(const Bytes &file);
[[nodiscard]] Bytes riffChunk(std::string_view type, std::span<const std::byte> payload);
[[nodiscard]] Bytes riffFile(std::initializer_list<std::span<const std::byte>> chunks);

enum WebpFlags : unsigned
{
    kWebpAnimation = 2,
    kWebpExif = 8,
    kWebpAlpha = 16,
    kWebpProfile = 32
};
[[nodiscard]] Bytes extendedHeader(unsigned flags, PixelSize canvas);
/// Where a frame lies on the canvas: both even.
[[nodiscard]] Bytes animationFrame(std::uint32_t x, std::uint32_t y, PixelSize size, const Bytes &bitstream);
[[nodiscard]] Bytes animationHeader();

} // namespace tallowmere
