// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/codecs/containers/MediaFile.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace tallowmere {
namespace {

constexpr std::array kAvifBrands{fourCC("avif"), fourCC("avis")};
constexpr std::array kHevcBrands{fourCC("heic"), fourCC("heix"), fourCC("heim"), fourCC("heis"),
                                 fourCC("hevc"), fourCC("hevx"), fourCC("hevm"), fourCC("hevs")};
/// Any coding inside, or codings that only few readers know.
constexpr std::array kOtherBrands{fourCC("mif1"), fourCC("mif2"), fourCC("mif3"), fourCC("msf1"), fourCC("unif"),
                                  fourCC("j2ki"), fourCC("j2is"), fourCC("avci"), fourCC("avcs"), fourCC("vvic"),
                                  fourCC("vvis"), fourCC("evbi"), fourCC("evbs"), fourCC("jpeg"), fourCC("jpgs")};

template <std::size_t Count>
bool among(const std::array<FourCC, Count> &brands, FourCC brand)
{
    return std::find(brands.begin(), brands.end(), brand) != brands.end();
}

/// Follows derivations down to the first coded item.
MediaFamily familyOfPrimary(std::span<const std::byte> head)
{
    const auto file = MediaFile::read(head);
    const MediaItem *item = file ? file->primary() : nullptr;
    for (int depth = 0; item && depth < 4; ++depth) {
        if (item->type == fourCC("av01"))
            return MediaFamily::avif;
        if (item->derivedFrom.empty())
            break;
        item = file->item(item->derivedFrom.front());
    }
    return MediaFamily::heif;
}

} // namespace

MediaFamily mediaFamily(std::span<const std::byte> head)
{
    auto boxes = head;
    const auto first = Box::next(boxes);
    if (!first || first->type != fourCC("ftyp"))
        return MediaFamily::none;
    ByteReader reader(first->payload);
    const FourCC major = reader.u32();
    reader.skip(4); // the minor version
    if (!reader.ok())
        return MediaFamily::none;
    if (among(kAvifBrands, major))
        return MediaFamily::avif;
    if (among(kHevcBrands, major))
        return MediaFamily::heif;

    bool avif = false;
    bool hevc = false;
    bool other = among(kOtherBrands, major);
    while (reader.rest().size() >= 4) {
        const FourCC brand = reader.u32();
        avif = avif || among(kAvifBrands, brand);
        hevc = hevc || among(kHevcBrands, brand);
        other = other || among(kOtherBrands, brand);
    }
    if (avif != hevc)
        return avif ? MediaFamily::avif : MediaFamily::heif;
    return avif || other ? familyOfPrimary(head) : MediaFamily::none;
}

bool hasTracks(std::span<const std::byte> file)
{
    return Box::find(file, fourCC("moov")).has_value();
}

const MediaItem *MediaFile::item(std::uint32_t id) const
{
    const auto found = std::lower_bound(m_items.begin(), m_items.end(), id,
                                        [](const MediaItem &item, std::uint32_t wanted) { return item.id < wanted; });
    return found != m_items.end() && found->id == id ? &*found : nullptr;
}

const MediaItem *MediaFile::alphaOf(const MediaItem &item) const
{
    constexpr std::array kAlphaTypes{"urn:mpeg:mpegB:cicp:systems:auxiliary:alpha", "urn:mpeg:hevc:2015:auxid:1",
                                     "urn:mpeg:avc:2015:auxid:1"};
    for (const MediaItem &candidate : m_items) {
        const MediaProperty *type = candidate.auxiliaryOf == item.id ? property(candidate, fourCC("auxC")) : nullptr;
        if (!type || type->payload.size() < 4)
            continue;
        const auto text = type->payload.subspan(4);
        for (const char *known : kAlphaTypes) {
            const std::size_t length = std::strlen(known);
            if (text.size() >= length && std::memcmp(text.data(), known, length) == 0 &&
                (text.size() == length || text[length] == std::byte{0}))
                return &candidate;
        }
    }
    return nullptr;
}

const MediaProperty *MediaFile::property(const MediaItem &item, FourCC type) const
{
    for (const std::uint16_t index : item.properties) {
        if (m_properties[index].type == type)
            return &m_properties[index];
    }
    return nullptr;
}

std::vector<MediaProperty> MediaFile::properties(const MediaItem &item) const
{
    std::vector<MediaProperty> result;
    result.reserve(item.properties.size());
    for (const std::uint16_t index : item.properties)
        result.push_back(m_properties[index]);
    return result;
}

std::optional<PixelSize> MediaFile::spatialExtent(const MediaItem &item) const
{
    const MediaProperty *extent = property(item, fourCC("ispe"));
    if (!extent)
        return std::nullopt;
    ByteReader reader(extent->payload);
    reader.skip(4);
    const std::uint32_t width = reader.u32();
    const std::uint32_t height = reader.u32();
    if (!reader.ok())
        return std::nullopt;
    return PixelSize{width, height};
}

} // namespace tallowmere
