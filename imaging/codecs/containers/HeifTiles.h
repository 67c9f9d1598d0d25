// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/codecs/Codec.h"
#include "imaging/codecs/containers/MediaFile.h"
#include "imaging/codecs/containers/Placement.h"

#include <libheif/heif.h>

namespace tallowmere {

/// Rescues the upper part of a grid that libheif as a whole refuses because the file ends early.
///
/// Decodes tile after tile; the rows of tiles that are complete go to @p sink, which is begun only if there is one.
/// @p layout and @p placement: of the whole picture. Fails as @p whole did when nothing can be had.
[[nodiscard]] std::optional<DecodeFailure> deliverTiles(heif_context *context, const MediaItem &grid,
                                                        const RowLayout &layout, const Placement &placement,
                                                        DecodeFailure whole, const DecodeLimits &limits, RowSink &sink);

/// Decodes to planes of RGB, or of grey: libheif gets there in any case, and asked for anything else it converts once
/// more, all of the picture at once. Neither turns nor crops. Null on failure, which @p error then tells.
[[nodiscard]] heif_image *decodeHeifPlanes(const heif_image_handle *handle, heif_error &error);

} // namespace tallowmere
