// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/codecs/containers/MediaCanvas.h"

#include <algorithm>

namespace tallowmere {

std::optional<MediaCanvas> MediaCanvas::of(const MediaItem &item)
{
    constexpr std::size_t kLongest = 20;
    std::vector<std::byte> data;
    for (const auto &extent : item.extents) {
        const auto part = extent.first(std::min(extent.size(), kLongest - data.size()));
        data.insert(data.end(), part.begin(), part.end());
    }
    ByteReader reader(data);
    reader.skip(1);
    const std::size_t side = (reader.u8() & 1U) != 0 ? 4 : 2;
    MediaCanvas canvas;
    if (item.type == fourCC("grid")) {
        canvas.rows = reader.u8() + 1U;
        canvas.columns = reader.u8() + 1U;
    } else {
        reader.skip(8); // the background colour
    }
    canvas.size.width = static_cast<std::uint32_t>(reader.number(side));
    canvas.size.height = static_cast<std::uint32_t>(reader.number(side));
    return reader.ok() ? std::optional(canvas) : std::nullopt;
}

} // namespace tallowmere
