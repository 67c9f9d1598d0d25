// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace tallowmere {

// Loops over rows of BGRA pixels, compiled for several instruction sets; the best is picked at run time.

/// The sums of bytes 0, 1, 2 and 3 of @p count pixels.
[[nodiscard]] std::array<std::uint64_t, 4> channelSums(const std::byte *pixels, std::uint64_t count);

/// Straight to premultiplied, in place; each product rounded to nearest.
void premultiply(std::byte *pixels, std::size_t count);

/// Premultiplied to straight, in place; clear pixels become transparent black.
void unpremultiply(std::byte *pixels, std::size_t count);

/// Writes @p count rows of @p width pixels as columns: pixel x of row y goes to out[x * outStride + y]. Strides are in
/// pixels and may be negative.
void transpose(const std::uint32_t *rows, std::ptrdiff_t stride, std::size_t width, std::size_t count,
               std::uint32_t *out, std::ptrdiff_t outStride);

/// Writes @p row[@p columns[i]] for each i below @p count. The columns never fall and are less than @p width, the
/// length of the row.
void pickPixels(const std::uint32_t *row, std::size_t width, const std::uint32_t *columns, std::size_t count,
                std::uint32_t *out);

/// Results that share one stretch of weights, so that the widest vectors find theirs side by side.
inline constexpr std::size_t kRowFilterGroup = 4;

/// Filters one row of BGRA bytes into @p count pixels of four 16-bit lanes; @p count is a multiple of kRowFilterGroup.
///
/// Result i is the weighted sum of the 4 * @p quads pixels from @p starts[i] on, shifted right by @p shift and rounded.
/// Weights lie by group, in the group by quad, in the quad by result: its four weights, twice.
void filterRow(const std::byte *row, const std::uint32_t *starts, const std::int16_t *weights, std::size_t count,
               std::size_t quads, int shift, std::int16_t *out);

/// The weighted sum of 2 * @p pairs rows of 16-bit lanes, shifted right by @p shift, rounded, clamped to bytes
/// and, as premultiplied pixels must be, to their own alpha. Writes exactly @p count pixels.
void filterColumns(const std::int16_t *const *rows, const std::int16_t *weights, std::size_t pairs, int shift,
                   std::size_t count, std::byte *out);

/// What mixColours() looks up. Sixteen thousand steps of light tell any two of sRGB's 256 signals apart, the darkest
/// too.
struct MixingTables
{
    static constexpr int kSteps = 16384;

    /// By channel (B, G, R) and value: the steps of light it adds to blue, green and red; the fourth number is unused.
    alignas(16) std::array<std::array<std::array<float, 4>, 256>, 3> light{};
    std::array<std::uint8_t, kSteps + 1> signal{}; ///< by steps of light
};

/// Replaces the colours of BGRA pixels by what their channels add up to; alpha stays.
void mixColours(std::byte *pixels, std::size_t count, const MixingTables &tables);

/// What interpolateColours() goes by: the colours of evenly spaced points of the cube that B, G and R span.
struct ColourGrid
{
    /// Eight steps of a byte apart, nearly: a byte's upper five bits name the cell, and all eight, turned round, how
    /// far into it the value lies (255: at its far end).
    static constexpr std::size_t kSide = 33;
    static constexpr std::size_t kNodes = kSide * kSide * kSide;
    static constexpr int kOne = 16384; ///< stands for 255

    /// B, G, R and a zero; B changes fastest. Below 0 and beyond kOne: what is clipped after interpolating, since a
    /// kink inside a cell can't be interpolated.
    std::vector<std::array<std::int16_t, 4>> nodes = std::vector<std::array<std::int16_t, 4>>(kNodes);
};

/// Replaces the colours of BGRA pixels by those of the grid, interpolated in tetrahedra; alpha stays.
void interpolateColours(std::byte *pixels, std::size_t count, const ColourGrid &grid);

} // namespace tallowmere
