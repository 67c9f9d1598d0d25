// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "benchmarks/PlainDecoders.h"

#include "benchmarks/Clock.h"

#include <avif/avif.h>
#include <libheif/heif.h>
#include <png.h>
#include <webp/decode.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>

// After <cstdio>: the library's header relies on FILE.
#include <jpeglib.h>

namespace tallowmere::bench {
namespace {

constexpr std::size_t kBytesPerPixel = 4;

template <auto Function>
struct Calling
{
    template <typename Type>
    void operator()(Type *object) const
    {
        Function(object);
    }
};

void require(bool done, const char *what)
{
    if (!done)
        throw std::runtime_error(what);
}

/// Not filled with zeros: that would be work the decoder does not ask for.
std::unique_ptr<std::uint8_t[]> pixelsFor(std::size_t width, std::size_t height)
{
    return std::make_unique_for_overwrite<std::uint8_t[]>(width * height * kBytesPerPixel);
}

const std::uint8_t *dataOf(std::span<const std::byte> bytes)
{
    return reinterpret_cast<const std::uint8_t *>(bytes.data());
}

void decodeJpeg(std::span<const std::byte> bytes)
{
    jpeg_decompress_struct codec{};
    jpeg_error_mgr errors{};
    codec.err = jpeg_std_error(&errors);
    errors.error_exit = [](j_common_ptr) { throw std::runtime_error("JPEG: not decoded"); };
    jpeg_create_decompress(&codec);
    jpeg_mem_src(&codec, dataOf(bytes), bytes.size());
    jpeg_read_header(&codec, TRUE);
    codec.out_color_space = JCS_EXT_BGRX;
    jpeg_start_decompress(&codec);
    const auto pixels = pixelsFor(codec.output_width, codec.output_height);
    while (codec.output_scanline < codec.output_height) {
        JSAMPROW row = pixels.get() + std::size_t{codec.output_scanline} * codec.output_width * kBytesPerPixel;
        jpeg_read_scanlines(&codec, &row, 1);
    }
    jpeg_finish_decompress(&codec);
    jpeg_destroy_decompress(&codec);
}

void decodePng(std::span<const std::byte> bytes)
{
    const auto fail = [](png_structp, png_const_charp message) { throw std::runtime_error(message); };
    const auto ignore = [](png_structp, png_const_charp) {};
    const auto read = [](png_structp png, png_bytep target, std::size_t size) {
        auto &rest = *static_cast<std::span<const std::byte> *>(png_get_io_ptr(png));
        require(size <= rest.size(), "PNG: too short");
        std::memcpy(target, rest.data(), size);
        rest = rest.subspan(size);
    };
    png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, fail, ignore);
    png_infop info = png_create_info_struct(png);
    png_set_read_fn(png, &bytes, read);
    png_read_info(png, info);
    png_set_bgr(png);
    png_set_filler(png, 0xFF, PNG_FILLER_AFTER);
    png_read_update_info(png, info);
    const std::size_t height = png_get_image_height(png, info);
    const std::size_t stride = png_get_rowbytes(png, info);
    const auto pixels = pixelsFor(png_get_image_width(png, info), height);
    for (std::size_t y = 0; y < height; ++y)
        png_read_row(png, pixels.get() + y * stride, nullptr);
    png_read_end(png, nullptr);
    png_destroy_read_struct(&png, &info, nullptr);
}

void decodeWebp(std::span<const std::byte> bytes)
{
    WebPDecoderConfig config;
    require(WebPInitDecoderConfig(&config) != 0, "WebP: no configuration");
    config.output.colorspace = MODE_BGRA;
    config.options.use_threads = 1;
    require(WebPDecode(dataOf(bytes), bytes.size(), &config) == VP8_STATUS_OK, "WebP: not decoded");
    WebPFreeDecBuffer(&config.output);
}

void decodeAvif(std::span<const std::byte> bytes)
{
    const std::unique_ptr<avifDecoder, Calling<avifDecoderDestroy>> decoder(avifDecoderCreate());
    decoder->maxThreads = static_cast<int>(std::thread::hardware_concurrency());
    const std::unique_ptr<avifImage, Calling<avifImageDestroy>> image(avifImageCreateEmpty());
    require(avifDecoderReadMemory(decoder.get(), image.get(), dataOf(bytes), bytes.size()) == AVIF_RESULT_OK,
            "AVIF: not decoded");
    avifRGBImage rgb{};
    avifRGBImageSetDefaults(&rgb, image.get());
    rgb.format = AVIF_RGB_FORMAT_BGRA;
    const auto pixels = pixelsFor(image->width, image->height);
    rgb.pixels = pixels.get();
    rgb.rowBytes = image->width * static_cast<std::uint32_t>(kBytesPerPixel);
    require(avifImageYUVToRGB(image.get(), &rgb) == AVIF_RESULT_OK, "AVIF: not converted");
}

void require(const heif_error &error)
{
    require(error.code == heif_error_Ok, error.message);
}

void decodeHeic(std::span<const std::byte> bytes)
{
    const std::unique_ptr<heif_context, Calling<heif_context_free>> context(heif_context_alloc());
    require(heif_context_read_from_memory_without_copy(context.get(), bytes.data(), bytes.size(), nullptr));
    heif_image_handle *found = nullptr;
    require(heif_context_get_primary_image_handle(context.get(), &found));
    const std::unique_ptr<heif_image_handle, Calling<heif_image_handle_release>> handle(found);
    heif_image *made = nullptr;
    require(heif_decode_image(found, &made, heif_colorspace_RGB, heif_chroma_interleaved_RGBA, nullptr));
    heif_image_release(made);
}

} // namespace

std::vector<std::byte> readBytes(const std::filesystem::path &file)
{
    std::vector<std::byte> bytes(std::filesystem::file_size(file));
    std::ifstream stream(file, std::ios::binary);
    require(!!stream.read(reinterpret_cast<char *>(bytes.data()), static_cast<std::streamsize>(bytes.size())),
            "not read");
    return bytes;
}

void decodePlainly(const std::filesystem::path &file, std::span<const std::byte> bytes)
{
    const std::string extension = file.extension();
    if (extension == ".png")
        decodePng(bytes);
    else if (extension == ".webp")
        decodeWebp(bytes);
    else if (extension == ".avif")
        decodeAvif(bytes);
    else if (extension == ".heic")
        decodeHeic(bytes);
    else
        decodeJpeg(bytes);
}

double timePlainDecode(const std::filesystem::path &file)
{
    const auto bytes = readBytes(file);
    return timeOf([&] { decodePlainly(file, bytes); });
}

} // namespace tallowmere::bench
