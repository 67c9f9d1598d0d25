// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "Pictures.h"

#include <png.h>
#include <zlib.h>

#include <cstring>
#include <stdexcept>

namespace tallowmere {

namespace {

constexpr std::size_t kSignatureBytes = 8;
constexpr std::size_t kChunkHeaderBytes = 8;
constexpr std::size_t kChunkFrameBytes = 12;

std::size_t channelsOf(int colourType)
{
    switch (colourType) {
    case PNG_COLOR_TYPE_RGB:
        return 3;
    case PNG_COLOR_TYPE_RGB_ALPHA:
        return 4;
    case PNG_COLOR_TYPE_GRAY_ALPHA:
        return 2;
    default:
        return 1;
    }
}

std::vector<png_byte> rowOf(const PngRecipe &recipe, std::uint32_t y)
{
    std::vector<png_byte> row;
    for (std::uint32_t x = 0; x < recipe.size.width; ++x) {
        const auto pixel = recipe.paint ? recipe.paint(x, y) : std::array<unsigned, 4>{};
        for (std::size_t k = 0; k < channelsOf(recipe.colourType); ++k) {
            if (recipe.depth == 16)
                row.push_back(static_cast<png_byte>(pixel[k] >> 8));
            row.push_back(static_cast<png_byte>(pixel[k]));
        }
    }
    return row;
}

void setPalette(png_structp png, png_infop info, const PngRecipe &recipe)
{
    std::vector<png_color> colours;
    for (const auto &entry : recipe.palette)
        colours.push_back({entry[0], entry[1], entry[2]});
    if (!colours.empty())
        png_set_PLTE(png, info, colours.data(), static_cast<int>(colours.size()));
    if (!recipe.paletteAlpha.empty())
        png_set_tRNS(png, info, recipe.paletteAlpha.data(), static_cast<int>(recipe.paletteAlpha.size()), nullptr);
}

std::uint32_t bigEndianAt(const Bytes &bytes, std::size_t offset)
{
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < 4; ++i)
        value = value << 8 | std::to_integer<std::uint32_t>(bytes.at(offset + i));
    return value;
}

} // namespace

void putBigEndian(std::span<std::byte> where, std::uint32_t value)
{
    for (std::size_t i = 0; i < 4; ++i)
        where[i] = static_cast<std::byte>(value >> (24 - 8 * i));
}

Bytes makePng(const PngRecipe &recipe)
{
    Bytes file;
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    png_set_write_fn(
        png, &file,
        [](png_structp self, png_bytep data, std::size_t count) {
        const auto bytes = std::as_bytes(std::span(data, count));
        auto *out = static_cast<Bytes *>(png_get_io_ptr(self));
        out->insert(out->end(), bytes.begin(), bytes.end());
        },
        nullptr);
    png_set_IHDR(png, info, recipe.size.width, recipe.size.height, recipe.depth, recipe.colourType,
                 recipe.interlaced ? PNG_INTERLACE_ADAM7 : PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
                 PNG_FILTER_TYPE_DEFAULT);
    setPalette(png, info, recipe);
    png_write_info(png, info);
    png_set_packing(png);
    const int passes = png_set_interlace_handling(png);
    constexpr std::array<int, 5> kFilters{PNG_FILTER_NONE, PNG_FILTER_SUB, PNG_FILTER_UP, PNG_FILTER_AVG,
                                          PNG_FILTER_PAETH};
    // libpng keeps the rows that a filter needs only if it is told of all of them before the first row.
    png_set_filter(png, PNG_FILTER_TYPE_BASE, PNG_ALL_FILTERS);
    for (int pass = 0; pass < passes; ++pass) {
        for (std::uint32_t y = 0; y < recipe.size.height; ++y) {
            if (!recipe.interlaced && y > 0)
                png_set_filter(png, PNG_FILTER_TYPE_BASE, kFilters[y % kFilters.size()]);
            png_write_row(png, rowOf(recipe, y).data());
        }
    }
    png_write_end(png, info);
    png_destroy_write_struct(&png, &info);
    return file;
}

Bytes pngChunk(std::string_view type, std::span<const std::byte> data)
{
    Bytes chunk(4);
    putBigEndian(chunk, static_cast<std::uint32_t>(data.size()));
    chunk = joined({chunk, bytesOf(type), data});
    const auto *summed = reinterpret_cast<const Bytef *>(chunk.data() + 4);
    Bytes sum(4);
    putBigEndian(sum, static_cast<std::uint32_t>(::crc32(0, summed, static_cast<uInt>(chunk.size() - 4))));
    return joined({chunk, sum});
}

std::size_t pngDataOffset(const Bytes &png, std::string_view type)
{
    for (std::size_t i = kSignatureBytes; i + kChunkHeaderBytes <= png.size();
         i += kChunkFrameBytes + bigEndianAt(png, i)) {
        if (std::memcmp(&png[i + 4], type.data(), type.size()) == 0)
            return i + kChunkHeaderBytes;
    }
    throw std::runtime_error("no such chunk");
}

Bytes withChunkBefore(const Bytes &png, std::string_view before, const Bytes &chunk)
{
    Bytes longer = png;
    const auto where = static_cast<std::ptrdiff_t>(pngDataOffset(png, before) - kChunkHeaderBytes);
    longer.insert(longer.begin() + where, chunk.begin(), chunk.end());
    return longer;
}

Bytes withPngSize(Bytes png, PixelSize size)
{
    const std::size_t header = pngDataOffset(png, "IHDR");
    putBigEndian(std::span(png).subspan(header, 4), size.width);
    putBigEndian(std::span(png).subspan(header + 4, 4), size.height);
    return png;
}

} // namespace tallowmere
