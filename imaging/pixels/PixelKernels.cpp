// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/pixels/PixelKernels.h"

#include "imaging/pixels/PixelKernelSets.h"

#include <algorithm>
#include <vector>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "imaging/pixels/PixelKernels.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>
// After the list of targets: these are compiled once for each of them, too.
#include "imaging/pixels/PixelKernelsColour-inl.h"
#include "imaging/pixels/PixelKernelsCommon-inl.h"

HWY_BEFORE_NAMESPACE();
namespace tallowmere::HWY_NAMESPACE {

constexpr std::size_t kPixelsAtOnce = TALLOWMERE_BLOCKWISE ? HWY_MAX_BYTES / 16 : 1;
static_assert(kPixelsAtOnce <= kRowFilterGroup);

using Block = hn::FixedTag<std::uint8_t, 16>;

std::array<std::uint64_t, 4> sumChannels(const std::byte *pixels, std::uint64_t count)
{
    const Bytes d;
    const hn::Repartition<std::uint32_t, Bytes> d32;
    const hn::Repartition<std::uint64_t, Bytes> d64;
    const std::size_t lanes = hn::Lanes(d);
    HWY_ALIGN static constexpr std::uint8_t kByChannel[16] = {0, 4, 8, 12, 1, 5, 9, 13, 2, 6, 10, 14, 3, 7, 11, 15};
    const auto byChannel = hn::LoadDup128(d, kByChannel);
    auto first = hn::Zero(d64);  // of every block: channel 0, channel 1
    auto second = hn::Zero(d64); // channel 2, channel 3
    const std::uint8_t *at = bytesAt(pixels);
    std::uint64_t left = count * 4;
    for (; left >= 2 * lanes; left -= 2 * lanes, at += 2 * lanes) {
        const auto a = hn::BitCast(d32, hn::TableLookupBytes(hn::LoadU(d, at), byChannel));
        const auto b = hn::BitCast(d32, hn::TableLookupBytes(hn::LoadU(d, at + lanes), byChannel));
        first = hn::Add(first, hn::SumsOf8(hn::BitCast(d, hn::InterleaveLower(d32, a, b))));
        second = hn::Add(second, hn::SumsOf8(hn::BitCast(d, hn::InterleaveUpper(d32, a, b))));
    }
    HWY_ALIGN std::uint64_t firsts[HWY_MAX_BYTES / 8];
    HWY_ALIGN std::uint64_t seconds[HWY_MAX_BYTES / 8];
    hn::Store(first, d64, firsts);
    hn::Store(second, d64, seconds);
    std::array<std::uint64_t, 4> sums{};
    for (std::size_t i = 0; i < hn::Lanes(d64); ++i) {
        sums[i % 2] += firsts[i];
        sums[2 + i % 2] += seconds[i];
    }
    for (; left > 0; --left, ++at)
        sums[3 - (left - 1) % 4] += *at;
    return sums;
}

void premultiplyPixels(std::byte *pixels, std::size_t count)
{
    const Bytes d;
    const hn::Repartition<std::uint16_t, Bytes> d16;
    const std::size_t lanes = hn::Lanes(d);
    HWY_ALIGN static constexpr std::uint8_t kAlpha[16] = {3,  0x80, 3,  0x80, 7,  0x80, 7,  0x80,
                                                          11, 0x80, 11, 0x80, 15, 0x80, 15, 0x80};
    HWY_ALIGN static constexpr std::uint16_t kKeepsAlpha[8] = {0, 255, 0, 255, 0, 255, 0, 255};
    const auto alphaTwice = hn::LoadDup128(d, kAlpha);
    const auto keepsAlpha = hn::LoadDup128(d16, kKeepsAlpha);
    const auto lowBytes = hn::Set(d16, std::uint16_t{255});
    const auto half = hn::Set(d16, std::uint16_t{128});
    // (t + t / 256) / 256 with t = product + 128 is the exactly rounded product / 255.
    const auto product = [&](auto colour, auto alpha) {
        const auto t = hn::Add(hn::Mul(colour, alpha), half);
        return hn::ShiftRight<8>(hn::Add(t, hn::ShiftRight<8>(t)));
    };
    const auto vector = [&](auto pixel) {
        const auto v = hn::BitCast(d16, pixel);
        const auto alpha = hn::BitCast(d16, hn::TableLookupBytesOr0(pixel, alphaTwice));
        const auto even = product(hn::And(v, lowBytes), alpha);
        const auto odd = product(hn::ShiftRight<8>(v), hn::Or(alpha, keepsAlpha));
        return hn::BitCast(d, hn::Or(even, hn::ShiftLeft<8>(odd)));
    };
    std::uint8_t *at = bytesAt(pixels);
    std::size_t left = count * 4;
    for (; left >= lanes; left -= lanes, at += lanes)
        hn::StoreU(vector(hn::LoadU(d, at)), d, at);
    if (left > 0) {
        HWY_ALIGN std::uint8_t tail[HWY_MAX_BYTES] = {};
        std::copy_n(at, left, tail);
        hn::Store(vector(hn::Load(d, tail)), d, tail);
        std::copy_n(tail, left, at);
    }
}

/// Four by four pixels; a quarter of the loads and stores that single ones take.
HWY_INLINE void transposeSquare(const std::uint32_t *from, std::ptrdiff_t stride, std::uint32_t *to,
                                std::ptrdiff_t toStride)
{
    const hn::FixedTag<std::uint32_t, 4> d;
    const hn::FixedTag<std::uint64_t, 2> d64;
    const auto row = [&](std::ptrdiff_t i) { return hn::LoadU(d, from + i * stride); };
    const auto upper0 = hn::BitCast(d64, hn::InterleaveLower(d, row(0), row(1)));
    const auto lower0 = hn::BitCast(d64, hn::InterleaveLower(d, row(2), row(3)));
    const auto upper1 = hn::BitCast(d64, hn::InterleaveUpper(d, row(0), row(1)));
    const auto lower1 = hn::BitCast(d64, hn::InterleaveUpper(d, row(2), row(3)));
    hn::StoreU(hn::BitCast(d, hn::InterleaveLower(d64, upper0, lower0)), d, to);
    hn::StoreU(hn::BitCast(d, hn::InterleaveUpper(d64, upper0, lower0)), d, to + toStride);
    hn::StoreU(hn::BitCast(d, hn::InterleaveLower(d64, upper1, lower1)), d, to + 2 * toStride);
    hn::StoreU(hn::BitCast(d, hn::InterleaveUpper(d64, upper1, lower1)), d, to + 3 * toStride);
}

void transposeRows(const std::uint32_t *rows, std::ptrdiff_t stride, std::size_t width, std::size_t count,
                   std::uint32_t *out, std::ptrdiff_t outStride)
{
    const auto wide = static_cast<std::ptrdiff_t>(width);
    const auto high = static_cast<std::ptrdiff_t>(count);
    std::ptrdiff_t x = 0;
    for (; x + 4 <= wide; x += 4) {
        std::ptrdiff_t y = 0;
        for (; y + 4 <= high; y += 4)
            transposeSquare(rows + y * stride + x, stride, out + x * outStride + y, outStride);
        for (; y < high; ++y) {
            for (std::ptrdiff_t i = 0; i < 4; ++i)
                out[(x + i) * outStride + y] = rows[y * stride + x + i];
        }
    }
    for (; x < wide; ++x) {
        for (std::ptrdiff_t y = 0; y < high; ++y)
            out[x * outStride + y] = rows[y * stride + x];
    }
}

/// A block of 16 bytes from as many addresses as the vector has blocks.
template <class D>
HWY_INLINE hn::Vec<D> loadBlocks(D d, const std::uint8_t *const *at, std::size_t offset)
{
    if constexpr (hn::MaxLanes(D()) == 16) {
        return hn::LoadU(d, at[0] + offset);
    } else {
        const hn::Half<D> half;
        constexpr std::size_t kLower = hn::MaxLanes(hn::Half<D>()) / 16;
        return hn::Combine(d, loadBlocks(half, at + kLower, offset), loadBlocks(half, at, offset));
    }
}

/// kQuads: how many there are when that is known, so that the inner loop unrolls; 0 when not.
template <std::size_t kQuads>
HWY_INLINE void filterRowOf(const std::uint8_t *row, const std::uint32_t *starts, const std::int16_t *weights,
                            std::size_t count, std::size_t quads, int shift, std::int16_t *out)
{
    const hn::FixedTag<std::uint8_t, 16 * kPixelsAtOnce> d;
    const hn::Repartition<std::int16_t, decltype(d)> d16;
    const hn::Repartition<std::int32_t, decltype(d)> d32;
    const hn::Rebind<std::int16_t, decltype(d32)> half16;
    // Either of two sums takes one half of the quad for two of the channels: swapping neighbours in the
    // second makes both add up to whole pixels, B, G, R, A, with the same weights for both.
    constexpr std::uint8_t z = 0x80;
    HWY_ALIGN static constexpr std::uint8_t kFirst[16] = {0, z, 4, z, 9, z, 13, z, 2, z, 6, z, 11, z, 15, z};
    HWY_ALIGN static constexpr std::uint8_t kSecond[16] = {1, z, 5, z, 8, z, 12, z, 3, z, 7, z, 10, z, 14, z};
    const auto first = hn::LoadDup128(d, kFirst);
    const auto second = hn::LoadDup128(d, kSecond);
    const auto rounding = hn::Set(d32, std::int32_t{1} << (shift - 1));
    const std::size_t groups = kQuads > 0 ? kQuads : quads;
    for (std::size_t i = 0; i < count; i += kPixelsAtOnce) {
        const std::size_t inGroup = i % kRowFilterGroup;
        const std::int16_t *w = weights + ((i - inGroup) * groups + inGroup) * 8;
        const std::uint8_t *at[kPixelsAtOnce];
        for (std::size_t k = 0; k < kPixelsAtOnce; ++k)
            at[k] = row + std::size_t{starts[i + k]} * 4;
        auto sum = rounding;
        auto swapped = hn::Zero(d32);
        for (std::size_t q = 0; q < groups; ++q, w += kRowFilterGroup * 8) {
            const auto pixels = loadBlocks(d, at, q * 16);
            const auto factors = hn::LoadU(d16, w);
            sum = addPairProducts(d16, hn::BitCast(d16, hn::TableLookupBytesOr0(pixels, first)), factors, sum);
            swapped = addPairProducts(d16, hn::BitCast(d16, hn::TableLookupBytesOr0(pixels, second)), factors, swapped);
        }
        const auto whole = hn::ShiftRightSame(hn::Add(sum, hn::Shuffle2301(swapped)), shift);
        hn::StoreU(hn::DemoteTo(half16, whole), half16, out + i * 4);
    }
}

void filterOneRow(const std::byte *row, const std::uint32_t *starts, const std::int16_t *weights, std::size_t count,
                  std::size_t quads, int shift, std::int16_t *out)
{
    const std::uint8_t *source = bytesAt(row);
    switch (quads) { // from a side that keeps its length to a quarter of it
    case 1:
        return filterRowOf<1>(source, starts, weights, count, quads, shift, out);
    case 2:
        return filterRowOf<2>(source, starts, weights, count, quads, shift, out);
    case 3:
        return filterRowOf<3>(source, starts, weights, count, quads, shift, out);
    case 4:
        return filterRowOf<4>(source, starts, weights, count, quads, shift, out);
    case 5:
        return filterRowOf<5>(source, starts, weights, count, quads, shift, out);
    case 6:
        return filterRowOf<6>(source, starts, weights, count, quads, shift, out);
    default:
        return filterRowOf<0>(source, starts, weights, count, quads, shift, out);
    }
}

void filterOneColumnSet(const std::int16_t *const *rows, const std::int16_t *weights, std::size_t pairs, int shift,
                        std::size_t count, std::byte *out)
{
    const Words d16;
    const hn::RepartitionToWide<Words> d32;
    const hn::Rebind<std::uint8_t, Words> d8;
    const std::size_t lanes = hn::Lanes(d16);
    HWY_ALIGN static constexpr std::uint8_t kAlpha[16] = {3, 3, 3, 3, 7, 7, 7, 7, 11, 11, 11, 11, 15, 15, 15, 15};
    const Bytes bytes;
    const auto alphas = hn::LoadDup128(bytes, kAlpha);
    const auto rounding = hn::Set(d32, std::int32_t{1} << (shift - 1));
    HWY_ALIGN std::uint8_t chunk[2 * HWY_MAX_BYTES];
    const std::size_t total = count * 4;
    for (std::size_t x = 0; x < total; x += 2 * lanes) {
        auto low0 = rounding, high0 = rounding, low1 = rounding, high1 = rounding;
        for (std::size_t p = 0; p < pairs; ++p) {
            const std::int16_t *upper = rows[2 * p] + x;
            const std::int16_t *lower = rows[2 * p + 1] + x;
            std::int32_t both;
            std::copy_n(reinterpret_cast<const char *>(weights + 2 * p), 4, reinterpret_cast<char *>(&both));
            const auto w = hn::BitCast(d16, hn::Set(d32, both));
            const auto u0 = hn::LoadU(d16, upper), l0 = hn::LoadU(d16, lower);
            const auto u1 = hn::LoadU(d16, upper + lanes), l1 = hn::LoadU(d16, lower + lanes);
            low0 = addPairProducts(d16, hn::InterleaveLower(d16, u0, l0), w, low0);
            high0 = addPairProducts(d16, hn::InterleaveUpper(d16, u0, l0), w, high0);
            low1 = addPairProducts(d16, hn::InterleaveLower(d16, u1, l1), w, low1);
            high1 = addPairProducts(d16, hn::InterleaveUpper(d16, u1, l1), w, high1);
        }
        const auto narrow = [&](auto low, auto high) {
            return hn::DemoteTo(
                d8, hn::ReorderDemote2To(d16, hn::ShiftRightSame(low, shift), hn::ShiftRightSame(high, shift)));
        };
        const auto pixels = hn::Combine(bytes, narrow(low1, high1), narrow(low0, high0));
        const auto clamped = hn::Min(pixels, hn::TableLookupBytes(pixels, alphas));
        if (total - x >= 2 * lanes) {
            hn::StoreU(clamped, bytes, bytesAt(out) + x);
        } else {
            hn::Store(clamped, bytes, chunk);
            std::copy_n(chunk, total - x, bytesAt(out) + x);
        }
    }
}

void pickRow(const std::uint32_t *row, std::size_t width, const std::uint32_t *columns, std::size_t count,
             std::uint32_t *out)
{
    // Neighbours on the screen are mostly neighbours in the picture: one load and one shuffle fetch them all.
    using Pixels = hn::CappedTag<std::uint32_t, 8>;
    const Pixels d;
    const std::size_t lanes = hn::Lanes(d);
    std::size_t i = 0;
    for (; i + lanes <= count; i += lanes) {
        const std::uint32_t first = columns[i];
        if (columns[i + lanes - 1] - first < lanes && first + lanes <= width) {
            const auto lane = hn::Sub(hn::LoadU(d, columns + i), hn::Set(d, first));
            hn::StoreU(hn::TableLookupLanes(hn::LoadU(d, row + first), hn::IndicesFromVec(d, lane)), d, out + i);
        } else {
            for (std::size_t k = i; k < i + lanes; ++k)
                out[k] = row[columns[k]];
        }
    }
    for (; i < count; ++i)
        out[i] = row[columns[i]];
}

constexpr KernelSet kKernels{
    .instructionSet = HWY_STR(HWY_NAMESPACE),
    .sumChannels = sumChannels,
    .premultiplyPixels = premultiplyPixels,
    .transposeRows = transposeRows,
    .pickRow = pickRow,
    .filterOneRow = filterOneRow,
    .filterOneColumnSet = filterOneColumnSet,
    .mixColourRow = mixColourRow,
    .interpolateColourRow = interpolateColourRow,
};

} // namespace tallowmere::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace tallowmere {

