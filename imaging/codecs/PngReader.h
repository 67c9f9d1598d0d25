// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/codecs/PngChunks.h"

#include <png.h>

#include <array>

namespace tallowmere {

/// libpng behind a wall: its jumps out of errors never leave a member function.
///
/// Sees only those chunks of the file that make the picture and its colours: what else there is, and however large it
/// is, costs nothing. Every member that returns bool says false once libpng has given up. One thread.
class PngReader final
{
public:
    /// @p file begins with the signature and outlives the reader.
    PngReader(std::span<const std::byte> file, const PngSummary &summary);
    ~PngReader();
    PngReader(const PngReader &) = delete;
    PngReader &operator=(const PngReader &) = delete;

    /// Reads up to the pixels and makes ready for rows of straight BGRA, 8 bits each.
    [[nodiscard]] bool readHeader();
    /// The next row of one that isn't interlaced.
    [[nodiscard]] bool readRow(std::byte *row);
    /// The next row of the current pass. @p row holds what earlier passes made of it; the pixels that are still to come
    /// repeat their neighbours.
    [[nodiscard]] bool refineRow(std::byte *row);

    [[nodiscard]] bool hasAlpha() const { return m_hasAlpha; }
    /// After readHeader(). Leaves out what libpng finds no sense in. May throw std::bad_alloc.
    [[nodiscard]] ColourDescription colour() const;
    /// After readHeader(), of a picture that has one. Entries that the file does not have are black.
    [[nodiscard]] const PngPalette &palette() const { return m_palette; }

private:
    template <typename Call>
    bool guarded(Call call);
    void prepareTransformations();
    void keepPalette();
    [[nodiscard]] bool isWanted(const PngChunk &chunk) const;
    [[nodiscard]] bool feed(std::byte *out, std::size_t count);
    void serve(const PngChunk &chunk);

    png_structp m_png = nullptr;
    png_infop m_info = nullptr;
    PngChunkWalker m_chunks;
    std::array<std::byte, 8> m_chunkHeader{};
    std::array<std::span<const std::byte>, 3>
        m_pieces; ///< what is left of the chunk being read: header, data, checksum
    PngPalette m_palette{};
    bool m_paletted;
    bool m_hasAlpha = false;
};

} // namespace tallowmere
