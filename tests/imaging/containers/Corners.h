// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/codecs/Decode.h"

#include <string>

namespace tallowmere {

/// The letter of a strong colour: R, G, B, W, K; "-" where it is transparent, "?" for anything else.
[[nodiscard]] inline char colourLetter(const std::byte *bgra)
{
    const auto level = [&](int i) { return std::to_integer<int>(bgra[i]) > 127; };
    if (std::to_integer<int>(bgra[3]) < 64)
        return '-';
    const int bits = (level(2) ? 4 : 0) | (level(1) ? 2 : 0) | (level(0) ? 1 : 0);
    return "KBG?R??W"[bits];
}

/// The colours in the middle of the four quarters, row by row; why it failed, if it did.
[[nodiscard]] inline std::string cornersOf(const DecodeResult &result)
{
    if (const auto *failure = std::get_if<DecodeFailure>(&result))
        return "failure " + std::to_string(static_cast<int>(*failure));
    const PixelBuffer &pixels = std::get<DecodedImage>(result).pixels;
    const PixelSize size = pixels.size();
    std::string letters;
    for (const std::uint32_t y : {size.height / 4, size.height * 3 / 4}) {
        for (const std::uint32_t x : {size.width / 4, size.width * 3 / 4})
            letters += colourLetter(pixels.row(y) + std::size_t{x} * PixelBuffer::kBytesPerPixel);
    }
    return letters;
}

} // namespace tallowmere
