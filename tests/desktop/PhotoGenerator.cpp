// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/desktop/PhotoGenerator.h"

#include "tests/imaging/pixels/Profiles.h"

#include <png.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <string>
// After <cstdio>: the library's header relies on FILE.
#include <jpeglib.h>

namespace tallowmere::photos {
namespace {

constexpr int kExifMarker = JPEG_APP0 + 1;

void append(std::vector<std::uint8_t> &bytes, std::initializer_list<int> values)
{
    for (const int value : values)
        bytes.push_back(static_cast<std::uint8_t>(value));
}

/// Exif 2.3: a big-endian TIFF structure with one directory of three entries.
std::vector<std::uint8_t> exifBlock(int orientation)
{
    static constexpr std::string_view kModel("Generated\0", 10);
    static constexpr std::string_view kTaken("2024:05:17 09:41:00\0", 20);
    constexpr int kEntries = 3;
    constexpr int kFirstText = 8 + 2 + kEntries * 12 + 4;
    std::vector<std::uint8_t> bytes;
    append(bytes, {'E', 'x', 'i', 'f', 0, 0, 'M', 'M', 0, 42, 0, 0, 0, 8, 0, kEntries});
    append(bytes, {0x01, 0x10, 0, 2, 0, 0, 0, static_cast<int>(kModel.size()), 0, 0, 0, kFirstText});
    append(bytes, {0x01, 0x12, 0, 3, 0, 0, 0, 1, 0, orientation, 0, 0});
    append(bytes, {0x01, 0x32, 0, 2, 0, 0, 0, static_cast<int>(kTaken.size()), 0, 0, 0,
                   kFirstText + static_cast<int>(kModel.size())});
    append(bytes, {0, 0, 0, 0});
    bytes.insert(bytes.end(), kModel.begin(), kModel.end());
    bytes.insert(bytes.end(), kTaken.begin(), kTaken.end());
    return bytes;
}

[[noreturn]] void fail(j_common_ptr codec)
{
    std::array<char, JMSG_LENGTH_MAX> message{};
    codec->err->format_message(codec, message.data());
    throw std::runtime_error(message.data());
}

/// SplitMix64, by its published constants.
std::uint64_t mixed(std::uint64_t value)
{
    value += 0x9E3779B97F4A7C15U;
    value = (value ^ (value >> 30U)) * 0xBF58476D1CE4E5B9U;
    value = (value ^ (value >> 27U)) * 0x94D049BB133111EBU;
    return value ^ (value >> 31U);
}

/// Smooth random values over a lattice of @p step pixels, from -1 to 1, a row at a time.
class ValueNoise
{
public:
    ValueNoise(int width, int step, std::uint64_t seed) : m_step(step), m_seed(seed), m_columns(width / step + 2) {}

    void row(int y, std::vector<float> &values, float strength) const
    {
        const int cell = y / m_step;
        const float below = eased(y % m_step);
        std::vector<float> lattice(static_cast<std::size_t>(m_columns));
        for (int column = 0; column < m_columns; ++column) {
            const float top = at(column, cell);
            lattice[static_cast<std::size_t>(column)] = top + (at(column, cell + 1) - top) * below;
        }
        for (std::size_t x = 0; x < values.size(); ++x) {
            const std::size_t column = x / static_cast<std::size_t>(m_step);
            const float along = eased(static_cast<int>(x) % m_step);
            values[x] += strength * (lattice[column] + (lattice[column + 1] - lattice[column]) * along);
        }
    }

    [[nodiscard]] float at(int column, int row) const
    {
        const auto hash = mixed(m_seed ^ (static_cast<std::uint64_t>(static_cast<std::uint32_t>(row)) << 32U) ^
                                static_cast<std::uint32_t>(column));
        return static_cast<float>(hash >> 40U) / static_cast<float>(1U << 23U) - 1.0F;
    }

private:
    [[nodiscard]] float eased(int part) const
    {
        const float t = static_cast<float>(part) / static_cast<float>(m_step);
        return t * t * (3.0F - 2.0F * t);
    }

