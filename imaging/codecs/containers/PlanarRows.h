// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/codecs/Codec.h"
#include "imaging/codecs/containers/Placement.h"

#include <avif/avif.h>

namespace tallowmere {

/// The transparency of a picture.
struct AlphaPlane
{
    const std::uint8_t *data = nullptr; ///< null: opaque
    std::size_t rowBytes = 0;
    unsigned depth = 8;         ///< bits; above 8 each sample is two bytes in machine order
    bool premultiplied = false; ///< the colours were multiplied by it
};

/// Converts planes to BGRA in strips and hands the rows of @p placement's part to @p sink, which has begun.
/// Only the first @p rowsReady rows of @p image are looked at, its own alpha is not. No whole copy of the picture is
/// made.
[[nodiscard]] std::optional<DecodeFailure> deliverPlanes(const avifImage &image, const AlphaPlane &alpha,
                                                         const Placement &placement, std::uint32_t rowsReady,
                                                         const DecodeLimits &limits, RowSink &sink);

} // namespace tallowmere