namespace {

// Highway's own dispatch is not used: its library calibrates a timer when it is loaded, 5 ms of every start, and
// nothing else of it is needed.
std::vector<const KernelSet *> kernelSetsOfThisProcessor()
{
    std::vector<const KernelSet *> sets;
#if HWY_ARCH_X86
    __builtin_cpu_init();
#define TALLOWMERE_HAS(feature) (__builtin_cpu_supports(feature) != 0)
#if HWY_TARGETS & HWY_AVX3
    if (TALLOWMERE_HAS("avx512f") && TALLOWMERE_HAS("avx512bw") && TALLOWMERE_HAS("avx512cd") &&
        TALLOWMERE_HAS("avx512dq") && TALLOWMERE_HAS("avx512vl") && TALLOWMERE_HAS("bmi2") && TALLOWMERE_HAS("fma"))
        sets.push_back(&N_AVX3::kKernels);
#endif
#if HWY_TARGETS & HWY_AVX2
    if (TALLOWMERE_HAS("avx2") && TALLOWMERE_HAS("bmi") && TALLOWMERE_HAS("bmi2") && TALLOWMERE_HAS("fma"))
        sets.push_back(&N_AVX2::kKernels);
#endif
#if HWY_TARGETS & HWY_SSE4
    if (TALLOWMERE_HAS("sse4.2") && TALLOWMERE_HAS("aes") && TALLOWMERE_HAS("pclmul"))
        sets.push_back(&N_SSE4::kKernels);
#endif
#if HWY_TARGETS & HWY_SSSE3
    if (TALLOWMERE_HAS("ssse3"))
        sets.push_back(&N_SSSE3::kKernels);
#endif
#undef TALLOWMERE_HAS
#endif
    // The compiler's last pass over this file was for what every processor of the architecture has.
    sets.push_back(&HWY_NAMESPACE::kKernels);
    return sets;
}

const KernelSet *chosen = runnableKernelSets().front();

} // namespace

