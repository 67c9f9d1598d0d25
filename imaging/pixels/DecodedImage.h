// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/pixels/ColourDescription.h"
#include "imaging/pixels/PixelBuffer.h"

namespace tallowmere {

/// A picture ready to be looked at but for its colours, which are still those of the file.
struct DecodedImage
{
    PixelBuffer pixels;    ///< premultiplied BGRA in memory order; alpha is 255 throughout when hasAlpha is false
    bool hasAlpha = false; ///< the stored picture has an alpha channel, be it opaque everywhere
    PixelSize storedSize;  ///< as the header says: before orientation and before the limit
    ColourDescription colour;
};

} // namespace tallowmere
