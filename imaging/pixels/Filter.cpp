// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/pixels/Filter.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace tallowmere {
namespace {

constexpr int kLobes = 3;
constexpr int kStepsPerLobe = 512;

/// One side of the window. Interpolated, it is within a few millionths, far below the step of a weight; calling
/// sin() twice a tap would cost as much as filtering a small picture.
std::array<double, kLobes * kStepsPerLobe + 2> lanczosTable()
{
    std::array<double, kLobes * kStepsPerLobe + 2> table{};
    table[0] = 1.0;
    for (int i = 1; i < kLobes * kStepsPerLobe; ++i) {
        const double x = std::numbers::pi * i / kStepsPerLobe;
        // Exactly zero at whole numbers, so that a side that keeps its length is copied.
        table[static_cast<std::size_t>(i)] =
            i % kStepsPerLobe == 0 ? 0.0 : kLobes * std::sin(x) * std::sin(x / kLobes) / (x * x);
    }
    return table;
}

double lanczos(double x)
{
    static const auto table = lanczosTable();
    const double at = std::abs(x) * kStepsPerLobe;
    if (at >= kLobes * kStepsPerLobe)
        return 0.0;
    const auto i = static_cast<std::size_t>(at);
    return table[i] + (table[i + 1] - table[i]) * (at - static_cast<double>(i));
}

/// The source pixels under the window of one result.
struct Window
{
    std::uint32_t first;
    std::uint32_t end;
    double centre; ///< in source pixels, whose own centres lie at .5

    static Window of(std::uint32_t from, double ratio, std::uint32_t i)
    {
        const double centre = (i + 0.5) * ratio;
        const double first = std::floor(centre - kLobes * ratio);
        const double end = std::ceil(centre + kLobes * ratio);
        return {static_cast<std::uint32_t>(std::max(first, 0.0)),
                static_cast<std::uint32_t>(std::min(end, static_cast<double>(from))), centre};
    }
};

int shiftFor(double ratio, int valueBits)
{
    // No weight passes 1.3 / ratio, and the sum of their magnitudes stays under 2: what a 16-bit weight and
    // a 32-bit sum have room for.
    const int fits = static_cast<int>(std::floor(std::log2(32767.0 * ratio / 1.3)));
    return std::min(fits, 30 - valueBits);
}

} // namespace

std::uint32_t Filter::mostTaps(std::uint32_t from, std::uint32_t to)
{
    const double ratio = static_cast<double>(from) / to;
    return static_cast<std::uint32_t>(std::min(2.0 * kLobes * ratio + 3.0, static_cast<double>(from) + 1.0));
}

Filter::Filter(std::uint32_t from, std::uint32_t to, int valueBits)
    : m_shift(shiftFor(static_cast<double>(from) / to, valueBits)), m_starts(to), m_ends(to)
{
    const double ratio = static_cast<double>(from) / to;
    const std::uint32_t stride = mostTaps(from, to);
    std::vector<double> exact(stride);
    std::vector<std::int16_t> rounded(std::size_t{stride} * to);
    for (std::uint32_t i = 0; i < to; ++i) {
        const Window window = Window::of(from, ratio, i);
        const std::uint32_t count = window.end - window.first;
        double sum = 0.0;
        for (std::uint32_t k = 0; k < count; ++k) {
            exact[k] = lanczos((window.first + k + 0.5 - window.centre) / ratio);
            sum += exact[k];
        }
        // Rounding the running sum, not the weights, lets no error pile up.
        std::int16_t *weights = &rounded[std::size_t{i} * stride];
        const double scale = std::ldexp(1.0, m_shift) / sum;
        double running = 0.0;
        double before = 0.0;
        for (std::uint32_t k = 0; k < count; ++k) {
            running += exact[k] * scale;
            const double now = k + 1 == count ? std::ldexp(1.0, m_shift) : std::nearbyint(running);
            weights[k] = static_cast<std::int16_t>(now - before);
            before = now;
        }
        std::uint32_t skipped = 0;
        std::uint32_t last = count;
        while (skipped + 1 < count && weights[skipped] == 0)
            ++skipped;
        while (last > skipped + 1 && weights[last - 1] == 0)
            --last;
        std::copy(weights + skipped, weights + last, weights);
        std::fill(weights + (last - skipped), weights + count, std::int16_t{0});
        m_starts[i] = window.first + skipped;
        m_ends[i] = window.first + last;
        m_taps = std::max(m_taps, last - skipped);
    }
    m_taps += m_taps % 2;
    m_weights.resize(std::size_t{m_taps} * to);
    for (std::uint32_t i = 0; i < to; ++i)
        std::copy_n(&rounded[std::size_t{i} * stride], std::min(m_taps, stride), &m_weights[std::size_t{i} * m_taps]);
}

} // namespace tallowmere
