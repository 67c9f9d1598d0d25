// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/Image.h"
#include "settings/SettingsManager.h"

namespace tallowmere {

/// Whether the picture was stored with an alpha channel, be it opaque everywhere. False without a bitmap.
[[nodiscard]] inline bool imageHasAlpha(const Image &image)
{
    return image.hasBitmap() && image.hasAlpha();
}

/// Whether the checkerboard lies under what is shown. @p image may be null: none is shown.
[[nodiscard]] inline bool showsCheckers(TransparencyBackground background, const ImagePtr &image)
{
    return background == TransparencyBackground::checkers && image && imageHasAlpha(*image);
}

} // namespace tallowmere
