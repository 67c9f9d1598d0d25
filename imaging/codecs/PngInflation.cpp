// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/codecs/PngInflation.h"

#include <libdeflate.h>

#include <new>
#include <vector>

namespace tallowmere {

namespace {

constexpr std::size_t kZlibHeaderBytes = 2;

struct FreeDecompressor
{
    void operator()(libdeflate_decompressor *decompressor) const { libdeflate_free_decompressor(decompressor); }
};

/// The stream that runs through all IDAT chunks. @p storage holds it if there are several of them.
std::span<const std::byte> compressedStream(std::span<const std::byte> file, const PngSummary &summary,
                                            std::vector<std::byte> &storage)
{
    PngChunkWalker walker(file);
    while (const auto chunk = walker.next()) {
        if (chunk->type != PngChunk::typeOf("IDAT"))
            continue;
        if (chunk->data.size() == summary.compressedBytes)
            return chunk->data;
        storage.reserve(static_cast<std::size_t>(summary.compressedBytes));
        storage.insert(storage.end(), chunk->data.begin(), chunk->data.end());
    }
    return storage;
}

/// RFC 1950: the method is deflate, the check bits fit and no preset dictionary is asked for.
bool isZlibHeader(std::span<const std::byte> stream)
{
    if (stream.size() < kZlibHeaderBytes)
        return false;
    const auto method = std::to_integer<unsigned>(stream[0]);
    const auto flags = std::to_integer<unsigned>(stream[1]);
    return (method & 0x0F) == 8 && (method * 256 + flags) % 31 == 0 && (flags & 0x20) == 0;
}

} // namespace

std::uint64_t PngInflation::workingBytes(const PngSummary &summary)
{
    return summary.filteredBytes() + summary.compressedBytes;
}

PngInflation PngInflation::of(std::span<const std::byte> file, const PngSummary &summary)
{
    PngInflation inflation;
    std::vector<std::byte> storage;
    const auto stream = compressedStream(file, summary, storage);
    if (!isZlibHeader(stream))
        return inflation;
    const std::unique_ptr<libdeflate_decompressor, FreeDecompressor> decompressor(libdeflate_alloc_decompressor());
    if (!decompressor)
        throw std::bad_alloc();
    const auto bytes = static_cast<std::size_t>(summary.filteredBytes());
    inflation.rows = std::make_unique_for_overwrite<std::byte[]>(bytes);
    // The raw stream, without the sum at its end: a picture with a wrong sum is more to its owner than none.
    const auto deflated = stream.subspan(kZlibHeaderBytes);
    switch (libdeflate_deflate_decompress(decompressor.get(), deflated.data(), deflated.size(), inflation.rows.get(),
                                          bytes, nullptr)) {
    case LIBDEFLATE_SUCCESS:
        inflation.outcome = Outcome::complete;
        break;
    case LIBDEFLATE_SHORT_OUTPUT:
        inflation.outcome = Outcome::tooShort;
        break;
    default:
        break;
    }
    return inflation;
}

} // namespace tallowmere
