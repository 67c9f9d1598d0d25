// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/codecs/DecodeProgress.h"
#include "imaging/pixels/ColourDescription.h"
#include "imaging/pixels/Orientation.h"
#include "imaging/pixels/PixelSize.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>

namespace tallowmere {

/// Why there is no picture; for logs and tests, users see an empty view.
enum class DecodeFailure
{
    unrecognised, ///< no codec knows these bytes
    unsupported,  ///< a variant of a known format that is not read
    corrupt,
    tooLarge, ///< refused by a limit, before memory was taken
    outOfMemory,
    cancelled,
};

/// What one decode may cost. The defaults are the program's own.
struct DecodeLimits
{
    std::uint32_t maxSide = 4000;         ///< pixels; the longer side of the result
    std::uint32_t maxSourceSide = 65'535; ///< pixels
    std::uint64_t maxSourcePixels = std::uint64_t{1} << 30;
    std::size_t maxWorkingBytes = std::size_t{512} << 20; ///< everything allocated for one decode, result included
    /// Asked now and then from the decoding thread; true ends the decode. May be empty.
    std::function<bool()> cancelled;
    DecodeProgress *progress = nullptr; ///< told of the rows as they come; may be null; outlives the decode
};

/// How the rows of one picture arrive.
struct RowLayout
{
    PixelSize rows;       ///< of the rows delivered; smaller than storedSize when the codec shrinks on the way
    PixelSize storedSize; ///< pixels, as coded
    Orientation orientation = Orientation::upright; ///< still to be applied to the rows
    bool hasAlpha = false;
    ColourDescription colour;
};

/// Takes a picture row by row, from top to bottom, in the codec's thread.
///
/// Pixels are straight (not premultiplied) B, G, R, A bytes in the file's own colour space; A is 255 in
/// a picture without alpha.
class RowSink
{
public:
    virtual ~RowSink() = default;
    /// Once, before the first row. False: nothing is wanted; the codec stops and reports what failure() says.
    [[nodiscard]] virtual bool begin(const RowLayout &layout) = 0;
    /// Where the next row's layout.rows.width * 4 bytes are to be written; valid until rowDone().
    [[nodiscard]] virtual std::byte *nextRow() = 0;
    /// The row is written. False: stop.
    [[nodiscard]] virtual bool rowDone() = 0;
    /// After begin(): where all rows stay, one after the other, when they are neither shrunk nor turned on the way;
    /// else null. A codec may write a row there before its turn has come; it calls nextRow() and rowDone() all the
    /// same.
    [[nodiscard]] virtual std::byte *allRows() { return nullptr; }
    /// Why begin() or rowDone() said no.
    [[nodiscard]] virtual DecodeFailure failure() const = 0;
};

/// Reads one family of formats. Objects hold no state and serve all threads.
class Codec
{
public:
    virtual ~Codec() = default;
    /// Looks at the first bytes of a file only; another codec is asked after a no.
    [[nodiscard]] virtual bool recognises(std::span<const std::byte> head) const = 0;
    /// The size as coded, from the header alone: no pixel is decoded and little is allocated.
    [[nodiscard]] virtual std::optional<PixelSize> storedSize(std::span<const std::byte> file) const = 0;
    /// The upright size of a picture that comes markedly faster, and in less memory, when less than half of it is asked
    /// for; nothing for any other. From the header alone.
    [[nodiscard]] virtual std::optional<PixelSize> sizeOfScalable(std::span<const std::byte>) const
    {
        return std::nullopt;
    }
    /// Hands the first picture to @p sink. Nothing: the sink has all rows that could be had, and at least one.
    /// Whatever exceeds @p limits is refused before it is allocated.
    [[nodiscard]] virtual std::optional<DecodeFailure> decode(std::span<const std::byte> file,
                                                              const DecodeLimits &limits, RowSink &sink) const = 0;
};

} // namespace tallowmere
