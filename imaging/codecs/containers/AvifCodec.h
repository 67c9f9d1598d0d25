// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/codecs/Codec.h"

namespace tallowmere {

/// AVIF by libavif. Of a sequence the first frame. The container's own transformations count; Exif doesn't.
class AvifCodec final : public Codec
{
public:
    [[nodiscard]] bool recognises(std::span<const std::byte> head) const override;
    [[nodiscard]] std::optional<PixelSize> storedSize(std::span<const std::byte> file) const override;
    [[nodiscard]] std::optional<DecodeFailure> decode(std::span<const std::byte> file, const DecodeLimits &limits,
                                                      RowSink &sink) const override;
};

} // namespace tallowmere
