// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/codecs/JpegCodec.h"

#include "imaging/codecs/CmykConversion.h"
#include "imaging/codecs/JpegReader.h"

#include <vector>

namespace tallowmere {

namespace {

constexpr int kMaxScans = 100;                                    ///< encoders write about ten
constexpr std::uint64_t kMaxBlockVisits = std::uint64_t{1} << 28; ///< over all scans; two or three seconds' work
constexpr std::uint32_t kRowsBetweenQuestions = 16;
constexpr std::uint64_t kCoefficientBytesPerBlock = DCTSIZE2 * sizeof(JCOEF);

bool cancelled(const DecodeLimits &limits)
{
    return limits.cancelled && limits.cancelled();
}

std::uint64_t roundedUp(std::uint64_t value, int step)
{
    const auto unit = static_cast<std::uint64_t>(step);
    return (value + unit - 1) / unit * unit;
}

/// Blocks of 8 x 8 samples in all components, with those that fill up the last units.
std::uint64_t blockCount(const jpeg_decompress_struct &info)
{
    std::uint64_t blocks = 0;
    for (int i = 0; i < info.num_components; ++i) {
        const jpeg_component_info &component = info.comp_info[i];
        blocks += roundedUp(component.width_in_blocks, component.h_samp_factor) *
                  roundedUp(component.height_in_blocks, component.v_samp_factor);
    }
    return blocks;
}

/// Whether a file of @p bytes may hold @p blocks, or at least a part of them worth showing.
bool plausible(const jpeg_decompress_struct &info, std::uint64_t blocks, std::uint64_t bytes)
{
    // A Huffman-coded block takes two bits at least, one for each kind of code; photographs take fifty and more. A
    // sixteenth of the least lets a photograph through of which a thousandth has arrived. The arithmetic coder has no
    // such bound, but comes nowhere near a hundredth of a bit for a block.
    const std::uint64_t blocksPerByte = info.arith_code ? 1024 : 64;
    return blocks / blocksPerByte <= bytes;
}

std::optional<DecodeFailure> refusal(JpegReader &reader, std::uint64_t fileBytes, const DecodeLimits &limits)
{
    const PixelSize size = reader.size();
    if (size.longerSide() > limits.maxSourceSide || size.pixels() > limits.maxSourcePixels)
        return DecodeFailure::tooLarge;
    const std::uint64_t blocks = blockCount(reader.info());
    if (!plausible(reader.info(), blocks, fileBytes))
        return DecodeFailure::corrupt;
    std::uint64_t working = size.fittedTo(limits.maxSide).pixels() * 4;
    if (reader.hasSeveralScans())
        working += blocks * kCoefficientBytesPerBlock;
    return working > limits.maxWorkingBytes ? std::optional(DecodeFailure::tooLarge) : std::nullopt;
}

/// The scale, in eighths, at which the inverse transform is to work so that no side falls below @p target.
unsigned scaleFor(PixelSize stored, PixelSize target)
{
    // Rounded down, though libjpeg rounds up: a row that only a part of a pixel fell into isn't worth as much.
    const auto reaches = [&](unsigned eighths) {
        return std::uint64_t{stored.width} * eighths / 8 >= target.width &&
               std::uint64_t{stored.height} * eighths / 8 >= target.height;
    };
    // Only these have vector code in libjpeg-turbo: at 24 Mpixel 6/8 took 1.6 times as long as 8/8, and at 108 Mpixel
    // 3/8 a sixth longer than 4/8.
    for (const unsigned eighths : {1U, 2U, 4U}) {
        if (reaches(eighths))
            return eighths;
    }
    return 8;
}

/// Reads the scans of a picture that has several, as far as the limits on them go.
std::optional<DecodeFailure> readScans(JpegReader &reader, const DecodeLimits &limits)
{
    const std::uint64_t blocks = blockCount(reader.info());
    std::uint64_t visits = 0;
    int scans = 0;
    for (std::uint32_t step = 0;; ++step) {
        if (step % kRowsBetweenQuestions == 0 && cancelled(limits))
            return DecodeFailure::cancelled;
        switch (reader.readBlocks()) {
        case JpegReader::Progress::row:
            break;
        case JpegReader::Progress::scan:
            visits += blocks;
            if (++scans >= kMaxScans || visits > kMaxBlockVisits)
                return std::nullopt; // what has been read by now is a good picture, or the file is no picture
            break;
        case JpegReader::Progress::all:
            return std::nullopt;
        case JpegReader::Progress::failed:
            return reader.failure();
        }
    }
}

std::optional<DecodeFailure> readRows(JpegReader &reader, const CmykConversion *ink, const DecodeLimits &limits,
                                      RowSink &sink)
{
    const jpeg_decompress_struct &info = reader.info();
    std::vector<std::byte> inkRow(ink ? std::size_t{info.output_width} * 4 : 0);
    for (std::uint32_t y = 0; y < info.output_height; ++y) {
        if (y % kRowsBetweenQuestions == 0 && cancelled(limits))
            return DecodeFailure::cancelled;
        std::byte *row = sink.nextRow();
        const bool read = reader.readRow(ink ? inkRow.data() : row);
        if (!read || y >= reader.rowsWithData())
            return y == 0 ? std::optional(reader.failure()) : std::nullopt;
        if (ink)
            ink->convertRow(reinterpret_cast<const std::uint8_t *>(inkRow.data()), row, info.output_width);
        if (!sink.rowDone())
            return sink.failure();
    }
    return std::nullopt;
}

bool isInk(J_COLOR_SPACE colours)
{
    return colours == JCS_CMYK || colours == JCS_YCCK;
}

} // namespace

bool JpegCodec::recognises(std::span<const std::byte> head) const
{
    return head.size() >= 3 && head[0] == std::byte{0xFF} && head[1] == std::byte{0xD8} && head[2] == std::byte{0xFF};
}

std::optional<PixelSize> JpegCodec::storedSize(std::span<const std::byte> file) const
{
    JpegReader reader(file);
    return reader.readHeader() ? std::optional(reader.size()) : std::nullopt;
}

std::optional<PixelSize> JpegCodec::sizeOfScalable(std::span<const std::byte> file) const
{
    JpegReader reader(file);
    // Several scans have to be read to the last one, whatever is made of them.
    if (!reader.readHeader() || reader.hasSeveralScans())
        return std::nullopt;
    return swapsSides(reader.orientation()) ? reader.size().transposed() : reader.size();
}

std::optional<DecodeFailure> JpegCodec::decode(std::span<const std::byte> file, const DecodeLimits &limits,
                                               RowSink &sink) const
{
    JpegReader reader(file);
    if (!reader.readHeader())
        return reader.failure();
    if (const auto refused = refusal(reader, file.size(), limits))
        return refused;

    const PixelSize stored = reader.size();
    const bool fromInk = isInk(reader.info().jpeg_color_space);
    reader.setOutput(scaleFor(stored, stored.fittedTo(limits.maxSide)), fromInk ? JCS_CMYK : JCS_EXT_BGRA);
    if (!reader.start())
        return reader.failure();
    if (reader.info().buffered_image) {
        if (const auto failure = readScans(reader, limits))
            return failure;
        if (!reader.showScansRead())
            return reader.failure();
    }

    RowLayout layout{.rows = {reader.info().output_width, reader.info().output_height},
                     .storedSize = stored,
                     .orientation = reader.orientation(),
                     .hasAlpha = false,
                     .colour = {}};
    auto icc = reader.iccProfile();
    std::optional<CmykConversion> ink;
    if (fromInk) {
        using Samples = CmykConversion::Samples;
        ink.emplace(icc ? std::span(*icc) : std::span<const std::byte>(),
                    reader.info().saw_Adobe_marker ? Samples::inverted : Samples::ink);
    } else {
        layout.colour.icc = std::move(icc);
    }
    if (!sink.begin(layout))
        return sink.failure();
    return readRows(reader, ink ? &*ink : nullptr, limits, sink);
}

} // namespace tallowmere
