// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/pixels/DecodedImage.h"

#include <functional>

namespace tallowmere {

/// A copy of @p image at exactly @p size device pixels, reduced with a proper filter (never enlarged: @p size is
/// at most the image's own size on both axes) and converted to sRGB; premultiplied BGRA. Spreads over the cores
/// where that pays. Null when there is no room or @p cancelled (may be empty) said true. Any thread.
[[nodiscard]] PixelBuffer makeDisplayCopy(
    const DecodedImage &image, PixelSize size, const std::function<bool()> &cancelled = {});

/// Converts straight or premultiplied BGRA rows from a file's colour space to sRGB.
///
/// Made once per colour description (lcms2 links are costly) and shared; a conversion that changes nothing is
/// free. Premultiplied rows are converted as their straight values. Threads: any, at once.
class ColourConversion;

} // namespace tallowmere
