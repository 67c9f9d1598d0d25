// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/codecs/containers/CodedPicture.h"

#include <algorithm>

namespace tallowmere {
namespace {

/// Everything up to the bit depth lies within the first bytes, whatever optional parts come before.
constexpr std::size_t kHeaderBytes = 256;

/// Without the bytes that keep start codes from appearing (H.265, 7.3.1.1).
std::vector<std::byte> withoutEmulationPrevention(std::span<const std::byte> unit)
{
    std::vector<std::byte> result;
    result.reserve(std::min(unit.size(), kHeaderBytes));
    unsigned zeros = 0;
    for (const std::byte byte : unit.first(std::min(unit.size(), kHeaderBytes))) {
        if (zeros >= 2 && byte == std::byte{3}) {
            zeros = 0;
            continue;
        }
        zeros = byte == std::byte{0} ? zeros + 1 : 0;
        result.push_back(byte);
    }
    return result;
}

void skipProfileTierLevel(BitReader &reader, unsigned subLayers)
{
    reader.skip(96);
    if (subLayers == 0)
        return;
    const unsigned present = reader.bits(16); // two flags for each of up to eight
    for (unsigned i = 0; i < subLayers; ++i) {
        const unsigned flags = present >> (14 - 2 * i);
        reader.skip((flags & 2U ? 88 : 0) + (flags & 1U ? 8 : 0));
    }
}

unsigned bytesFor(unsigned depth)
{
    return depth > 8 ? 2 : 1;
}

/// Timing, decoder model and operating points: all to be stepped over.
void skipOperatingPoints(BitReader &reader)
{
    bool decoderModel = false;
    unsigned delayBits = 0;
    if (reader.flag()) { // timing_info
        reader.skip(64);
        if (reader.flag())
            static_cast<void>(reader.expGolomb());
        decoderModel = reader.flag();
        if (decoderModel) {
            delayBits = reader.bits(5) + 1;
            reader.skip(32 + 5 + 5);
        }
    }
    const bool displayDelay = reader.flag();
    const unsigned points = reader.bits(5) + 1;
    for (unsigned i = 0; i < points && reader.ok(); ++i) {
        reader.skip(12);
        if (reader.bits(5) > 7)
            reader.skip(1);
        if (decoderModel && reader.flag())
            reader.skip(2 * delayBits + 1);
        if (displayDelay && reader.flag())
            reader.skip(4);
    }
}

/// The coding tools of a sequence that is not a single still picture.
void skipInterTools(BitReader &reader)
{
    reader.skip(4);
    const bool orderHint = reader.flag();
    if (orderHint)
        reader.skip(2);
    const bool choosesScreenContent = reader.flag();
    const bool screenContent = choosesScreenContent || reader.flag();
    if (screenContent && !reader.flag())
        reader.skip(1);
    if (orderHint)
        reader.skip(3);
}

/// 4:2:0, 4:2:2 or 4:4:4 by the profile; twelve bits say it themselves.
unsigned readAv1Sampling(BitReader &reader, unsigned profile, bool twelveBits)
{
    if (profile == 0)
        return 6;
    if (profile == 1)
        return 12;
    if (!twelveBits)
        return 8;
    const bool halfWidth = reader.flag();
    const bool halfHeight = halfWidth && reader.flag();
    return halfHeight ? 6 : halfWidth ? 8 : 12;
}

/// color_config() and the flag behind it.
void readAv1Colour(BitReader &reader, unsigned profile, CodedPicture &picture)
{
    const bool highDepth = reader.flag();
    const bool twelveBits = profile == 2 && highDepth && reader.flag();
    picture.bytesPerSample = highDepth ? 2 : 1;
    const bool grey = profile != 1 && reader.flag();
    const std::uint32_t description = reader.flag() ? reader.bits(24) : 0;
    constexpr std::uint32_t kSrgbIdentity = 1U << 16 | 13U << 8;
    if (grey) {
        picture.samplesPerFourPixels = 4;
        reader.skip(1); // range
    } else if (description == kSrgbIdentity) {
        picture.samplesPerFourPixels = 12;
        reader.skip(1); // separate_uv_delta_q
    } else {
        reader.skip(1); // range
        picture.samplesPerFourPixels = readAv1Sampling(reader, profile, twelveBits);
        reader.skip(picture.samplesPerFourPixels == 6 ? 3 : 1); // chroma position, separate_uv_delta_q
    }
    picture.filmGrain = reader.flag();
}

} // namespace

std::optional<CodedPicture> readHevcParameterSet(std::span<const std::byte> unit)
{
    const auto bytes = withoutEmulationPrevention(unit);
    BitReader reader(bytes);
    reader.skip(16 + 4);
    const unsigned subLayers = reader.bits(3);
    reader.skip(1);
    skipProfileTierLevel(reader, subLayers);
    static_cast<void>(reader.expGolomb());
    const unsigned chroma = reader.expGolomb();
    if (chroma == 3)
        reader.skip(1);
    CodedPicture picture;
    picture.size.width = reader.expGolomb();
    picture.size.height = reader.expGolomb();
    if (reader.flag()) { // conformance window
        for (int i = 0; i < 4; ++i)
            static_cast<void>(reader.expGolomb());
    }
    const unsigned luma = reader.expGolomb() + 8;
    const unsigned chromaDepth = reader.expGolomb() + 8;
    if (!reader.ok() || chroma > 3)
        return std::nullopt;
    constexpr unsigned kSamples[] = {4, 6, 8, 12};
    picture.samplesPerFourPixels = kSamples[chroma];
    picture.bytesPerSample = bytesFor(std::max(luma, chromaDepth));
    return picture;
}

std::optional<CodedPicture> readAv1SequenceHeader(std::span<const std::byte> payload)
{
    BitReader reader(payload.first(std::min(payload.size(), kHeaderBytes)));
    const unsigned profile = reader.bits(3);
    reader.skip(1);
    const bool reduced = reader.flag();
    if (reduced)
        reader.skip(5);
    else
        skipOperatingPoints(reader);
    CodedPicture picture;
    const unsigned widthBits = reader.bits(4) + 1;
    const unsigned heightBits = reader.bits(4) + 1;
    picture.size = {reader.bits(widthBits) + 1, reader.bits(heightBits) + 1};
    if (!reduced && reader.flag())
        reader.skip(7); // frame numbers
    reader.skip(3);
    if (!reduced)
        skipInterTools(reader);
    reader.skip(3);
    readAv1Colour(reader, profile, picture);
    if (!reader.ok())
        return std::nullopt;
    return picture;
}

} // namespace tallowmere
