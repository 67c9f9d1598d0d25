// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/codecs/containers/MediaFile.h"

namespace tallowmere {

/// What a decoder will allocate for one coded picture, as the bitstream's own headers have it.
struct CodedPicture
{
    PixelSize size;
    unsigned samplesPerFourPixels = 6; ///< 4 grey, 6 for 4:2:0, 8 for 4:2:2, 12 for 4:4:4
    unsigned bytesPerSample = 1;
    bool filmGrain = false; ///< is added in a second set of planes

    [[nodiscard]] std::uint64_t planeBytes() const
    {
        return (size.pixels() * samplesPerFourPixels + 3) / 4 * bytesPerSample;
    }
    /// The larger of the two in every respect.
    [[nodiscard]] CodedPicture mergedWith(const CodedPicture &other) const;
};

/// From the sequence headers of an HEVC or AV1 item; a header may promise more than the item's ispe property says,
/// and it is the header the decoder believes. Nothing when none is found.
[[nodiscard]] std::optional<CodedPicture> codedPicture(const MediaFile &file, const MediaItem &item);

/// A sequence parameter set (ITU-T H.265, 7.3.2.2), beginning with the two bytes of its NAL unit header.
[[nodiscard]] std::optional<CodedPicture> readHevcParameterSet(std::span<const std::byte> unit);

/// A sequence header OBU (AV1, 5.5), without the OBU's own header.
[[nodiscard]] std::optional<CodedPicture> readAv1SequenceHeader(std::span<const std::byte> payload);

} // namespace tallowmere
