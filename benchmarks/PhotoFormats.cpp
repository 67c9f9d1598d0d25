// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "benchmarks/PhotoFormats.h"

#include <avif/avif.h>
#include <lcms2.h>
#include <libheif/heif.h>
#include <png.h>
#include <webp/encode.h>
#include <webp/mux.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <thread>

namespace tallowmere::bench {
namespace {

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

std::vector<std::uint8_t> sRgbProfile()
{
    const std::unique_ptr<void, decltype(&cmsCloseProfile)> profile(cmsCreate_sRGBProfile(), &cmsCloseProfile);
    cmsUInt32Number size = 0;
    require(cmsSaveProfileToMem(profile.get(), nullptr, &size), "no sRGB profile");
    std::vector<std::uint8_t> bytes(size);
    require(cmsSaveProfileToMem(profile.get(), bytes.data(), &size), "no sRGB profile");
    return bytes;
}

std::vector<std::uint8_t> pixelsOf(const Picture &picture)
{
    const std::size_t stride = static_cast<std::size_t>(picture.width) * 3;
    std::vector<std::uint8_t> pixels(stride * static_cast<std::size_t>(picture.height));
    for (int y = 0; y < picture.height; ++y)
        picture.rows(y, std::span(pixels).subspan(stride * static_cast<std::size_t>(y), stride));
    return pixels;
}

std::vector<std::byte> bytesOf(const void *data, std::size_t size)
{
    std::vector<std::byte> bytes(size);
    std::memcpy(bytes.data(), data, size);
    return bytes;
}

void writePngRows(png_structp png, png_infop info, const Picture &picture, std::vector<std::uint8_t> &row)
{
    const auto profile = sRgbProfile();
    png_set_IHDR(png, info, static_cast<png_uint_32>(picture.width), static_cast<png_uint_32>(picture.height), 8,
                 PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_set_iCCP(png, info, "sRGB", PNG_COMPRESSION_TYPE_BASE, profile.data(),
                 static_cast<png_uint_32>(profile.size()));
    png_write_info(png, info);
    for (int y = 0; y < picture.height; ++y) {
        picture.rows(y, row);
        png_write_row(png, row.data());
    }
    png_write_end(png, info);
}

} // namespace

std::vector<std::byte> encodePng(const Picture &picture)
{
    std::vector<std::byte> result;
    const auto fail = [](png_structp, png_const_charp message) { throw std::runtime_error(message); };
    const auto append = [](png_structp png, png_bytep data, std::size_t size) {
        auto &bytes = *static_cast<std::vector<std::byte> *>(png_get_io_ptr(png));
        const auto *first = reinterpret_cast<const std::byte *>(data);
        bytes.insert(bytes.end(), first, first + size);
    };
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, fail, nullptr);
    png_infop info = png_create_info_struct(png);
    png_set_write_fn(png, &result, append, nullptr);
    std::vector<std::uint8_t> row(static_cast<std::size_t>(picture.width) * 3);
    writePngRows(png, info, picture, row);
    png_destroy_write_struct(&png, &info);
    return result;
}

std::vector<std::byte> encodeWebp(const Picture &picture)
{
    constexpr float kQuality = 91.0F;
    const auto pixels = pixelsOf(picture);
    std::uint8_t *coded = nullptr;
    const std::size_t size =
        WebPEncodeRGB(pixels.data(), picture.width, picture.height, picture.width * 3, kQuality, &coded);
    require(size > 0, "WebP: not encoded");
    const std::unique_ptr<std::uint8_t, Calling<WebPFree>> owned(coded);
    const auto profile = sRgbProfile();
    const WebPData image{coded, size};
    const WebPData icc{profile.data(), profile.size()};
    const std::unique_ptr<WebPMux, Calling<WebPMuxDelete>> mux(WebPMuxNew());
    require(WebPMuxSetImage(mux.get(), &image, 0) == WEBP_MUX_OK, "WebP: no image");
    require(WebPMuxSetChunk(mux.get(), "ICCP", &icc, 0) == WEBP_MUX_OK, "WebP: no profile");
    WebPData file{};
    require(WebPMuxAssemble(mux.get(), &file) == WEBP_MUX_OK, "WebP: not assembled");
    auto result = bytesOf(file.bytes, file.size);
    WebPDataClear(&file);
    return result;
}

std::vector<std::byte> encodeAvif(const Picture &picture)
{
    constexpr int kQuantizer = 13;
    constexpr int kFast = 9;
    auto pixels = pixelsOf(picture);
    const auto profile = sRgbProfile();
    const std::unique_ptr<avifImage, Calling<avifImageDestroy>> image(
        avifImageCreate(static_cast<std::uint32_t>(picture.width), static_cast<std::uint32_t>(picture.height), 8,
                        AVIF_PIXEL_FORMAT_YUV420));
    avifImageSetProfileICC(image.get(), profile.data(), profile.size());
    avifRGBImage rgb{};
    avifRGBImageSetDefaults(&rgb, image.get());
    rgb.format = AVIF_RGB_FORMAT_RGB;
    rgb.pixels = pixels.data();
    rgb.rowBytes = static_cast<std::uint32_t>(picture.width) * 3;
    require(avifImageRGBToYUV(image.get(), &rgb) == AVIF_RESULT_OK, "AVIF: not converted");
    const std::unique_ptr<avifEncoder, Calling<avifEncoderDestroy>> encoder(avifEncoderCreate());
    encoder->maxThreads = static_cast<int>(std::thread::hardware_concurrency());
    encoder->speed = kFast;
    encoder->minQuantizer = kQuantizer;
    encoder->maxQuantizer = kQuantizer;
    avifRWData output = AVIF_DATA_EMPTY;
    require(avifEncoderWrite(encoder.get(), image.get(), &output) == AVIF_RESULT_OK, "AVIF: not encoded");
    auto result = bytesOf(output.data, output.size);
    avifRWDataFree(&output);
    return result;
}

namespace {

void require(const heif_error &error)
{
    if (error.code != heif_error_Ok)
        throw std::runtime_error(std::string("HEIC: ") + error.message);
}

std::unique_ptr<heif_image, Calling<heif_image_release>> heifImageOf(const Picture &picture)
{
    heif_image *image = nullptr;
    require(heif_image_create(picture.width, picture.height, heif_colorspace_RGB, heif_chroma_interleaved_RGB, &image));
    std::unique_ptr<heif_image, Calling<heif_image_release>> owned(image);
    require(heif_image_add_plane(image, heif_channel_interleaved, picture.width, picture.height, 24));
    int stride = 0;
    std::uint8_t *plane = heif_image_get_plane(image, heif_channel_interleaved, &stride);
    for (int y = 0; y < picture.height; ++y)
        picture.rows(y, {plane + static_cast<std::ptrdiff_t>(stride) * y, static_cast<std::size_t>(picture.width) * 3});
    const auto profile = sRgbProfile();
    require(heif_image_set_raw_color_profile(image, "prof", profile.data(), profile.size()));
    return owned;
}

} // namespace

std::vector<std::byte> encodeHeic(const Picture &picture)
{
    constexpr int kQuality = 60;
    const auto image = heifImageOf(picture);
    const std::unique_ptr<heif_context, Calling<heif_context_free>> context(heif_context_alloc());
    heif_encoder *made = nullptr;
    require(heif_context_get_encoder_for_format(context.get(), heif_compression_HEVC, &made));
    const std::unique_ptr<heif_encoder, Calling<heif_encoder_release>> encoder(made);
    require(heif_encoder_set_lossy_quality(made, kQuality));
    require(heif_encoder_set_parameter_string(made, "preset", "veryfast"));
    heif_image_handle *handle = nullptr;
    require(heif_context_encode_image(context.get(), image.get(), made, nullptr, &handle));
    heif_image_handle_release(handle);
    std::vector<std::byte> result;
    heif_writer writer{};
    writer.writer_api_version = 1;
    writer.write = [](heif_context *, const void *data, std::size_t size, void *target) {
        *static_cast<std::vector<std::byte> *>(target) = bytesOf(data, size);
        return heif_error{heif_error_Ok, heif_suberror_Unspecified, ""};
    };
    require(heif_context_write(context.get(), &writer, &result));
    return result;
}

} // namespace tallowmere::bench
