// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/codecs/Codec.h"

namespace tallowmere {

/// JPEG (ITU-T T.81) of 8 bits: baseline, progressive, arithmetic; grey, YCbCr, RGB, CMYK and YCCK.
///
/// Pictures that exceed the limit are shrunk inside the inverse DCT. Ink is turned into sRGB.
class JpegCodec final : public Codec
{
public:
    [[nodiscard]] bool recognises(std::span<const std::byte> head) const override;
    [[nodiscard]] std::optional<PixelSize> storedSize(std::span<const std::byte> file) const override;
    [[nodiscard]] std::optional<PixelSize> sizeOfScalable(std::span<const std::byte> file) const override;
    [[nodiscard]] std::optional<DecodeFailure> decode(std::span<const std::byte> file, const DecodeLimits &limits,
                                                      RowSink &sink) const override;
};

} // namespace tallowmere
