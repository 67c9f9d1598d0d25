// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "tests/desktop/PhotoGenerator.h"

#include <cstddef>
#include <string>
#include <vector>

/// The same picture as files of several formats, each written by the format's own library.
namespace tallowmere::bench {

struct Picture
{
    int width = 0;
    int height = 0;
    photos::RowSource rows;
};

/// Each throws std::runtime_error when the library refuses. All carry an sRGB profile; the lossy ones are 4:2:0.
[[nodiscard]] std::vector<std::byte> encodePng(const Picture &picture);
[[nodiscard]] std::vector<std::byte> encodeWebp(const Picture &picture);
[[nodiscard]] std::vector<std::byte> encodeAvif(const Picture &picture);
/// One coded picture, not the grid of tiles that phones write: the library can't write one.
[[nodiscard]] std::vector<std::byte> encodeHeic(const Picture &picture);

} // namespace tallowmere::bench
