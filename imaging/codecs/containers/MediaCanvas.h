// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/codecs/containers/MediaFile.h"

namespace tallowmere {

/// What the data of a "grid" (ISO/IEC 23008-12, 6.6.2.3) or an "iovl" item (6.6.2.2) says of the picture that is put
/// together from others.
struct MediaCanvas
{
    PixelSize size;
    unsigned columns = 0; ///< of tiles; none in an overlay
    unsigned rows = 0;

    /// Nothing when the data breaks off. The size may be empty.
    [[nodiscard]] static std::optional<MediaCanvas> of(const MediaItem &item);
};

} // namespace tallowmere
