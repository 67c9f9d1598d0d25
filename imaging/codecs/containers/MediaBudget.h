// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/codecs/Codec.h"
#include "imaging/codecs/containers/MediaFile.h"

#include <variant>

namespace tallowmere {

/// How much a library takes for what it decodes.
struct LibraryCosts
{
    unsigned copiesOfCoded = 2;       ///< of the planes of a picture while it is being decoded
    unsigned bookkeepingPerPixel = 1; ///< bytes
    unsigned tilesAtOnce = 1;         ///< of a grid
    bool alphaBesideColour = false;   ///< both are being decoded at once
    bool deliversRgb = false;         ///< planes of full size, whatever the sampling
};

/// What decoding the primary item will take, found before any library has seen the file.
struct MediaBudget
{
    PixelSize stored;                 ///< as coded: before any transformation
    std::uint64_t largestPicture = 0; ///< pixels; of the coded ones, and of what they are put together to
    std::uint64_t workingBytes = 0;   ///< the result included
    bool hasAlpha = false;

    /// A failure when the file is damaged, or asks for more than @p limits allow: too large a picture, too many
    /// tiles, items that contain themselves.
    [[nodiscard]] static std::variant<MediaBudget, DecodeFailure> of(const MediaFile &file, const DecodeLimits &limits,
                                                                     const LibraryCosts &costs);
};

/// The size of the primary item as coded. Nothing when the file doesn't say.
[[nodiscard]] std::optional<PixelSize> storedSizeOfPrimary(std::span<const std::byte> file);

} // namespace tallowmere
