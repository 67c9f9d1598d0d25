// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/codecs/ImageAssembler.h"
#include "tests/imaging/pixels/Pictures.h"

#include <algorithm>

namespace tallowmere {

inline RowLayout layoutOf(PixelSize size, Orientation orientation = Orientation::upright, bool hasAlpha = false)
{
    RowLayout layout;
    layout.rows = layout.storedSize = size;
    layout.orientation = orientation;
    layout.hasAlpha = hasAlpha;
    return layout;
}

/// Does what a codec does: delivers @p count rows of straight pixels made by @p colour(x, y), as long as they are
/// wanted.
template <typename Colour>
void deliver(ImageAssembler &assembler, PixelSize rows, std::uint32_t count, Colour colour)
{
    for (std::uint32_t y = 0; y < count; ++y) {
        std::byte *row = assembler.nextRow();
        for (std::uint32_t x = 0; x < rows.width; ++x) {
            const Pixel pixel = colour(x, y);
            std::memcpy(row + std::size_t{x} * 4, pixel.data(), 4);
        }
        if (!assembler.rowDone())
            return;
    }
}

template <typename Colour>
std::optional<DecodedImage> assemble(const DecodeLimits &limits, const RowLayout &layout, Colour colour)
{
    ImageAssembler assembler(limits);
    if (!assembler.begin(layout))
        return std::nullopt;
    deliver(assembler, layout.rows, layout.rows.height, colour);
    return assembler.take();
}

inline DecodeLimits limitsOf(std::uint32_t maxSide)
{
    DecodeLimits limits;
    limits.maxSide = maxSide;
    return limits;
}

} // namespace tallowmere
