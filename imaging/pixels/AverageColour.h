// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/pixels/PixelBuffer.h"

#include <array>
#include <cstdint>

namespace tallowmere {

/// The mean of all premultiplied pixels, each channel rounded to 8 bits, in the order R, G, B, A. No colour
/// management: stored values are averaged as they stand. Any thread.
[[nodiscard]] std::array<std::uint8_t, 4> averageColour(const PixelBuffer &pixels);

} // namespace tallowmere
