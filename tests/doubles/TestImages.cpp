// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/doubles/TestImages.h"

#include <QtEndian>

#include <jpeglib.h>
#include <png.h>
#include <webp/encode.h>
#include <webp/mux.h>
#include <zlib.h>

#include <cstdio>
#include <cstdlib>
#include <memory>

namespace tallowmere::test {
namespace {

[[noreturn]] void give(const char *what)
{
    std::fprintf(stderr, "the test's own encoder failed: %s\n", what);
    std::abort();
}

/// An APP1 body: Exif, big endian, one IFD with the orientation as its only entry.
QByteArray exifWithOrientation(int orientation)
{
    QByteArray body = QByteArray::fromHex("457869660000"     // "Exif", two zeros
                                          "4d4d002a00000008" // TIFF header
                                          "0001"             // one entry
                                          "0112000300000001" // Orientation, one SHORT
                                          "00000000"         // its value goes here
                                          "00000000");       // no next IFD
    body[6 + 8 + 2 + 8 + 1] = static_cast<char>(orientation);
    return body;
}

} // namespace

QByteArray halvedJpegOf(int width, int height, Rgba left, Rgba right, int exifOrientation)
{
    jpeg_compress_struct compress{};
    jpeg_error_mgr errors{};
    compress.err = jpeg_std_error(&errors); // whose default is to end the program
    jpeg_create_compress(&compress);
    unsigned char *bytes = nullptr;
    unsigned long size = 0;
    jpeg_mem_dest(&compress, &bytes, &size);
    compress.image_width = static_cast<JDIMENSION>(width);
    compress.image_height = static_cast<JDIMENSION>(height);
    compress.input_components = 3;
    compress.in_color_space = JCS_RGB;
    jpeg_set_defaults(&compress);
    jpeg_set_quality(&compress, 90, TRUE);
    jpeg_start_compress(&compress, TRUE);
    if (exifOrientation != 0) {
        const QByteArray exif = exifWithOrientation(exifOrientation);
        jpeg_write_marker(&compress, JPEG_APP0 + 1, reinterpret_cast<const JOCTET *>(exif.constData()),
                          static_cast<unsigned>(exif.size()));
    }
    std::vector<JSAMPLE> row;
    for (int x = 0; x < width; ++x) {
        const Rgba &colour = x < width / 2 ? left : right;
        row.insert(row.end(), colour.begin(), colour.begin() + 3);
    }
    JSAMPROW rows[] = {row.data()};
    for (int y = 0; y < height; ++y)
        jpeg_write_scanlines(&compress, rows, 1);
    jpeg_finish_compress(&compress);
    jpeg_destroy_compress(&compress);
    QByteArray file(reinterpret_cast<const char *>(bytes), static_cast<qsizetype>(size));
    std::free(bytes);
    return file;
}

QByteArray jpegOf(int width, int height, Rgba colour, int exifOrientation)
{
    return halvedJpegOf(width, height, colour, colour, exifOrientation);
}

QByteArray pngOf(int width, int height, Rgba colour, bool withAlpha)
{
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(width);
    image.height = static_cast<png_uint_32>(height);
    image.format = withAlpha ? PNG_FORMAT_RGBA : PNG_FORMAT_RGB;
    std::vector<std::uint8_t> pixels;
    for (int i = 0; i < width * height; ++i)
        pixels.insert(pixels.end(), colour.begin(), colour.begin() + (withAlpha ? 4 : 3));
    png_alloc_size_t size = 0;
    if (!png_image_write_to_memory(&image, nullptr, &size, 0, pixels.data(), 0, nullptr))
        give("PNG");
    QByteArray file(static_cast<qsizetype>(size), '\0');
    if (!png_image_write_to_memory(&image, file.data(), &size, 0, pixels.data(), 0, nullptr))
        give("PNG");
    file.truncate(static_cast<qsizetype>(size));
    return file;
}

QByteArray inDisplayP3(QByteArray png)
{
    constexpr qsizetype kEndOfHeader = 8 + 12 + 13;     // signature, then IHDR
    QByteArray chunk = QByteArray::fromHex("00000004"   // bytes of data
                                           "63494350"   // cICP
                                           "0c0d0001"   // P3 primaries with the D65 white, sRGB's curve, full range
                                           "00000000"); // the checksum goes here
    const auto *summed = reinterpret_cast<const Bytef *>(chunk.constData()) + 4;
    qToBigEndian(static_cast<quint32>(::crc32(0, summed, 8)), chunk.data() + 12);
    return png.insert(kEndOfHeader, chunk);
}

QByteArray webpOf(int width, int height, Rgba colour)
{
    return animatedWebpOf(width, height, {colour});
}

QByteArray animatedWebpOf(int width, int height, const std::vector<Rgba> &frames)
{
    WebPAnimEncoderOptions options;
    WebPConfig config;
    if (!WebPAnimEncoderOptionsInit(&options) || !WebPConfigInit(&config))
        give("WebP");
    config.lossless = 1;
    const std::unique_ptr<WebPAnimEncoder, decltype(&WebPAnimEncoderDelete)> encoder(
        WebPAnimEncoderNew(width, height, &options), &WebPAnimEncoderDelete);
    int milliseconds = 0;
    for (const Rgba &colour : frames) {
        WebPPicture picture;
        if (!WebPPictureInit(&picture))
            give("WebP");
        picture.use_argb = 1;
        picture.width = width;
        picture.height = height;
        std::vector<std::uint8_t> pixels;
        for (int i = 0; i < width * height; ++i)
            pixels.insert(pixels.end(), colour.begin(), colour.end());
        if (!WebPPictureImportRGBA(&picture, pixels.data(), width * 4) ||
            !WebPAnimEncoderAdd(encoder.get(), &picture, milliseconds, &config))
            give("WebP");
        WebPPictureFree(&picture);
        milliseconds += 100;
    }
    WebPData data;
    WebPDataInit(&data);
    if (!WebPAnimEncoderAdd(encoder.get(), nullptr, milliseconds, nullptr) ||
        !WebPAnimEncoderAssemble(encoder.get(), &data))
        give("WebP");
    QByteArray file(reinterpret_cast<const char *>(data.bytes), static_cast<qsizetype>(data.size));
    WebPDataClear(&data);
    return file;
}

} // namespace tallowmere::test
