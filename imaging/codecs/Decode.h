// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/codecs/Codec.h"
#include "imaging/pixels/DecodedImage.h"

#include <variant>

namespace tallowmere {

using DecodeResult = std::variant<DecodedImage, DecodeFailure>;

/// The codecs in the order they are asked.
[[nodiscard]] std::span<const Codec *const> codecs();

/// The one that recognises these bytes; null when none does.
[[nodiscard]] const Codec *codecFor(std::span<const std::byte> file);

/// Decodes the first picture of @p file, upright, premultiplied, its longer side at most limits.maxSide, never
/// enlarged. A truncated file gives what there is. Any thread.
[[nodiscard]] DecodeResult decodeImage(std::span<const std::byte> file, const DecodeLimits &limits);

/// The upright size of a picture that comes markedly faster, and in less memory, when less than half of it is asked
/// for; nothing for any other. From the header alone. Any thread.
[[nodiscard]] std::optional<PixelSize> sizeOfScalable(std::span<const std::byte> file);

/// The size as coded, before orientation and limit, from the header alone. Any thread.
[[nodiscard]] std::optional<PixelSize> storedSize(std::span<const std::byte> file);

} // namespace tallowmere
