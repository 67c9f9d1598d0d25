// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/pixels/PixelBuffer.h"

#include <functional>

namespace tallowmere {

/// A copy of @p image at exactly @p size device pixels, reduced with a proper filter (never enlarged: @p size is
/// at most the image's own size on both axes); premultiplied BGRA. Spreads over the cores where that pays. Null when
/// there is no room, when @p size is larger or empty, or when @p cancelled (may be empty; asked now and then, in the
/// caller's thread only) said true. Any thread.
[[nodiscard]] PixelBuffer makeDisplayCopy(const PixelBuffer &image, PixelSize size,
                                          const std::function<bool()> &cancelled = {});

} // namespace tallowmere
