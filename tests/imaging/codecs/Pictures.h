// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/pixels/PixelSize.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

// Pictures made on the spot, by the encoders of libjpeg and libpng, and tools to spoil them.
namespace tallowmere {

using Bytes = std::vector<std::byte>;

[[nodiscard]] Bytes bytesOf(std::string_view text);
[[nodiscard]] Bytes joined(std::initializer_list<std::span<const std::byte>> parts);

struct JpegRecipe
{
    PixelSize size{64, 48};
    int components = 3; ///< 1 grey, 3 RGB as YCbCr, 4 CMYK as YCCK if `adobe`, else as it is
    int sampling = 2;   ///< of luma, both ways
    bool progressive = false;
    bool adobe = false;
    int quality = 95;
    std::vector<std::pair<int, Bytes>> markers{}; ///< APPn numbers and what they hold
    /// The samples of the pixel at x, y; one of 128 all over when empty.
    std::function<std::array<std::uint8_t, 4>(std::uint32_t x, std::uint32_t y)> paint{};
};

[[nodiscard]] Bytes makeJpeg(const JpegRecipe &recipe);

/// Where the frame header's data (precision, height, width...) begins.
[[nodiscard]] std::size_t jpegFrameOffset(const Bytes &jpeg);
[[nodiscard]] Bytes withJpegSize(Bytes jpeg, PixelSize size);

/// A TIFF structure with an orientation and nothing else.
[[nodiscard]] Bytes tiffWithOrientation(unsigned orientation, bool littleEndian = true);
/// The same as JPEG's APP1 holds it.
[[nodiscard]] Bytes exifWithOrientation(unsigned orientation, bool littleEndian = true);

struct PngRecipe
{
    PixelSize size{40, 30};
    int depth = 8;
    int colourType = 2;
    bool interlaced = false;
    std::vector<std::array<std::uint8_t, 3>> palette{};
    std::vector<std::uint8_t> paletteAlpha{};
    /// Channel values of the pixel at x, y, in the stored depth; zero all over when empty.
    std::function<std::array<unsigned, 4>(std::uint32_t x, std::uint32_t y)> paint{};
};

/// Uses all filters where depth allows.
[[nodiscard]] Bytes makePng(const PngRecipe &recipe);

[[nodiscard]] Bytes pngChunk(std::string_view type, std::span<const std::byte> data);
/// Puts @p chunk before the first chunk of type @p before.
[[nodiscard]] Bytes withChunkBefore(const Bytes &png, std::string_view before, const Bytes &chunk);
/// Where the data of the first chunk of @p type begins; the length stands 8 bytes before.
[[nodiscard]] std::size_t pngDataOffset(const Bytes &png, std::string_view type);
[[nodiscard]] Bytes withPngSize(Bytes png, PixelSize size);
void putBigEndian(std::span<std::byte> where, std::uint32_t value);

} // namespace tallowmere
