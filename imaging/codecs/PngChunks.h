// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/pixels/ColourDescription.h"
#include "imaging/pixels/Orientation.h"
#include "imaging/pixels/PixelSize.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace tallowmere {

inline constexpr std::size_t kPngSignatureBytes = 8;

[[nodiscard]] bool isPng(std::span<const std::byte> head);

/// One chunk as it lies in the file.
struct PngChunk
{
    std::uint32_t type = 0;              ///< the four letters, the first in the highest byte
    std::span<const std::byte> data;     ///< as far as the file has it
    std::span<const std::byte> checksum; ///< likewise: 4 bytes, but for the last chunk of a file cut short

    [[nodiscard]] static constexpr std::uint32_t typeOf(const char (&letters)[5])
    {
        std::uint32_t type = 0;
        for (int i = 0; i < 4; ++i)
            type = type << 8 | static_cast<unsigned char>(letters[i]);
        return type;
    }
};

/// Walks the chunks of a PNG from first to last, without copying and without checking sums.
class PngChunkWalker final
{
public:
    /// @p file begins with the signature and outlives the walker.
    explicit PngChunkWalker(std::span<const std::byte> file) : m_rest(file.subspan(kPngSignatureBytes)) {}
    /// Nothing at the end, after IEND, or where what follows can't be a chunk.
    [[nodiscard]] std::optional<PngChunk> next();

private:
    std::span<const std::byte> m_rest;
};

/// Each entry as B, G, R, A.
using PngPalette = std::array<std::array<std::byte, 4>, 256>;

/// What is wanted to know before a PNG is decoded, some of which may stand behind the pixels.
struct PngSummary
{
    PixelSize size;
    std::uint8_t bitDepth = 0;
    std::uint8_t channels = 0;
    bool paletted = false;
    bool interlaced = false;
    std::uint64_t compressedBytes = 0; ///< in all IDAT chunks
    Orientation orientation = Orientation::upright;
    std::optional<Cicp> cicp;

    /// Bytes of all rows with their filter bytes, as deflated.
    [[nodiscard]] std::uint64_t filteredBytes() const;

    /// The header alone. Nothing when it is missing or its values are not those of the standard.
    [[nodiscard]] static std::optional<PngSummary> ofHeader(std::span<const std::byte> file);
    [[nodiscard]] static std::optional<PngSummary> of(std::span<const std::byte> file);
};

} // namespace tallowmere
