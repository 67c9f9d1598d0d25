// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "Pictures.h"

#include <jpeglib.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>

namespace tallowmere {

namespace {

constexpr std::array<std::uint8_t, 4> kMidGrey{128, 128, 128, 128};

void chooseColours(jpeg_compress_struct &info, const JpegRecipe &recipe)
{
    info.in_color_space = recipe.components == 1 ? JCS_GRAYSCALE : recipe.components == 3 ? JCS_RGB : JCS_CMYK;
    jpeg_set_defaults(&info);
    if (recipe.components == 4)
        jpeg_set_colorspace(&info, recipe.adobe ? JCS_YCCK : JCS_CMYK);
    info.write_Adobe_marker = recipe.adobe ? TRUE : FALSE;
}

void writeMarkers(jpeg_compress_struct &info, const JpegRecipe &recipe)
{
    for (const auto &[number, data] : recipe.markers) {
        jpeg_write_marker(&info, JPEG_APP0 + number, reinterpret_cast<const JOCTET *>(data.data()),
                          static_cast<unsigned>(data.size()));
    }
}

void writeRows(jpeg_compress_struct &info, const JpegRecipe &recipe)
{
    const auto components = static_cast<std::size_t>(recipe.components);
    std::vector<std::uint8_t> row(recipe.size.width * components);
    for (std::uint32_t y = 0; y < recipe.size.height; ++y) {
        for (std::size_t x = 0; x < recipe.size.width; ++x) {
            const auto pixel = recipe.paint ? recipe.paint(static_cast<std::uint32_t>(x), y) : kMidGrey;
            for (std::size_t k = 0; k < components; ++k)
                row[x * components + k] = pixel[k];
        }
        JSAMPROW samples = row.data();
        jpeg_write_scanlines(&info, &samples, 1);
    }
}

} // namespace

Bytes bytesOf(std::string_view text)
{
    const auto bytes = std::as_bytes(std::span(text));
    return {bytes.begin(), bytes.end()};
}

Bytes joined(std::initializer_list<std::span<const std::byte>> parts)
{
    Bytes all;
    for (const auto &part : parts)
        all.insert(all.end(), part.begin(), part.end());
    return all;
}

Bytes makeJpeg(const JpegRecipe &recipe)
{
    jpeg_compress_struct info{};
    jpeg_error_mgr errors{};
    info.err = jpeg_std_error(&errors);
    jpeg_create_compress(&info);
    unsigned char *buffer = nullptr;
    unsigned long length = 0;
    jpeg_mem_dest(&info, &buffer, &length);
    info.image_width = recipe.size.width;
    info.image_height = recipe.size.height;
    info.input_components = recipe.components;
    chooseColours(info, recipe);
    jpeg_set_quality(&info, recipe.quality, TRUE);
    if (recipe.components > 1)
        info.comp_info[0].h_samp_factor = info.comp_info[0].v_samp_factor = recipe.sampling;
    if (recipe.components == 4)
        info.comp_info[3].h_samp_factor = info.comp_info[3].v_samp_factor = recipe.sampling;
    if (recipe.progressive)
        jpeg_simple_progression(&info);
    jpeg_start_compress(&info, TRUE);
    writeMarkers(info, recipe);
    writeRows(info, recipe);
    jpeg_finish_compress(&info);
    const auto bytes = std::as_bytes(std::span(buffer, length));
    Bytes jpeg(bytes.begin(), bytes.end());
    jpeg_destroy_compress(&info);
    std::free(buffer);
    return jpeg;
}

std::size_t jpegFrameOffset(const Bytes &jpeg)
{
    const auto at = [&](std::size_t i) { return std::to_integer<std::size_t>(jpeg.at(i)); };
    for (std::size_t i = 2; at(i) == 0xFF; i += 2 + (at(i + 2) << 8 | at(i + 3))) {
        if (at(i + 1) >= 0xC0 && at(i + 1) <= 0xC2)
            return i + 4;
    }
    throw std::runtime_error("a JPEG without a frame header");
}

Bytes withJpegSize(Bytes jpeg, PixelSize size)
{
    const std::size_t frame = jpegFrameOffset(jpeg);
    const auto put = [&](std::size_t offset, std::uint32_t side) {
        jpeg[frame + offset] = static_cast<std::byte>(side >> 8);
        jpeg[frame + offset + 1] = static_cast<std::byte>(side);
    };
    put(1, size.height);
    put(3, size.width);
    return jpeg;
}

Bytes tiffWithOrientation(unsigned orientation, bool littleEndian)
{
    Bytes tiff = bytesOf(littleEndian ? "II" : "MM");
    const auto put = [&](std::uint32_t value, int count) {
        for (int i = 0; i < count; ++i)
            tiff.push_back(static_cast<std::byte>(value >> 8 * (littleEndian ? i : count - 1 - i)));
    };
    put(42, 2);
    put(8, 4);   // where the directory is
    put(1, 2);   // its entries
    put(274, 2); // Orientation
    put(3, 2);   // a short
    put(1, 4);   // of them
    put(orientation, 2);
    put(0, 2);
    put(0, 4); // no further directory
    return tiff;
}

Bytes exifWithOrientation(unsigned orientation, bool littleEndian)
{
    return joined({bytesOf(std::string_view("Exif\0\0", 6)), tiffWithOrientation(orientation, littleEndian)});
}

} // namespace tallowmere