    int m_step;
    std::uint64_t m_seed;
    int m_columns;
};

std::uint8_t channel(float value)
{
    return static_cast<std::uint8_t>(std::clamp(value, 0.0F, 255.0F));
}

/// Sky above ridges of hills, texture everywhere, and a sensor's noise on top.
class Landscape
{
public:
    Landscape(int width, int height, std::uint64_t seed)
        : m_height(height), m_seed(seed), m_clouds(width, std::max(16, width / 6), seed + 1),
          m_texture(width, std::max(6, width / 90), seed + 2), m_detail(width, 5, seed + 3)
    {
        constexpr int kRidges = 4;
        for (int ridge = 0; ridge < kRidges; ++ridge) {
            const ValueNoise line(width, std::max(8, width / (4 + 3 * ridge)),
                                  seed + 10 + static_cast<unsigned>(ridge));
            std::vector<float> heights(static_cast<std::size_t>(width), 0.0F);
            line.row(0, heights, 0.09F);
            for (float &value : heights)
                value = (value + 0.42F + 0.14F * static_cast<float>(ridge)) * static_cast<float>(height);
            m_ridges.push_back(std::move(heights));
        }
    }

    void operator()(int y, std::span<std::uint8_t> row)
    {
        const std::size_t width = row.size() / 3;
        m_soft.assign(width, 0.0F);
        m_fine.assign(width, 0.0F);
        m_clouds.row(y, m_soft, 22.0F);
        m_texture.row(y, m_fine, 9.0F);
        m_detail.row(y, m_fine, 6.0F);
        std::uint64_t noise = mixed(m_seed ^ (static_cast<std::uint64_t>(y) * 977U));
        const float down = static_cast<float>(y) / static_cast<float>(m_height);
        for (std::size_t x = 0; x < width; ++x) {
            noise = noise * 6364136223846793005U + 1442695040888963407U;
            const float grain = (static_cast<float>((noise >> 33U) & 0xFFU) - 127.5F) * 0.07F;
            const auto colour = colourAt(x, static_cast<float>(y), down);
            for (std::size_t i = 0; i < 3; ++i)
                row[x * 3 + i] = channel(colour[i] + grain);
        }
    }

private:
    [[nodiscard]] std::array<float, 3> colourAt(std::size_t x, float y, float down) const
    {
        std::array<float, 3> colour{118.0F + 110.0F * down + m_soft[x], 168.0F + 50.0F * down + m_soft[x],
                                    226.0F - 30.0F * down + m_soft[x] * 0.6F};
        float ridge = 0.0F;
        for (const auto &line : m_ridges) {
            ridge += 1.0F;
            if (y > line[x]) {
                const float shade = m_fine[x] * ridge * 0.35F + m_soft[x] * 0.4F;
                colour = {128.0F - 22.0F * ridge + shade, 146.0F - 16.0F * ridge + shade,
                          150.0F - 30.0F * ridge + shade};
            }
        }
        return colour;
    }

