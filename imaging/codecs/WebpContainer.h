// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/pixels/ColourDescription.h"
#include "imaging/pixels/Orientation.h"
#include "imaging/pixels/PixelSize.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace tallowmere {

/// What the chunks around a WebP bitstream say. Nothing is decoded yet.
struct WebpContainer
{
    PixelSize canvas;
    std::uint32_t frameX = 0; ///< pixels; where the first frame lies on the canvas
    std::uint32_t frameY = 0;
    PixelSize frame;
    bool frameHasAlpha = false;
    bool hasAlpha = false; ///< of the canvas: also true when the first frame leaves a part of it bare
    bool lossless = false;
    std::span<const std::byte> bitstream; ///< of the first frame, inside the file
    Orientation orientation = Orientation::upright;
    ColourDescription colour;

    /// Nothing when the headers are damaged. A truncated @p file will do. The result points into @p file.
    [[nodiscard]] static std::optional<WebpContainer> read(std::span<const std::byte> file);
};

} // namespace tallowmere
