// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <array>
#include <cstdint>
#include <vector>

namespace tallowmere::test {

using Rgba = std::array<std::uint8_t, 4>;

/// Small encoded files, made when asked for. A failing encoder ends the test program.

/// @p exifOrientation: 0 leaves the tag out. 4:2:0 at quality 90: colours come back within a few steps.
[[nodiscard]] QByteArray jpegOf(int width, int height, Rgba colour, int exifOrientation = 0);
/// A left half and a right half.
[[nodiscard]] QByteArray halvedJpegOf(int width, int height, Rgba left, Rgba right, int exifOrientation = 0);
/// With an alpha channel when @p withAlpha; exact colours.
[[nodiscard]] QByteArray pngOf(int width, int height, Rgba colour, bool withAlpha = false);
/// The same stored values, said to be Display P3's.
[[nodiscard]] QByteArray inDisplayP3(QByteArray png);
[[nodiscard]] QByteArray webpOf(int width, int height, Rgba colour);
/// One frame a colour, lossless.
[[nodiscard]] QByteArray animatedWebpOf(int width, int height, const std::vector<Rgba> &frames);

} // namespace tallowmere::test
