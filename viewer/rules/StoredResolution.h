// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/pixels/PixelSize.h"
#include "support/FileURL.h"

#include <optional>

namespace tallowmere {

/// The size of the picture in @p file as its header states it: before orientation, at full size.
///
/// Reads the first 64 KiB, and more only while a known format's header goes on: memory is bounded by the file's size
/// and 256 MiB. Nothing for what can't be read, is no regular file (a FIFO is never waited for) or states no size.
/// Any thread; blocks.
[[nodiscard]] std::optional<PixelSize> storedResolution(const FileURL &file);

} // namespace tallowmere
