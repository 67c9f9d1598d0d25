// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/codecs/containers/MediaFile.h"
#include "imaging/pixels/Orientation.h"

namespace tallowmere {

/// Which part of the stored pixels is shown, and which way up.
struct Placement
{
    std::uint32_t x = 0; ///< pixels of the stored picture
    std::uint32_t y = 0;
    PixelSize size;
    Orientation orientation = Orientation::upright;

    friend bool operator==(const Placement &, const Placement &) = default;
};

enum class TransformOrder
{
    asListed,         ///< ISO/IEC 23008-12, 6.5: as the item's properties are associated
    cropRotateMirror, ///< MIAF, which AVIF follows: clap, irot, imir, however they are listed
};

/// What the item's clap, irot and imir properties do to a decoded picture of @p stored pixels. A clean aperture
/// that makes no sense is left aside; one that sticks out is cut off at the edge.
[[nodiscard]] Placement placementOf(const MediaFile &file, const MediaItem &item, PixelSize stored,
                                    TransformOrder order);

} // namespace tallowmere
