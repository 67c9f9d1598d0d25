// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "IsoFile.h"

#include "CodedSamples.h"

namespace tallowmere {
namespace {

template <std::size_t Size>
Bytes sampleBytes(const std::array<std::uint8_t, Size> &array)
{
    const auto *first = reinterpret_cast<const std::byte *>(array.data());
    return {first, first + Size};
}

void append(Bytes &bytes, const Bytes &more)
{
    bytes.insert(bytes.end(), more.begin(), more.end());
}

Bytes itemInfos(const std::vector<TestItem> &items)
{
    Bytes payload = number(items.size(), 2);
    for (const TestItem &item : items) {
        Bytes entry = number(item.id, 2);
        append(entry, number(0, 2));
        append(entry, bytesOf(std::string_view(item.type)));
        append(entry, number(0, 1));
        append(payload, fullBox("infe", 2, 0, entry));
    }
    return fullBox("iinf", 0, 0, payload);
}

Bytes itemReferences(const std::vector<TestItem> &items)
{
    Bytes payload;
    for (const TestItem &item : items) {
        if (item.referenceType.empty())
            continue;
        Bytes entry = number(item.id, 2);
        append(entry, number(item.references.size(), 2));
        for (const std::uint16_t id : item.references)
            append(entry, number(id, 2));
        append(payload, box(item.referenceType, entry));
    }
    return payload.empty() ? Bytes() : fullBox("iref", 0, 0, payload);
}

Bytes itemProperties(const std::vector<TestItem> &items)
{
    Bytes container;
    Bytes associations = number(items.size(), 4);
    unsigned index = 0;
    for (const TestItem &item : items) {
        append(associations, number(item.id, 2));
        append(associations, number(item.properties.size(), 1));
        for (const TestProperty &property : item.properties) {
            append(container, box(property.type, property.payload));
            append(associations, number(0x8000U | ++index, 2)); // essential
        }
    }
    return box("iprp", joined({box("ipco", container), fullBox("ipma", 0, 1, associations)}));
}

Bytes itemLocations(const std::vector<TestItem> &items, std::size_t start)
{
    Bytes payload = number(0x4400, 2); // four bytes for offsets and lengths
    append(payload, number(items.size(), 2));
    for (const TestItem &item : items) {
        append(payload, number(item.id, 2));
        append(payload, number(0, 2));
        append(payload, number(1, 2));
        append(payload, number(start, 4));
        append(payload, number(item.data.size(), 4));
        start += item.data.size();
    }
    return fullBox("iloc", 0, 0, payload);
}

} // namespace

Bytes number(std::uint64_t value, std::size_t count)
{
    Bytes result;
    for (std::size_t i = count; i-- > 0;)
        result.push_back(static_cast<std::byte>(value >> (8 * i)));
    return result;
}

Bytes box(const std::string &type, std::span<const std::byte> payload)
{
    return joined({number(payload.size() + 8, 4), bytesOf(type), payload});
}

Bytes fullBox(const std::string &type, std::uint8_t version, std::uint32_t flags, std::span<const std::byte> payload)
{
    return box(type, joined({number(version, 1), number(flags, 3), payload}));
}

Bytes IsoFile::bytes() const
{
    Bytes brandList = joined({bytesOf(majorBrand), number(0, 4)});
    for (const std::string &brand : brands)
        append(brandList, bytesOf(brand));
    const Bytes type = box("ftyp", brandList);
    const Bytes handler = fullBox("hdlr", 0, 0, joined({number(0, 4), bytesOf("pict"), Bytes(13)}));
    Bytes data;
    for (const TestItem &item : items)
        append(data, item.data);
    const auto metaAt = [&](std::size_t start) {
        return fullBox("meta", 0, 0,
                       joined({handler, fullBox("pitm", 0, 0, number(primary, 2)), itemLocations(items, start),
                               itemInfos(items), itemReferences(items), itemProperties(items)}));
    };
    const std::size_t start = type.size() + metaAt(0).size() + 8;
    return joined({type, metaAt(start), box("mdat", data)});
}

TestProperty spatialExtent(std::uint32_t width, std::uint32_t height)
{
    return {"ispe", joined({number(0, 4), number(width, 4), number(height, 4)})};
}

TestProperty rotation(unsigned quarters)
{
    return {"irot", number(quarters, 1)};
}
TestProperty mirror(unsigned mode)
{
    return {"imir", number(mode, 1)};
}

TestProperty cleanAperture(std::array<std::int32_t, 4> values)
{
    Bytes payload;
    for (const std::int32_t value : values) {
        append(payload, number(static_cast<std::uint32_t>(value), 4));
        append(payload, number(1, 4));
    }
    return {"clap", payload};
}

TestProperty colourBox(const std::string &kind, Bytes payload)
{
    return {"colr", joined({bytesOf(kind), payload})};
}

Bytes gridData(unsigned columns, unsigned rows, PixelSize output)
{
    return joined(
        {number(0, 2), number(rows - 1, 1), number(columns - 1, 1), number(output.width, 2), number(output.height, 2)});
}

TestItem quadrants(Coding coding, std::vector<TestProperty> more)
{
    TestItem item{1, coding == Coding::av1 ? "av01" : "hvc1", {spatialExtent(64, 64)}, {}, {}, {}};
    if (coding == Coding::av1) {
        item.properties.push_back({"av1C", sampleBytes(samples::kAv1ColourConfiguration)});
        item.data = sampleBytes(samples::kAv1ColourData);
    } else {
        item.properties.push_back({"hvcC", sampleBytes(samples::kHevcColourConfiguration)});
        item.data = sampleBytes(samples::kHevcColourData);
    }
    item.properties.push_back({"pixi", joined({number(0, 4), number(3, 1), number(0x080808, 3)})});
    for (TestProperty &property : more)
        item.properties.push_back(std::move(property));
    return item;
}

TestItem halfAlpha(Coding coding, std::uint16_t id)
{
    TestItem item{id, coding == Coding::av1 ? "av01" : "hvc1", {spatialExtent(64, 64)}, {}, "auxl", {1}};
    std::string kind = "urn:mpeg:mpegB:cicp:systems:auxiliary:alpha";
    if (coding == Coding::av1) {
        item.properties.push_back({"av1C", sampleBytes(samples::kAv1AlphaConfiguration)});
        item.data = sampleBytes(samples::kAv1AlphaData);
    } else {
        item.properties.push_back({"hvcC", sampleBytes(samples::kHevcAlphaConfiguration)});
        item.data = sampleBytes(samples::kHevcAlphaData);
        kind = "urn:mpeg:hevc:2015:auxid:1";
    }
    item.properties.push_back({"pixi", joined({number(0, 4), number(1, 1), number(8, 1)})});
    item.properties.push_back({"auxC", joined({number(0, 4), bytesOf(kind), number(0, 1)})});
    return item;
}

TestItem exifItem(unsigned orientation, std::uint16_t id)
{
    return {id, "Exif", {}, joined({number(6, 4), exifWithOrientation(orientation)}), "cdsc", {1}};
}

IsoFile fileOf(Coding coding, std::vector<TestItem> items)
{
    IsoFile file;
    file.majorBrand = coding == Coding::av1 ? "avif" : "heic";
    file.brands = {file.majorBrand, "mif1", "miaf"};
    file.items = std::move(items);
    return file;
}

} // namespace tallowmere
