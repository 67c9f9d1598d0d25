// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/codecs/PngCodec.h"

#include "imaging/codecs/PngDirectRows.h"
#include "imaging/codecs/PngReader.h"
#include "imaging/pixels/PixelBuffer.h"

#include <cstring>
#include <utility>

namespace tallowmere {

namespace {

constexpr std::uint64_t kMaxInflation = 1032; ///< bytes that one byte of deflate can stand for, at best
constexpr std::uint64_t kRowsBytes = 1 << 22; ///< libpng's own row buffers, at most
/// Nobody can stop libdeflate on its way; this much takes it half a second.
constexpr std::uint64_t kMaxInflatedAtOnce = std::uint64_t{256} << 20;
constexpr std::uint32_t kRowsBetweenQuestions = 16;
constexpr int kPasses = 7;

/// What a decode takes by way of libpng, in bytes, with the interlaced picture left out.
std::uint64_t streamingBytes(const PngSummary &summary, const DecodeLimits &limits)
{
    return summary.size.fittedTo(limits.maxSide).pixels() * 4 + kRowsBytes;
}

std::optional<DecodeFailure> refusal(const PngSummary &summary, const DecodeLimits &limits)
{
    if (summary.size.longerSide() > limits.maxSourceSide || summary.size.pixels() > limits.maxSourcePixels)
        return DecodeFailure::tooLarge;
    if (summary.filteredBytes() > (summary.compressedBytes + 1) * kMaxInflation)
        return DecodeFailure::corrupt;
    const std::uint64_t interlaced = summary.interlaced ? summary.size.pixels() * 4 : 0;
    return streamingBytes(summary, limits) + interlaced > limits.maxWorkingBytes
               ? std::optional(DecodeFailure::tooLarge)
               : std::nullopt;
}

bool mayInflateAtOnce(const PngSummary &summary, const DecodeLimits &limits)
{
    const std::uint64_t bytes = PngInflation::workingBytes(summary);
    return bytes <= kMaxInflatedAtOnce && streamingBytes(summary, limits) + bytes <= limits.maxWorkingBytes;
}

/// One decode: its parts share what every one of them needs.
class Decoding
{
public:
    Decoding(const DecodeLimits &limits, RowSink &sink) : m_limits(limits), m_sink(sink) {}

    /// @p Rows: a PngReader or PngDirectRows.
    template <typename Rows>
    std::optional<DecodeFailure> readRows(Rows &rows, std::uint32_t height)
    {
        for (std::uint32_t y = 0; y < height; ++y) {
            if (cancelledAt(y))
                return DecodeFailure::cancelled;
            if (!rows.readRow(m_sink.nextRow())) {
                m_cutShort = true;
                return y == 0 ? std::optional(DecodeFailure::corrupt) : std::nullopt;
            }
            if (!m_sink.rowDone())
                return m_sink.failure();
        }
        return std::nullopt;
    }

    std::optional<DecodeFailure> readInterlaced(PngReader &reader, PixelSize size)
    {
        auto picture = PixelBuffer::allocate(size);
        if (picture.isNull())
            return DecodeFailure::outOfMemory;
        std::uint32_t rows = 0;
        if (const auto failure = readPasses(reader, picture, rows))
            return failure;
        if (rows == 0)
            return DecodeFailure::corrupt;
        for (std::uint32_t y = 0; y < rows; ++y) {
            std::memcpy(m_sink.nextRow(), picture.row(y), picture.rowBytes());
            if (!m_sink.rowDone())
                return m_sink.failure();
        }
        return std::nullopt;
    }

    /// Whether some rows could not be had.
    [[nodiscard]] bool cutShort() const { return m_cutShort; }

private:
    [[nodiscard]] bool cancelledAt(std::uint32_t row) const
    {
        return row % kRowsBetweenQuestions == 0 && m_limits.cancelled && m_limits.cancelled();
    }

    /// Reads all passes that are there. @p rows: how many rows of @p picture have something in them at the end.
    std::optional<DecodeFailure> readPasses(PngReader &reader, PixelBuffer &picture, std::uint32_t &rows)
    {
        const std::uint32_t height = picture.size().height;
        for (int pass = 0; pass < kPasses; ++pass) {
            for (std::uint32_t y = 0; y < height; ++y) {
                if (cancelledAt(y))
                    return DecodeFailure::cancelled;
                if (!reader.refineRow(picture.row(y))) {
                    m_cutShort = true;
                    rows = pass == 0 ? y : height;
                    return std::nullopt;
                }
            }
        }
        rows = height;
        return std::nullopt;
    }

    const DecodeLimits &m_limits;
    RowSink &m_sink;
    bool m_cutShort = false;
};

std::optional<DecodeFailure> decodeRows(std::span<const std::byte> file, const PngSummary &summary, PngReader &reader,
                                        const DecodeLimits &limits, RowSink &sink)
{
    using Outcome = PngInflation::Outcome;
    Decoding decoding(limits, sink);
    const bool atOnce = mayInflateAtOnce(summary, limits);
    if (atOnce && PngDirectRows::serves(summary, reader.hasAlpha())) {
        auto inflation = PngInflation::of(file, summary);
        if (inflation.outcome == Outcome::complete) {
            PngDirectRows rows(summary, std::move(inflation), reader.palette());
            return decoding.readRows(rows, summary.size.height);
        }
    }
    const auto failure = summary.interlaced ? decoding.readInterlaced(reader, summary.size)
                                            : decoding.readRows(reader, summary.size.height);
    // Cut short is one thing. A stream that is whole and yet too short belongs to a header that lies.
    const bool lies =
        !failure && decoding.cutShort() && atOnce && PngInflation::of(file, summary).outcome == Outcome::tooShort;
    return lies ? std::optional(DecodeFailure::corrupt) : failure;
}

} // namespace

bool PngCodec::recognises(std::span<const std::byte> head) const
{
    return isPng(head);
}

std::optional<PixelSize> PngCodec::storedSize(std::span<const std::byte> file) const
{
    const auto summary = PngSummary::ofHeader(file);
    return summary ? std::optional(summary->size) : std::nullopt;
}

std::optional<DecodeFailure> PngCodec::decode(std::span<const std::byte> file, const DecodeLimits &limits,
                                              RowSink &sink) const
{
    const auto summary = PngSummary::of(file);
    if (!summary)
        return DecodeFailure::corrupt;
    if (const auto refused = refusal(*summary, limits))
        return refused;
    PngReader reader(file, *summary);
    if (!reader.readHeader())
        return DecodeFailure::corrupt;

    RowLayout layout{.rows = summary->size,
                     .storedSize = summary->size,
                     .orientation = summary->orientation,
                     .hasAlpha = reader.hasAlpha(),
                     .colour = {}};
    if (summary->cicp)
        layout.colour.cicp = summary->cicp;
    else
        layout.colour = reader.colour();
    if (!sink.begin(layout))
        return sink.failure();
    return decodeRows(file, *summary, reader, limits, sink);
}

} // namespace tallowmere
