// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/codecs/containers/PlanarRows.h"

#include "tests/imaging/codecs/KeepingSink.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <memory>

namespace tallowmere {
namespace {

struct Deleter
{
    void operator()(avifImage *image) const { avifImageDestroy(image); }
};
using Image = std::unique_ptr<avifImage, Deleter>;

Image imageOf(PixelSize size, unsigned depth, avifPixelFormat format, avifRange range, avifMatrixCoefficients matrix)
{
    Image image(avifImageCreate(size.width, size.height, depth, format));
    image->yuvRange = range;
    image->matrixCoefficients = matrix;
    avifImageAllocatePlanes(image.get(), AVIF_PLANES_YUV);
    return image;
}

void put(avifImage &image, int plane, std::uint32_t x, std::uint32_t y, unsigned value)
{
    std::uint8_t *row = image.yuvPlanes[plane] + std::size_t{y} * image.yuvRowBytes[plane];
    if (image.depth == 8) {
        row[x] = static_cast<std::uint8_t>(value);
        return;
    }
    const auto sample = static_cast<std::uint16_t>(value);
    std::memcpy(row + std::size_t{x} * 2, &sample, 2);
}

KeepingSink delivered(const avifImage &image, const Placement &placement, const AlphaPlane &alpha = {})
{
    KeepingSink sink;
    EXPECT_TRUE(sink.begin({placement.size, {image.width, image.height}, Orientation::upright, false, {}}));
    EXPECT_FALSE(deliverPlanes(image, alpha, placement, image.height, {}, sink));
    return sink;
}

KeepingSink delivered(const avifImage &image)
{
    return delivered(image, {0, 0, {image.width, image.height}, Orientation::upright});
}

TEST(PlanarRows, tenBitsAreReducedWithRounding)
{
    const auto image =
        imageOf({1024, 1}, 10, AVIF_PIXEL_FORMAT_YUV400, AVIF_RANGE_FULL, AVIF_MATRIX_COEFFICIENTS_BT601);
    for (std::uint32_t x = 0; x < 1024; ++x)
        put(*image, 0, x, 0, x);
    const auto sink = delivered(*image);
    for (std::uint32_t x = 0; x < 1024; ++x) {
        const int expected = static_cast<int>(std::lround(x * 255.0 / 1023));
        EXPECT_EQ(sink.pixel(x, 0), (std::array{expected, expected, expected, 255})) << x;
    }
}

TEST(PlanarRows, limitedRangeBt709KeepsItsBlue)
{
    const auto image = imageOf({8, 8}, 8, AVIF_PIXEL_FORMAT_YUV444, AVIF_RANGE_LIMITED, AVIF_MATRIX_COEFFICIENTS_BT709);
    for (std::uint32_t y = 0; y < 8; ++y) {
        for (std::uint32_t x = 0; x < 8; ++x) {
            put(*image, 0, x, y, 100);
            put(*image, 1, x, y, 170);
            put(*image, 2, x, y, 110);
        }
    }
    // By the book: B = 255/219 (Y - 16) + 255/224 * 1.8556 (Cb - 128), and so on.
    const auto pixel = delivered(*image).pixel(3, 3);
    EXPECT_EQ(pixel[0], static_cast<int>(std::lround(255.0 / 219 * 84 + 255.0 / 224 * 1.8556 * 42)));
    EXPECT_EQ(pixel[1], static_cast<int>(std::lround(255.0 / 219 * 84 - 255.0 / 224 * (0.18732 * 42 - 0.46812 * 18))));
    EXPECT_EQ(pixel[2], static_cast<int>(std::lround(255.0 / 219 * 84 - 255.0 / 224 * 1.5748 * 18)));
}

/// The strips in which rows are converted must not show: a vertical ramp of chroma stays one.
TEST(PlanarRows, stripsLeaveNoSeams)
{
    for (const auto matrix : {AVIF_MATRIX_COEFFICIENTS_BT601, AVIF_MATRIX_COEFFICIENTS_BT709}) {
        const auto image = imageOf({6, 301}, 8, AVIF_PIXEL_FORMAT_YUV420, AVIF_RANGE_LIMITED,
                                   static_cast<avifMatrixCoefficients>(matrix));
        for (std::uint32_t y = 0; y < 301; ++y) {
            for (std::uint32_t x = 0; x < 6; ++x)
                put(*image, 0, x, y, 120);
            for (std::uint32_t x = 0; x < 3; ++x) {
                put(*image, 1, x, y / 2, 60 + y / 3);
                put(*image, 2, x, y / 2, 128);
            }
        }
        const auto sink = delivered(*image);
        for (std::uint32_t y = 1; y < 301; ++y) {
            const int step = sink.pixel(2, y)[0] - sink.pixel(2, y - 1)[0];
            EXPECT_GE(step, 0) << "row " << y;
            EXPECT_LE(step, 3) << "row " << y;
        }
    }
}

TEST(PlanarRows, oddSizesReachTheirLastColumnAndRow)
{
    for (const unsigned depth : {8U, 10U}) {
        const auto image =
            imageOf({5, 3}, depth, AVIF_PIXEL_FORMAT_YUV420, AVIF_RANGE_FULL, AVIF_MATRIX_COEFFICIENTS_BT601);
        const unsigned unit = 1U << (depth - 8);
        for (std::uint32_t y = 0; y < 3; ++y) {
            for (std::uint32_t x = 0; x < 5; ++x)
                put(*image, 0, x, y, 200 * unit);
        }
        for (std::uint32_t y = 0; y < 2; ++y) {
            for (std::uint32_t x = 0; x < 3; ++x) {
                put(*image, 1, x, y, 128 * unit);
                put(*image, 2, x, y, 128 * unit);
            }
        }
        const auto sink = delivered(*image);
        for (std::uint32_t y = 0; y < 3; ++y) {
            for (std::uint32_t x = 0; x < 5; ++x)
                EXPECT_NEAR(sink.pixel(x, y)[1], 200, 1) << x << ", " << y;
        }
    }
}

TEST(PlanarRows, aPartStartsWhereItShouldThoughItsEdgesAreOdd)
{
    const auto image = imageOf({40, 200}, 8, AVIF_PIXEL_FORMAT_YUV420, AVIF_RANGE_FULL, AVIF_MATRIX_COEFFICIENTS_BT601);
    for (std::uint32_t y = 0; y < 200; ++y) {
        for (std::uint32_t x = 0; x < 40; ++x) {
            put(*image, 0, x, y, x + y);
            put(*image, 1, x / 2, y / 2, 128);
            put(*image, 2, x / 2, y / 2, 128);
        }
    }
    const auto sink = delivered(*image, {3, 7, {31, 150}, Orientation::upright});
    ASSERT_EQ(sink.rowCount(), 150U);
    EXPECT_NEAR(sink.pixel(0, 0)[1], 10, 1);
    EXPECT_NEAR(sink.pixel(30, 149)[1], 33 + 156, 1);
}

TEST(PlanarRows, alphaOfTwelveBitsIsRounded)
{
    const auto image = imageOf({3, 1}, 8, AVIF_PIXEL_FORMAT_YUV400, AVIF_RANGE_FULL, AVIF_MATRIX_COEFFICIENTS_BT601);
    for (std::uint32_t x = 0; x < 3; ++x)
        put(*image, 0, x, 0, 60);
    const std::uint16_t samples[] = {0, 2047, 4095};
    AlphaPlane alpha;
    alpha.data = reinterpret_cast<const std::uint8_t *>(samples);
    alpha.depth = 12;
    const auto sink = delivered(*image, {0, 0, {3, 1}, Orientation::upright}, alpha);
    EXPECT_EQ(sink.pixel(0, 0)[3], 0);
    EXPECT_EQ(sink.pixel(1, 0)[3], 127);
    EXPECT_EQ(sink.pixel(2, 0)[3], 255);
    EXPECT_EQ(sink.pixel(1, 0)[0], 60) << "straight";
}

} // namespace
} // namespace tallowmere
