// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/pixels/DecodedImage.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <memory>
#include <ostream>
#include <vector>

namespace tallowmere {

/// One pixel in memory order: blue, green, red, alpha.
using Pixel = std::array<std::uint8_t, 4>;

inline std::ostream &operator<<(std::ostream &out, PixelSize size)
{
    return out << size.width << " x " << size.height;
}

inline Pixel pixelAt(const PixelBuffer &pixels, std::uint32_t x, std::uint32_t y)
{
    Pixel pixel;
    std::memcpy(pixel.data(), pixels.row(y) + std::size_t{x} * 4, 4);
    return pixel;
}

inline void setPixel(PixelBuffer &pixels, std::uint32_t x, std::uint32_t y, Pixel pixel)
{
    std::memcpy(pixels.row(y) + std::size_t{x} * 4, pixel.data(), 4);
}

/// @p colour(x, y) gives each pixel.
template <typename Colour>
PixelBuffer makePixels(PixelSize size, Colour colour)
{
    PixelBuffer pixels = PixelBuffer::allocate(size);
    for (std::uint32_t y = 0; y < size.height; ++y) {
        for (std::uint32_t x = 0; x < size.width; ++x)
            setPixel(pixels, x, y, colour(x, y));
    }
    return pixels;
}

inline PixelBuffer makePlain(PixelSize size, Pixel pixel)
{
    return makePixels(size, [&](auto, auto) { return pixel; });
}

/// Every pixel of an image no larger than 256 x 256 is another colour.
inline Pixel distinct(std::uint32_t x, std::uint32_t y)
{
    return {static_cast<std::uint8_t>(x), static_cast<std::uint8_t>(y), static_cast<std::uint8_t>(x * 7 + y * 3), 255};
}

inline std::vector<Pixel> allPixels(const PixelBuffer &pixels)
{
    std::vector<Pixel> all(pixels.size().pixels());
    if (!all.empty())
        std::memcpy(all.data(), pixels.row(0), pixels.bytes());
    return all;
}

} // namespace tallowmere
