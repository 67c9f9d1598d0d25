// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

/// Pictures made on the spot, always the same for the same request. Plain functions; any thread.
namespace tallowmere::photos {

struct Rgb
{
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;
};

enum class ColourSpace
{
    sRGB,
    displayP3, ///< what telephones write
};

/// How a JPEG is written. The defaults are a camera's: 4:2:0, Exif, an sRGB profile.
struct JpegOptions
{
    int quality = 90;
    int orientation = 1; ///< the Exif tag, 1 to 8
    bool exif = true;
    ColourSpace profile = ColourSpace::sRGB; ///< what the stored values are said to be
};

/// Fills one row of three bytes a pixel.
using RowSource = std::function<void(int y, std::span<std::uint8_t> row)>;

/// Throws std::runtime_error for a size that JPEG can't hold.
[[nodiscard]] std::vector<std::byte> encodeJpeg(int width, int height, const RowSource &rows,
                                                const JpegOptions &options = {});

/// A landscape with the detail and the noise of a photograph: 0.2 to 0.4 bytes a pixel at the default quality.
[[nodiscard]] std::vector<std::byte> makePhoto(int width, int height, std::uint64_t seed,
                                               const JpegOptions &options = {});
/// The same as pixels.
[[nodiscard]] RowSource landscape(int width, int height, std::uint64_t seed);

/// The middle half of each side in one colour, around it another: what is seen at the centre is not the average.
[[nodiscard]] std::vector<std::byte> makeTarget(int width, int height, const Rgb &centre, const Rgb &surround,
                                                const JpegOptions &options = {});
/// Two colours side by side, as stored.
[[nodiscard]] std::vector<std::byte> makeHalves(int width, int height, const Rgb &left, const Rgb &right,
                                                const JpegOptions &options = {});

/// One colour everywhere.
[[nodiscard]] std::vector<std::byte> makePlainPng(int width, int height, const Rgb &colour);

/// Transparent everywhere.
[[nodiscard]] std::vector<std::byte> makeClearPng(int width, int height);

/// Writes another size into a JPEG's frame header, whatever its data holds.
[[nodiscard]] std::vector<std::byte> withPromisedSize(std::vector<std::byte> jpeg, int width, int height);

} // namespace tallowmere::photos
