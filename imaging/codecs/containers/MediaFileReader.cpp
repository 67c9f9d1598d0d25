// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/codecs/containers/MediaFile.h"

#include <algorithm>

namespace tallowmere {
namespace {

/// A picture of 1 Gpixel in tiles of 512 x 512 has 4096 of them; thumbnails and metadata are few.
constexpr std::size_t kMaxItems = 8192;
/// An index has 15 bits.
constexpr std::size_t kMaxProperties = 32'767;
/// Of all items together: what one file may make us remember.
constexpr std::size_t kMaxLinks = 65'536;

/// Version and flags of a "full" box.
struct FullHeader
{
    std::uint8_t version = 0;
    std::uint32_t flags = 0;
};

FullHeader fullHeader(ByteReader &reader)
{
    const std::uint32_t word = reader.u32();
    return {static_cast<std::uint8_t>(word >> 24), word & 0xffffffU};
}

} // namespace

/// Fills a MediaFile from the boxes below "meta".
class MediaFileReader final
{
public:
    explicit MediaFileReader(std::span<const std::byte> file) : m_file(file) {}

    std::optional<MediaFile> read()
    {
        const auto meta = Box::find(m_file, fourCC("meta"));
        if (!meta || meta->payload.size() < 4)
            return std::nullopt;
        const auto children = meta->payload.subspan(4);
        const auto box = [&](const char(&type)[5]) { return Box::find(children, fourCC(type)); };
        if (const auto idat = box("idat"))
            m_itemData = idat->payload;
        const bool fine = readPrimary(box("pitm")) && readItems(box("iinf")) && readLocations(box("iloc")) &&
                          readReferences(box("iref")) && readProperties(box("iprp"));
        return fine ? std::optional(std::move(m_result)) : std::nullopt;
    }

private:
    MediaItem *item(std::uint32_t id) { return const_cast<MediaItem *>(m_result.item(id)); }

    /// One more of the things that are remembered per item.
    bool mayLink() { return ++m_links <= kMaxLinks; }

    bool readPrimary(const std::optional<Box> &box)
    {
        if (!box)
            return false;
        ByteReader reader(box->payload);
        m_result.m_primary = static_cast<std::uint32_t>(reader.number(fullHeader(reader).version == 0 ? 2 : 4));
        return reader.ok();
    }

    bool readItems(const std::optional<Box> &box)
    {
        if (!box)
            return false;
        ByteReader reader(box->payload);
        reader.skip(fullHeader(reader).version == 0 ? 2 : 4); // the boxes are counted as they come
        auto entries = reader.rest();
        while (const auto entry = Box::next(entries)) {
            ByteReader fields(entry->payload);
            const FullHeader header = fullHeader(fields);
            if (entry->type != fourCC("infe") || header.version < 2)
                continue;
            MediaItem item;
            item.id = static_cast<std::uint32_t>(fields.number(header.version == 2 ? 2 : 4));
            fields.skip(2); // protection
            item.type = fields.u32();
            if (!fields.ok() || m_result.m_items.size() >= kMaxItems)
                return false;
            m_result.m_items.push_back(std::move(item));
        }
        const auto byId = [](const MediaItem &a, const MediaItem &b) { return a.id < b.id; };
        std::stable_sort(m_result.m_items.begin(), m_result.m_items.end(), byId);
        return reader.ok();
    }

