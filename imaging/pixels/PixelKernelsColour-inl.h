// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT

// The loops that bring pixels to other colours; read once for each instruction set, hence no #pragma once.
#if defined(TALLOWMERE_PIXEL_KERNELS_COLOUR) == defined(HWY_TARGET_TOGGLE)
#ifdef TALLOWMERE_PIXEL_KERNELS_COLOUR
#undef TALLOWMERE_PIXEL_KERNELS_COLOUR
#else
#define TALLOWMERE_PIXEL_KERNELS_COLOUR
#endif

#include "imaging/pixels/PixelKernels.h"
#include "imaging/pixels/PixelKernelsCommon-inl.h"

#include <algorithm>

HWY_BEFORE_NAMESPACE();
namespace tallowmere::HWY_NAMESPACE {

inline void mixColourRow(std::byte *pixels, std::size_t count, const MixingTables &tables)
{
    const hn::FixedTag<float, 4> d;
    const hn::Rebind<std::int32_t, decltype(d)> d32;
    const auto most = hn::Set(d, static_cast<float>(MixingTables::kSteps));
    alignas(16) std::int32_t steps[4];
    std::uint8_t *at = bytesAt(pixels);
    for (; count > 0; --count, at += 4) {
        const auto blue = hn::Load(d, tables.light[0][at[0]].data());
        const auto green = hn::Load(d, tables.light[1][at[1]].data());
        const auto red = hn::Load(d, tables.light[2][at[2]].data());
        const auto light = hn::Clamp(hn::Add(hn::Add(blue, green), red), hn::Zero(d), most);
        hn::Store(hn::NearestInt(light), d32, steps);
        for (std::size_t c = 0; c < 3; ++c)
            at[c] = tables.signal[static_cast<std::size_t>(steps[c])];
    }
}

constexpr std::size_t kTetrahedraAtOnce = 16;

/// By pixel: the four nodes that are interpolated between (the last is always the first one's opposite in its cell),
/// and their weights, two in a number. The weights add up to 255.
struct Tetrahedra
{
    static constexpr std::uint32_t kBlueStep = 1;
    static constexpr std::uint32_t kGreenStep = ColourGrid::kSide;
    static constexpr std::uint32_t kRedStep = ColourGrid::kSide * ColourGrid::kSide;
    static constexpr std::uint32_t kToOpposite = kBlueStep + kGreenStep + kRedStep;

