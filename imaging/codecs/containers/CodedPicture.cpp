// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/codecs/containers/CodedPicture.h"

#include <algorithm>

namespace tallowmere {
namespace {

using Bytes = std::span<const std::byte>;

void merge(std::optional<CodedPicture> &into, const std::optional<CodedPicture> &found)
{
    if (found)
        into = into ? into->mergedWith(*found) : found;
}

/// The item's data in one piece; @p storage holds it when the file has it in several.
Bytes joined(const MediaItem &item, std::vector<std::byte> &storage)
{
    if (item.extents.empty())
        return {};
    if (item.extents.size() == 1)
        return item.extents.front();
    // Extents may overlap: what they add up to has no bound of its own.
    constexpr std::size_t kEnough = std::size_t{64} << 20;
    for (const auto &extent : item.extents) {
        const auto taken = extent.first(std::min(extent.size(), kEnough - storage.size()));
        storage.insert(storage.end(), taken.begin(), taken.end());
    }
    return storage;
}

std::optional<CodedPicture> fromHevcUnit(Bytes unit)
{
    constexpr unsigned kSequenceParameterSet = 33;
    if (unit.empty() || (std::to_integer<unsigned>(unit[0]) >> 1 & 63U) != kSequenceParameterSet)
        return std::nullopt;
    return readHevcParameterSet(unit);
}

/// The parameter sets in the decoder configuration (ISO/IEC 14496-15, 8.3.3).
std::optional<CodedPicture> fromHevcConfiguration(Bytes payload)
{
    ByteReader reader(payload);
    reader.skip(22);
    std::optional<CodedPicture> result;
    const unsigned arrays = reader.u8();
    for (unsigned a = 0; a < arrays && reader.ok(); ++a) {
        reader.skip(1);
        const unsigned units = reader.u16();
        for (unsigned u = 0; u < units && reader.ok(); ++u)
            merge(result, fromHevcUnit(reader.take(reader.u16())));
    }
    return result;
}

/// Parameter sets may also lie among the picture's data.
std::optional<CodedPicture> fromHevcData(Bytes data)
{
    ByteReader reader(data);
    std::optional<CodedPicture> result;
    while (reader.rest().size() > 4)
        merge(result, fromHevcUnit(reader.take(reader.u32())));
    return result;
}

std::optional<CodedPicture> fromAv1Data(Bytes data)
{
    constexpr unsigned kSequenceHeader = 1;
    ByteReader reader(data);
    std::optional<CodedPicture> result;
    while (!reader.rest().empty() && reader.ok()) {
        const unsigned header = reader.u8();
        if ((header & 4U) != 0)
            reader.skip(1); // the extension: layers
        std::size_t size = reader.rest().size();
        if ((header & 2U) != 0) {
            size = 0;
            for (unsigned shift = 0; shift < 56; shift += 7) { // leb128()
                const unsigned byte = reader.u8();
                size |= std::size_t{byte & 127U} << shift;
                if ((byte & 128U) == 0)
                    break;
            }
        }
        const Bytes payload = reader.take(size);
        if ((header >> 3 & 15U) == kSequenceHeader)
            merge(result, readAv1SequenceHeader(payload));
    }
    return result;
}

} // namespace

CodedPicture CodedPicture::mergedWith(const CodedPicture &other) const
{
    CodedPicture merged = size.pixels() >= other.size.pixels() ? *this : other;
    merged.samplesPerFourPixels = std::max(samplesPerFourPixels, other.samplesPerFourPixels);
    merged.bytesPerSample = std::max(bytesPerSample, other.bytesPerSample);
    merged.filmGrain = filmGrain || other.filmGrain;
    return merged;
}

std::optional<CodedPicture> codedPicture(const MediaFile &file, const MediaItem &item)
{
    std::vector<std::byte> storage;
    if (item.type == fourCC("av01"))
        return fromAv1Data(joined(item, storage));
    if (item.type != fourCC("hvc1") && item.type != fourCC("hev1"))
        return std::nullopt;
    const MediaProperty *configuration = file.property(item, fourCC("hvcC"));
    auto result = configuration ? fromHevcConfiguration(configuration->payload) : std::nullopt;
    merge(result, fromHevcData(joined(item, storage)));
    return result;
}

} // namespace tallowmere
