// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/codecs/Codec.h"

namespace tallowmere {

/// PNG (W3C, third edition), every colour type and depth. Of an animation it shows the default image.
class PngCodec final : public Codec
{
public:
    [[nodiscard]] bool recognises(std::span<const std::byte> head) const override;
    [[nodiscard]] std::optional<PixelSize> storedSize(std::span<const std::byte> file) const override;
    [[nodiscard]] std::optional<DecodeFailure> decode(std::span<const std::byte> file, const DecodeLimits &limits,
                                                      RowSink &sink) const override;
};

} // namespace tallowmere
