// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/pixels/Orientation.h"

#include <cstddef>
#include <span>

namespace tallowmere {

/// The Orientation tag (274) of the first directory of a TIFF structure (Exif 2.32), in either byte order.
///
/// @p tiff starts with the byte order mark. Whatever is missing, out of bounds or out of range gives upright.
/// Any thread; nothing is allocated.
[[nodiscard]] Orientation orientationFromTiff(std::span<const std::byte> tiff);

/// The same for a block that may start with "Exif" and two zero bytes, as JPEG's APP1 and some WebP files have it.
[[nodiscard]] Orientation orientationFromExifBlock(std::span<const std::byte> block);

} // namespace tallowmere
