// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/pixels/Resampler.h"

#include "imaging/pixels/PixelKernels.h"

#include <algorithm>
#include <cstring>

namespace tallowmere {
namespace {

constexpr int kPixelBits = 8;
/// Bits below the byte in a kept row; the 15 bits of a lane leave room for twice the range of a byte.
constexpr int kFractionBits = 6;
constexpr int kLaneBits = 15;
/// Kernels read and write whole vectors.
constexpr std::size_t kLanePadding = 128;

std::size_t paddedLanes(std::uint32_t width)
{
    return (std::size_t{width} * 4 / kLanePadding + 1) * kLanePadding;
}

} // namespace

Reduction::Reduction(PixelSize from, PixelSize to)
    : m_from(from), m_to(to), m_vertical(from.height, to.height, kLaneBits)
{
    const Filter horizontal(from.width, to.width, kPixelBits);
    m_horizontalShift = horizontal.shift() - kFractionBits;
    m_quads = (horizontal.taps() + 3) / 4;
    const std::size_t taps = m_quads * 4;
    const std::size_t results = (to.width + kRowFilterGroup - 1) / kRowFilterGroup * kRowFilterGroup;
    const std::size_t lastStart = std::max<std::size_t>(from.width, taps) - taps;
    m_starts.resize(results);
    m_weights.resize(results * taps * 2);
    for (std::uint32_t i = 0; i < to.width; ++i) {
        const std::uint32_t start = horizontal.start(i);
        m_starts[i] = static_cast<std::uint32_t>(std::min<std::size_t>(start, lastStart));
        const std::size_t inGroup = i % kRowFilterGroup;
        std::int16_t *stretch = &m_weights[(i - inGroup) * taps * 2 + inGroup * 8];
        for (std::uint32_t k = 0; k < horizontal.end(i) - start; ++k) {
            const std::size_t tap = start - m_starts[i] + k;
            std::int16_t *quad = stretch + tap / 4 * kRowFilterGroup * 8;
            quad[tap % 4] = quad[tap % 4 + 4] = horizontal.weights(i)[k];
        }
    }
}

std::uint64_t Reduction::workingBytes(PixelSize from, PixelSize to)
{
    const std::uint64_t across = std::uint64_t{Filter::mostTaps(from.width, to.width)} + 4;
    const std::uint64_t down = std::uint64_t{Filter::mostTaps(from.height, to.height)} + 2;
    const std::uint64_t filters =
        to.width * across * (4 + 4) + to.height * down * 4 + (to.width + to.height) * std::uint64_t{12};
    const std::uint64_t ring = paddedLanes(to.width) * down * sizeof(std::int16_t);
    return filters + ring + from.width * std::uint64_t{4} + 4096;
}

Resampler::Resampler(std::shared_ptr<const Reduction> reduction, std::uint32_t first, std::uint32_t end)
    : m_reduction(std::move(reduction)), m_next(first), m_end(end), m_pushed(m_reduction->m_vertical.start(first)),
      m_lanes(paddedLanes(m_reduction->m_to.width)), m_ring(m_lanes * m_reduction->m_vertical.taps()),
      m_rows(m_reduction->m_vertical.taps())
{
    if (m_reduction->m_from.width < m_reduction->m_quads * 4)
        m_padded.resize(m_reduction->m_quads * 16);
}

std::uint32_t Resampler::nextDependsFrom() const
{
    return m_reduction->m_vertical.start(m_next);
}

std::uint32_t Resampler::endSourceRow() const
{
    return m_reduction->m_vertical.end(m_end - 1);
}

std::int16_t *Resampler::slot(std::uint32_t sourceRow)
{
    return &m_ring[sourceRow % m_reduction->m_vertical.taps() * m_lanes];
}

void Resampler::push(const std::byte *row)
{
    const Reduction &reduction = *m_reduction;
    if (!m_padded.empty()) {
        std::memcpy(m_padded.data(), row, std::size_t{reduction.m_from.width} * 4);
        row = m_padded.data();
    }
    filterRow(row, reduction.m_starts.data(), reduction.m_weights.data(), reduction.m_starts.size(), reduction.m_quads,
              reduction.m_horizontalShift, slot(m_pushed));
    ++m_pushed;
}

bool Resampler::pull(std::byte *out)
{
    const Filter &vertical = m_reduction->m_vertical;
    if (m_next == m_end || vertical.end(m_next) > m_pushed)
        return false;
    const std::uint32_t start = vertical.start(m_next);
    const std::uint32_t count = vertical.end(m_next) - start;
    for (std::uint32_t k = 0; k < vertical.taps(); ++k)
        m_rows[k] = slot(start + std::min(k, count - 1)); // taps past the end weigh nothing
    filterColumns(m_rows.data(), vertical.weights(m_next), vertical.taps() / 2, vertical.shift() + kFractionBits,
                  m_reduction->m_to.width, out);
    ++m_next;
    return true;
}

} // namespace tallowmere
