// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/pixels/DecodedImage.h"

#include <functional>

namespace tallowmere {

/// Brings the pixels of @p image to sRGB, in place, and keeps what they averaged before. Spreads over the cores where
/// that pays. Where there is nothing to convert no pixel is touched. False when @p cancelled (may be empty; asked now
/// and then, in the caller's thread only) said true or there was no room: the pixels are then of no use. Any thread.
[[nodiscard]] bool convertToScreenColours(DecodedImage &image, const std::function<bool()> &cancelled = {});

} // namespace tallowmere
