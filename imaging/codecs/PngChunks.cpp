// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/codecs/PngChunks.h"

#include "imaging/codecs/Exif.h"

#include <algorithm>
#include <array>

namespace tallowmere {

namespace {

constexpr std::size_t kLengthBytes = 4;
constexpr std::size_t kTypeBytes = 4;
constexpr std::size_t kChecksumBytes = 4;
constexpr std::size_t kHeaderDataBytes = 13;
constexpr std::size_t kCicpBytes = 4;

std::uint32_t numberAt(std::span<const std::byte> bytes, std::size_t offset)
{
    std::uint32_t number = 0;
    for (std::size_t i = 0; i < 4; ++i)
        number = number << 8 | std::to_integer<std::uint32_t>(bytes[offset + i]);
    return number;
}

bool isChunkType(std::uint32_t type)
{
    for (int shift = 0; shift < 32; shift += 8) {
        const std::uint32_t lower = (type >> shift & 0xFF) | 0x20;
        if (lower < 'a' || lower > 'z')
            return false;
    }
    return true;
}

std::uint8_t channelsOf(std::uint8_t colourType)
{
    switch (colourType) {
    case 0: // grey
    case 3: // palette
        return 1;
    case 2: // RGB
        return 3;
    case 4: // grey with alpha
        return 2;
    case 6: // RGB with alpha
        return 4;
    default:
        return 0;
    }
}

std::optional<Cicp> cicpOf(std::span<const std::byte> data)
{
    if (data.size() < kCicpBytes)
        return std::nullopt;
    const Cicp cicp{.primaries = std::to_integer<std::uint16_t>(data[0]),
                    .transfer = std::to_integer<std::uint16_t>(data[1]),
                    .matrix = std::to_integer<std::uint16_t>(data[2]),
                    .fullRange = data[3] != std::byte{0}};
    // A PNG holds RGB, so another matrix makes no sense; and what leaves the colours open is worth no more than
    // nothing.
    constexpr std::uint16_t kUnspecified = 2;
    if (cicp.matrix != 0 || cicp.primaries == kUnspecified || cicp.transfer == kUnspecified)
        return std::nullopt;
    return cicp;
}

} // namespace

bool isPng(std::span<const std::byte> head)
{
    constexpr std::array<unsigned char, kPngSignatureBytes> kSignature{0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
    return head.size() >= kSignature.size() &&
           std::equal(kSignature.begin(), kSignature.end(), head.begin(),
                      [](unsigned char expected, std::byte found) { return std::byte{expected} == found; });
}

std::optional<PngChunk> PngChunkWalker::next()
{
    if (m_rest.size() < kLengthBytes + kTypeBytes)
        return std::nullopt;
    PngChunk chunk;
    const std::size_t length = numberAt(m_rest, 0);
    chunk.type = numberAt(m_rest, kLengthBytes);
    if (!isChunkType(chunk.type))
        return std::nullopt;
    m_rest = m_rest.subspan(kLengthBytes + kTypeBytes);
    const auto take = [this](std::size_t count) {
        const auto taken = m_rest.first(std::min(count, m_rest.size()));
        m_rest = m_rest.subspan(taken.size());
        return taken;
    };
    chunk.data = take(length);
    chunk.checksum = take(kChecksumBytes);
    if (chunk.type == PngChunk::typeOf("IEND"))
        m_rest = {};
    return chunk;
}

std::uint64_t PngSummary::filteredBytes() const
{
    const auto bytesOf = [this](std::uint64_t width, std::uint64_t height) {
        return width == 0 ? 0 : height * (1 + (width * bitDepth * channels + 7) / 8);
    };
    if (!interlaced)
        return bytesOf(size.width, size.height);
    struct Pass
    {
        std::uint32_t x, y, stepX, stepY;
    };
    constexpr std::array<Pass, 7> kAdam7{
        {{0, 0, 8, 8}, {4, 0, 8, 8}, {0, 4, 4, 8}, {2, 0, 4, 4}, {0, 2, 2, 4}, {1, 0, 2, 2}, {0, 1, 1, 2}}};
    std::uint64_t bytes = 0;
    for (const Pass &pass : kAdam7) {
        const auto count = [](std::uint64_t side, std::uint32_t start, std::uint32_t step) {
            return side <= start ? 0 : (side - start + step - 1) / step;
        };
        bytes += bytesOf(count(size.width, pass.x, pass.stepX), count(size.height, pass.y, pass.stepY));
    }
    return bytes;
}

std::optional<PngSummary> PngSummary::ofHeader(std::span<const std::byte> file)
{
    if (!isPng(file))
        return std::nullopt;
    const auto header = PngChunkWalker(file).next();
    if (!header || header->type != PngChunk::typeOf("IHDR") || header->data.size() != kHeaderDataBytes)
        return std::nullopt;
    PngSummary summary;
    summary.size = {numberAt(header->data, 0), numberAt(header->data, 4)};
    summary.bitDepth = std::to_integer<std::uint8_t>(header->data[8]);
    const auto colourType = std::to_integer<std::uint8_t>(header->data[9]);
    summary.channels = channelsOf(colourType);
    summary.paletted = colourType == 3;
    summary.interlaced = header->data[12] == std::byte{1};
    constexpr std::array<std::uint8_t, 5> kDepths{1, 2, 4, 8, 16};
    const bool knownDepth = std::find(kDepths.begin(), kDepths.end(), summary.bitDepth) != kDepths.end();
    if (summary.size.empty() || summary.channels == 0 || !knownDepth)
        return std::nullopt;
    return summary;
}

std::optional<PngSummary> PngSummary::of(std::span<const std::byte> file)
{
    auto summary = ofHeader(file);
    if (!summary)
        return std::nullopt;
    PngChunkWalker walker(file);
    while (const auto chunk = walker.next()) {
        switch (chunk->type) {
        case PngChunk::typeOf("IDAT"):
            summary->compressedBytes += chunk->data.size();
            break;
        case PngChunk::typeOf("eXIf"):
            summary->orientation = orientationFromExifBlock(chunk->data);
            break;
        case PngChunk::typeOf("cICP"):
            summary->cicp = cicpOf(chunk->data);
            break;
        default:
            break;
        }
    }
    return summary;
}

} // namespace tallowmere