std::span<const KernelSet *const> runnableKernelSets()
{
    static const std::vector<const KernelSet *> sets = kernelSetsOfThisProcessor();
    return sets;
}

void useKernelSet(const KernelSet &set)
{
    chosen = &set;
}

std::array<std::uint64_t, 4> channelSums(const std::byte *pixels, std::uint64_t count)
{
    return chosen->sumChannels(pixels, count);
}

void premultiply(std::byte *pixels, std::size_t count)
{
    chosen->premultiplyPixels(pixels, count);
}

void transpose(const std::uint32_t *rows, std::ptrdiff_t stride, std::size_t width, std::size_t count,
               std::uint32_t *out, std::ptrdiff_t outStride)
{
    chosen->transposeRows(rows, stride, width, count, out, outStride);
}

void pickPixels(const std::uint32_t *row, std::size_t width, const std::uint32_t *columns, std::size_t count,
                std::uint32_t *out)
{
    chosen->pickRow(row, width, columns, count, out);
}

void filterRow(const std::byte *row, const std::uint32_t *starts, const std::int16_t *weights, std::size_t count,
               std::size_t quads, int shift, std::int16_t *out)
{
    chosen->filterOneRow(row, starts, weights, count, quads, shift, out);
}

void filterColumns(const std::int16_t *const *rows, const std::int16_t *weights, std::size_t pairs, int shift,
                   std::size_t count, std::byte *out)
{
    chosen->filterOneColumnSet(rows, weights, pairs, shift, count, out);
}

void mixColours(std::byte *pixels, std::size_t count, const MixingTables &tables)
{
    chosen->mixColourRow(pixels, count, tables);
}

void interpolateColours(std::byte *pixels, std::size_t count, const ColourGrid &grid)
{
    chosen->interpolateColourRow(pixels, count, grid);
}

void unpremultiply(std::byte *pixels, std::size_t count)
{
    std::uint8_t *at = reinterpret_cast<std::uint8_t *>(pixels);
    for (; count > 0; --count, at += 4) {
        const unsigned alpha = at[3];
        if (alpha == 255 || alpha == 0)
            continue; // opaque stays, and premultiplied clear is black already
        for (int c = 0; c < 3; ++c)
            at[c] = static_cast<std::uint8_t>(std::min((at[c] * 255U + alpha / 2) / alpha, 255U));
    }
}

} // namespace tallowmere
#endif