    HWY_ALIGN std::uint32_t first[kTetrahedraAtOnce];
    HWY_ALIGN std::uint32_t second[kTetrahedraAtOnce];
    HWY_ALIGN std::uint32_t third[kTetrahedraAtOnce];
    HWY_ALIGN std::uint32_t weights12[kTetrahedraAtOnce];
    HWY_ALIGN std::uint32_t weights34[kTetrahedraAtOnce];
};

/// From the first node to the last along the edges, that of the channel furthest into the cell first.
HWY_INLINE void findTetrahedra(const std::uint8_t *pixels, Tetrahedra &found)
{
    const hn::CappedTag<std::uint32_t, kTetrahedraAtOnce> d;
    const hn::Repartition<std::uint8_t, decltype(d)> d8;
    const auto byte = hn::Set(d, 255U);
    const auto blueStep = hn::Set(d, Tetrahedra::kBlueStep);
    const auto greenStep = hn::Set(d, Tetrahedra::kGreenStep);
    const auto redStep = hn::Set(d, Tetrahedra::kRedStep);
    const auto toOpposite = hn::Set(d, Tetrahedra::kToOpposite);
    for (std::size_t i = 0; i < kTetrahedraAtOnce; i += hn::Lanes(d)) {
        const auto values = hn::BitCast(d, hn::LoadU(d8, pixels + i * 4));
        const auto cells = hn::And(hn::ShiftRight<3>(values), hn::Set(d, 0x1f1f1fU));
        const auto into = hn::Or(hn::ShiftLeft<5>(hn::And(values, hn::Set(d, 0x070707U))), cells);
        const auto green = hn::And(hn::ShiftRight<8>(cells), byte);
        const auto red = hn::ShiftRight<16>(cells);
        // Multiplied by 33 and by 33 * 33.
        const auto greenOffset = hn::Add(hn::ShiftLeft<5>(green), green);
        const auto redOffset = hn::Add(hn::Add(hn::ShiftLeft<10>(red), hn::ShiftLeft<6>(red)), red);
        const auto first = hn::Add(hn::Add(hn::And(cells, byte), greenOffset), redOffset);

        const auto b = hn::And(into, byte);
        const auto g = hn::And(hn::ShiftRight<8>(into), byte);
        const auto r = hn::ShiftRight<16>(into);
        // Of bytes, which all instruction sets compare; the others of each number are zero.
        const auto larger = [&](auto v, auto w) {
            return hn::BitCast(d, hn::Max(hn::BitCast(d8, v), hn::BitCast(d8, w)));
        };
        const auto smaller = [&](auto v, auto w) {
            return hn::BitCast(d, hn::Min(hn::BitCast(d8, v), hn::BitCast(d8, w)));
        };
        const auto high = larger(larger(b, g), r);
        const auto low = smaller(smaller(b, g), r);
        const auto middle = hn::Sub(hn::Add(hn::Add(b, g), r), hn::Add(high, low));
        // Of equals any may come first: the node between them weighs nothing.
        const auto stepOf = [&](auto wanted) {
            return hn::IfThenElse(hn::Eq(r, wanted), redStep, hn::IfThenElse(hn::Eq(g, wanted), greenStep, blueStep));
        };
        hn::Store(first, d, found.first + i);
        hn::Store(hn::Add(first, stepOf(high)), d, found.second + i);
        hn::Store(hn::Add(first, hn::Sub(toOpposite, stepOf(low))), d, found.third + i);
        hn::Store(hn::Or(hn::Sub(byte, high), hn::ShiftLeft<16>(hn::Sub(high, middle))), d, found.weights12 + i);
        hn::Store(hn::Or(hn::Sub(middle, low), hn::ShiftLeft<16>(low)), d, found.weights34 + i);
    }
}

HWY_INLINE void interpolateSome(std::uint8_t *pixels, const std::array<std::int16_t, 4> *nodes)
{
    const hn::FixedTag<std::int16_t, 8> d16;
    const hn::Half<decltype(d16)> half16;
    const hn::RepartitionToWide<decltype(d16)> d32;
    const hn::Rebind<std::uint8_t, decltype(d32)> d8;
    constexpr int kShift = 14;
    static_assert(ColourGrid::kOne == 1 << kShift);
    const auto rounding = hn::Set(d32, 1 << (kShift - 1));
    const auto both = [&](std::uint32_t one, std::uint32_t other) {
        const auto node = [&](std::uint32_t i) {
            return hn::ZeroExtendVector(d16, hn::LoadU(half16, nodes[i].data()));
        };
        return hn::InterleaveLower(d16, node(one), node(other));
    };
    const auto weights = [&](std::uint32_t two) {
        return hn::BitCast(d16, hn::Set(d32, static_cast<std::int32_t>(two)));
    };
    Tetrahedra at;
    findTetrahedra(pixels, at);
    for (std::size_t i = 0; i < kTetrahedraAtOnce; ++i, pixels += 4) {
        const std::uint32_t last = at.first[i] + Tetrahedra::kToOpposite;
        auto sum = addPairProducts(d16, both(at.first[i], at.second[i]), weights(at.weights12[i]), rounding);
        sum = addPairProducts(d16, both(at.third[i], last), weights(at.weights34[i]), sum);
        const std::uint8_t alpha = pixels[3];
        hn::StoreU(hn::DemoteTo(d8, hn::ShiftRight<kShift>(sum)), d8, pixels);
        pixels[3] = alpha;
    }
}

inline void interpolateColourRow(std::byte *pixels, std::size_t count, const ColourGrid &grid)
{
    std::uint8_t *at = bytesAt(pixels);
    for (; count >= kTetrahedraAtOnce; count -= kTetrahedraAtOnce, at += kTetrahedraAtOnce * 4)
        interpolateSome(at, grid.nodes.data());
    if (count > 0) {
        std::uint8_t tail[kTetrahedraAtOnce * 4] = {};
        std::copy_n(at, count * 4, tail);
        interpolateSome(tail, grid.nodes.data());
        std::copy_n(tail, count * 4, at);
    }
}

} // namespace tallowmere::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
