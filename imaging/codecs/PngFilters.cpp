// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/codecs/PngFilters.h"

#include <array>
#include <cstdint>
#include <cstring>

namespace tallowmere {

namespace {

// Paeth needs the finished pixel to the left, so that only the channels of one pixel can be worked on at a time. The
// compilers' own vectors do that nearly twice as fast as single bytes, if written in terms of smallest and equal and
// loaded as below: other wordings came out up to five times slower with GCC 12.
using Bytes = std::uint8_t __attribute__((vector_size(8)));
using Lanes = std::int16_t __attribute__((vector_size(16)));

template <unsigned BytesPerPixel>
Lanes load(const std::byte *pixel)
{
    // By way of a number, for three bytes copied into a vector go through memory. Which byte lands in which lane does
    // not matter, as long as store() knows it too.
    std::uint64_t number = 0;
    if constexpr (BytesPerPixel == 3) {
        std::uint16_t two = 0;
        std::memcpy(&two, pixel, sizeof two);
        number = two | std::to_integer<std::uint64_t>(pixel[2]) << 16;
    } else {
        std::array<std::byte, sizeof number> bytes{};
        std::memcpy(bytes.data(), pixel, BytesPerPixel);
        std::memcpy(&number, bytes.data(), sizeof number);
    }
    Bytes vector;
    std::memcpy(&vector, &number, sizeof number);
    return __builtin_convertvector(vector, Lanes);
}

template <unsigned BytesPerPixel>
void store(std::byte *pixel, Lanes lanes)
{
    const Bytes vector = __builtin_convertvector(lanes, Bytes);
    std::uint64_t number = 0;
    std::memcpy(&number, &vector, sizeof number);
    if constexpr (BytesPerPixel == 3) {
        const auto two = static_cast<std::uint16_t>(number);
        std::memcpy(pixel, &two, sizeof two);
        pixel[2] = static_cast<std::byte>(number >> 16);
    } else {
        std::memcpy(pixel, &number, BytesPerPixel);
    }
}

Lanes smaller(Lanes a, Lanes b)
{
    return a < b ? a : b;
}

Lanes magnitude(Lanes lanes)
{
    const Lanes negated = -lanes;
    return lanes > negated ? lanes : negated;
}

/// Whichever of the three is nearest to left + above - corner; in a tie the earlier one.
Lanes paeth(Lanes left, Lanes above, Lanes corner)
{
    const Lanes fromLeft = above - corner;
    const Lanes fromAbove = left - corner;
    const Lanes leftDistance = magnitude(fromLeft);
    const Lanes aboveDistance = magnitude(fromAbove);
    const Lanes nearest = smaller(leftDistance, smaller(aboveDistance, magnitude(fromLeft + fromAbove)));
    const Lanes aboveOrCorner = nearest == aboveDistance ? above : corner;
    return nearest == leftDistance ? left : aboveOrCorner;
}

template <unsigned BytesPerPixel>
void undoSub(std::span<std::byte> row)
{
    for (std::size_t i = BytesPerPixel; i < row.size(); ++i)
        row[i] = static_cast<std::byte>(static_cast<unsigned>(row[i]) + static_cast<unsigned>(row[i - BytesPerPixel]));
}

void undoUp(std::span<std::byte> row, std::span<const std::byte> above)
{
    for (std::size_t i = 0; i < row.size(); ++i)
        row[i] = static_cast<std::byte>(static_cast<unsigned>(row[i]) + static_cast<unsigned>(above[i]));
}

template <unsigned BytesPerPixel>
void undoAverage(std::span<std::byte> row, std::span<const std::byte> above)
{
    std::array<unsigned, BytesPerPixel>
        left{}; // kept in registers: reading it back from the row takes four times as long
    for (std::size_t i = 0; i + BytesPerPixel <= row.size(); i += BytesPerPixel) {
        for (unsigned k = 0; k < BytesPerPixel; ++k) {
            const unsigned up = std::to_integer<unsigned>(above[i + k]);
            left[k] = (std::to_integer<unsigned>(row[i + k]) + (left[k] + up) / 2) & 0xFF;
            row[i + k] = static_cast<std::byte>(left[k]);
        }
    }
}

template <unsigned BytesPerPixel>
void undoPaeth(std::span<std::byte> row, std::span<const std::byte> above)
{
    Lanes left{};
    Lanes corner{};
    for (std::size_t i = 0; i + BytesPerPixel <= row.size(); i += BytesPerPixel) {
        const Lanes up = load<BytesPerPixel>(&above[i]);
        left = (load<BytesPerPixel>(&row[i]) + paeth(left, up, corner)) & 0xFF;
        corner = up;
        store<BytesPerPixel>(&row[i], left);
    }
}

template <unsigned BytesPerPixel>
bool undo(std::byte type, std::span<std::byte> row, std::span<const std::byte> above)
{
    switch (std::to_integer<unsigned>(type)) {
    case 0:
        return true;
    case 1:
        undoSub<BytesPerPixel>(row);
        return true;
    case 2:
        undoUp(row, above);
        return true;
    case 3:
        undoAverage<BytesPerPixel>(row, above);
        return true;
    case 4:
        undoPaeth<BytesPerPixel>(row, above);
        return true;
    default:
        return false;
    }
}

} // namespace

bool undoPngFilter(std::byte type, std::span<std::byte> row, std::span<const std::byte> above, unsigned bytesPerPixel)
{
    switch (bytesPerPixel) {
    case 1:
        return undo<1>(type, row, above);
    case 2:
        return undo<2>(type, row, above);
    case 3:
        return undo<3>(type, row, above);
    case 4:
        return undo<4>(type, row, above);
    default:
        return false;
    }
}

} // namespace tallowmere
