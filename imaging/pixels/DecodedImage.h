// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/pixels/AverageColour.h"
#include "imaging/pixels/ColourDescription.h"
#include "imaging/pixels/PixelBuffer.h"

#include <optional>

namespace tallowmere {

/// A picture ready to be looked at, as soon as its colours are the screen's.
struct DecodedImage
{
    PixelBuffer pixels;       ///< premultiplied BGRA in memory order; alpha is 255 throughout when hasAlpha is false
    bool hasAlpha = false;    ///< the stored picture has an alpha channel, be it opaque everywhere
    PixelSize storedSize;     ///< as the header says: before orientation and before the limit
    ColourDescription colour; ///< of the pixels; unknown counts as the screen's
    std::optional<AverageColour> storedAverage; ///< of the pixels before they were converted; absent if they were not
};

} // namespace tallowmere
