// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT

// What the loops of all kernels share; read once for each instruction set, hence no #pragma once.
#if defined(TALLOWMERE_PIXEL_KERNELS_COMMON) == defined(HWY_TARGET_TOGGLE)
#ifdef TALLOWMERE_PIXEL_KERNELS_COMMON
#undef TALLOWMERE_PIXEL_KERNELS_COMMON
#else
#define TALLOWMERE_PIXEL_KERNELS_COMMON
#endif

#include <hwy/highway.h>

#include <cstddef>
#include <cstdint>

HWY_BEFORE_NAMESPACE();
namespace tallowmere::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

// Vectors wider than 16 bytes are used on x86 only, where interleaving and packing stay within blocks of
// 16 bytes and so undo one another.
#undef TALLOWMERE_BLOCKWISE
#if HWY_ARCH_X86 && HWY_TARGET != HWY_EMU128
#define TALLOWMERE_BLOCKWISE 1
using Bytes = hn::ScalableTag<std::uint8_t>;
using Words = hn::ScalableTag<std::int16_t>;
#else
#define TALLOWMERE_BLOCKWISE 0
using Bytes = hn::FixedTag<std::uint8_t, 16>;
using Words = hn::FixedTag<std::int16_t, 8>;
#endif

inline const std::uint8_t *bytesAt(const std::byte *data)
{
    return reinterpret_cast<const std::uint8_t *>(data);
}
inline std::uint8_t *bytesAt(std::byte *data)
{
    return reinterpret_cast<std::uint8_t *>(data);
}

/// @p sum plus the products of neighbouring 16-bit lanes, added in twos.
template <class Words16>
HWY_INLINE auto addPairProducts(Words16, hn::Vec<Words16> a, hn::Vec<Words16> b,
                                hn::Vec<hn::RepartitionToWide<Words16>> sum)
{
    const hn::RepartitionToWide<Words16> wide;
#if TALLOWMERE_BLOCKWISE
    auto unused = hn::Zero(wide);
    return hn::ReorderWidenMulAccumulate(wide, a, b, sum, unused);
#else
    const auto a32 = hn::BitCast(wide, a);
    const auto b32 = hn::BitCast(wide, b);
    const auto low = [&](auto v) { return hn::ShiftRight<16>(hn::ShiftLeft<16>(v)); };
    const auto high = [&](auto v) { return hn::ShiftRight<16>(v); };
    return hn::Add(sum, hn::Add(hn::Mul(low(a32), low(b32)), hn::Mul(high(a32), high(b32))));
#endif
}

} // namespace tallowmere::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