    bool readLocations(const std::optional<Box> &box)
    {
        if (!box)
            return true;
        ByteReader reader(box->payload);
        const FullHeader header = fullHeader(reader);
        const unsigned sizes = reader.u16();
        const std::size_t offsetSize = sizes >> 12 & 15U;
        const std::size_t lengthSize = sizes >> 8 & 15U;
        const std::size_t baseSize = sizes >> 4 & 15U;
        const std::size_t indexSize = header.version == 0 ? 0 : sizes & 15U;
        if (header.version > 2 || std::max({offsetSize, lengthSize, baseSize, indexSize}) > 8)
            return false;
        const std::size_t idSize = header.version < 2 ? 2 : 4;
        const std::uint64_t count = reader.number(idSize);
        for (std::uint64_t i = 0; i < count && reader.ok(); ++i) {
            MediaItem *target = item(static_cast<std::uint32_t>(reader.number(idSize)));
            const unsigned construction = header.version == 0 ? 0 : reader.u16() & 15U;
            reader.skip(2); // data reference
            const std::uint64_t base = reader.number(baseSize);
            const unsigned extents = reader.u16();
            for (unsigned e = 0; e < extents && reader.ok(); ++e) {
                reader.skip(indexSize);
                const std::uint64_t offset = reader.number(offsetSize);
                const std::uint64_t length = reader.number(lengthSize);
                if (!mayLink())
                    return false;
                if (target && construction < 2)
                    addExtent(*target, construction == 0 ? m_file : m_itemData, base, offset, length);
            }
        }
        return reader.ok();
    }

    static void addExtent(MediaItem &item, std::span<const std::byte> source, std::uint64_t base, std::uint64_t offset,
                          std::uint64_t length)
    {
        if (base > source.size() || offset > source.size() - base)
            return;
        const auto available = source.subspan(static_cast<std::size_t>(base + offset));
        // Length 0 means: all there is.
        const auto taken = length == 0 ? available.size() : std::min<std::uint64_t>(length, available.size());
        item.extents.push_back(available.first(static_cast<std::size_t>(taken)));
    }

    bool readReferences(const std::optional<Box> &box)
    {
        if (!box)
            return true;
        ByteReader reader(box->payload);
        const std::size_t idSize = fullHeader(reader).version == 0 ? 2 : 4;
        auto entries = reader.rest();
        while (const auto entry = Box::next(entries)) {
            ByteReader fields(entry->payload);
            MediaItem *from = item(static_cast<std::uint32_t>(fields.number(idSize)));
            const unsigned count = fields.u16();
            for (unsigned i = 0; i < count; ++i) {
                const auto to = static_cast<std::uint32_t>(fields.number(idSize));
                if (!fields.ok() || !mayLink())
                    return false;
                if (from && entry->type == fourCC("dimg"))
                    from->derivedFrom.push_back(to);
                else if (from && entry->type == fourCC("auxl"))
                    from->auxiliaryOf = to;
            }
        }
        return reader.ok();
    }

    bool readProperties(const std::optional<Box> &box)
    {
        if (!box)
            return true;
        const auto container = Box::find(box->payload, fourCC("ipco"));
        auto entries = container ? container->payload : std::span<const std::byte>();
        while (const auto entry = Box::next(entries)) {
            if (m_result.m_properties.size() >= kMaxProperties)
                return false;
            m_result.m_properties.push_back({entry->type, entry->payload});
        }
        auto rest = box->payload;
        while (const auto association = Box::next(rest)) {
            if (association->type == fourCC("ipma") && !readAssociations(association->payload))
                return false;
        }
        return true;
    }

    bool readAssociations(std::span<const std::byte> payload)
    {
        ByteReader reader(payload);
        const FullHeader header = fullHeader(reader);
        const bool wide = (header.flags & 1U) != 0;
        const std::uint32_t count = reader.u32();
        for (std::uint32_t i = 0; i < count && reader.ok(); ++i) {
            MediaItem *target = item(static_cast<std::uint32_t>(reader.number(header.version < 1 ? 2 : 4)));
            const unsigned links = reader.u8();
            for (unsigned l = 0; l < links && reader.ok(); ++l) {
                const unsigned index = wide ? reader.u16() & 0x7fffU : reader.u8() & 0x7fU;
                if (!mayLink())
                    return false;
                // Index 0 means none; one beyond the list is left to the decoder to complain about.
                if (target && index > 0 && index <= m_result.m_properties.size())
                    target->properties.push_back(static_cast<std::uint16_t>(index - 1));
            }
        }
        return reader.ok();
    }

    std::span<const std::byte> m_file;
    std::span<const std::byte> m_itemData;
    std::size_t m_links = 0;
    MediaFile m_result;
};

std::optional<MediaFile> MediaFile::read(std::span<const std::byte> file)
{
    return MediaFileReader(file).read();
}

} // namespace tallowmere