    int m_height;
    std::uint64_t m_seed;
    ValueNoise m_clouds;
    ValueNoise m_texture;
    ValueNoise m_detail;
    std::vector<std::vector<float>> m_ridges;
    std::vector<float> m_soft;
    std::vector<float> m_fine;
};

void paint(std::span<std::uint8_t> row, const Rgb &colour)
{
    for (std::size_t i = 0; i + 2 < row.size(); i += 3) {
        row[i] = colour.red;
        row[i + 1] = colour.green;
        row[i + 2] = colour.blue;
    }
}

} // namespace

std::vector<std::byte> encodeJpeg(int width, int height, const RowSource &rows, const JpegOptions &options)
{
    jpeg_compress_struct codec{};
    jpeg_error_mgr errors{};
    codec.err = jpeg_std_error(&errors);
    errors.error_exit = fail;
    jpeg_create_compress(&codec);
    unsigned char *memory = nullptr;
    unsigned long size = 0;
    jpeg_mem_dest(&codec, &memory, &size);
    codec.image_width = static_cast<JDIMENSION>(width);
    codec.image_height = static_cast<JDIMENSION>(height);
    codec.input_components = 3;
    codec.in_color_space = JCS_RGB;
    // The library's own subsampling for YCbCr is 4:2:0.
    jpeg_set_defaults(&codec);
    jpeg_set_quality(&codec, options.quality, TRUE);
    jpeg_start_compress(&codec, TRUE);
    if (options.exif) {
        const auto exif = exifBlock(options.orientation);
        jpeg_write_marker(&codec, kExifMarker, exif.data(), static_cast<unsigned>(exif.size()));
    }
    const ProfileBytes profile = options.profile == ColourSpace::sRGB ? sRGBProfile() : displayP3Profile();
    jpeg_write_icc_profile(&codec, reinterpret_cast<const JOCTET *>(profile->data()),
                           static_cast<unsigned>(profile->size()));
    std::vector<std::uint8_t> row(static_cast<std::size_t>(width) * 3);
    for (int y = 0; y < height; ++y) {
        rows(y, row);
        JSAMPROW line = row.data();
        jpeg_write_scanlines(&codec, &line, 1);
    }
    jpeg_finish_compress(&codec);
    std::vector<std::byte> result(size);
    std::memcpy(result.data(), memory, size);
    jpeg_destroy_compress(&codec);
    std::free(memory);
    return result;
}

RowSource landscape(int width, int height, std::uint64_t seed)
{
    return Landscape(width, height, seed);
}

std::vector<std::byte> makePhoto(int width, int height, std::uint64_t seed, const JpegOptions &options)
{
    return encodeJpeg(width, height, landscape(width, height, seed), options);
}

std::vector<std::byte> makeTarget(int width, int height, const Rgb &centre, const Rgb &surround,
                                  const JpegOptions &options)
{
    const auto rows = [&](int y, std::span<std::uint8_t> row) {
        paint(row, surround);
        if (y >= height / 4 && y < height - height / 4)
            paint(row.subspan(static_cast<std::size_t>(width / 4) * 3, static_cast<std::size_t>(width / 2) * 3),
                  centre);
    };
    return encodeJpeg(width, height, rows, options);
}

std::vector<std::byte> makeHalves(int width, int height, const Rgb &left, const Rgb &right, const JpegOptions &options)
{
    const auto middle = static_cast<std::size_t>(width / 2) * 3;
    const auto rows = [&](int, std::span<std::uint8_t> row) {
        paint(row.first(middle), left);
        paint(row.subspan(middle), right);
    };
    return encodeJpeg(width, height, rows, options);
}

namespace {

std::vector<std::byte> encodePng(int width, int height, png_uint_32 format, const std::vector<std::uint8_t> &pixels)
{
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(width);
    image.height = static_cast<png_uint_32>(height);
    image.format = format;
    png_alloc_size_t size = 0;
    png_image_write_to_memory(&image, nullptr, &size, 0, pixels.data(), 0, nullptr);
    std::vector<std::byte> result(size);
    if (!png_image_write_to_memory(&image, result.data(), &size, 0, pixels.data(), 0, nullptr))
        throw std::runtime_error(std::string("no PNG: ") + image.message);
    result.resize(size);
    return result;
}

} // namespace

std::vector<std::byte> makePlainPng(int width, int height, const Rgb &colour)
{
    std::vector<std::uint8_t> pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 3);
    paint(pixels, colour);
    return encodePng(width, height, PNG_FORMAT_RGB, pixels);
}

std::vector<std::byte> makeClearPng(int width, int height)
{
    return encodePng(width, height, PNG_FORMAT_RGBA,
                     std::vector<std::uint8_t>(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4));
}

std::vector<std::byte> withPromisedSize(std::vector<std::byte> jpeg, int width, int height)
{
    const auto number = [&](std::size_t at) {
        return std::to_integer<std::size_t>(jpeg[at]) << 8U | std::to_integer<std::size_t>(jpeg[at + 1]);
    };
    const auto put = [&](std::size_t at, int value) {
        jpeg[at] = static_cast<std::byte>(value >> 8);
        jpeg[at + 1] = static_cast<std::byte>(value & 0xFF);
    };
    // Behind the start-of-image marker every segment is a marker and a length, up to the frame header.
    constexpr std::size_t kBaselineFrame = 0xFFC0;
    for (std::size_t at = 2; at + 9 < jpeg.size(); at += 2 + number(at + 2)) {
        if (number(at) == kBaselineFrame) {
            put(at + 5, height);
            put(at + 7, width);
            return jpeg;
        }
    }
    throw std::runtime_error("no frame header");
}

} // namespace tallowmere::photos
