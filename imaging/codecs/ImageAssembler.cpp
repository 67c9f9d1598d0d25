// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/codecs/ImageAssembler.h"

#include "imaging/pixels/PixelKernels.h"
#include "imaging/pixels/Resampler.h"
#include "imaging/pixels/RowPipe.h"
#include "imaging/pixels/RowPlacement.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <vector>

namespace tallowmere {
namespace {

/// Under this many source pixels the whole reduction takes less than two threads need to find each other.
constexpr std::uint64_t kPixelsWorthAThread = 500'000;
constexpr std::uint32_t kRowsBetweenQuestions = 32;

/// Whether rows of size @p rows show all of a picture of size @p stored, at most shrunk: not cropped, not turned.
bool showsAll(PixelSize rows, PixelSize stored)
{
    if (stored.empty() || rows.width > stored.width || rows.height > stored.height)
        return false;
    const std::uint64_t a = std::uint64_t{rows.width} * stored.height;
    const std::uint64_t b = std::uint64_t{rows.height} * stored.width;
    return (a > b ? a - b : b - a) <= stored.longerSide(); // each side may be rounded up by a pixel
}

/// The result's size before the orientation is applied.
PixelSize targetFor(const RowLayout &layout, std::uint32_t maxSide)
{
    // Shapes are fitted as stored, not as shrunk by the codec: a second rounding would move a side by one.
    const PixelSize whole = showsAll(layout.rows, layout.storedSize) ? layout.storedSize : layout.rows;
    const PixelSize fitted = whole.fittedTo(std::max(maxSide, 1U));
    return {std::min(fitted.width, layout.rows.width), std::min(fitted.height, layout.rows.height)};
}

bool exceeds(PixelSize size, const DecodeLimits &limits)
{
    return size.longerSide() > limits.maxSourceSide || size.pixels() > limits.maxSourcePixels;
}

} // namespace

struct ImageAssembler::State
{
    explicit State(const DecodeLimits &decodeLimits) : limits(decodeLimits) {}

    const DecodeLimits &limits;
    RowLayout layout;
    PixelSize target; ///< before the orientation is applied
    PixelBuffer pixels;
    std::uint32_t received = 0;
    DecodeFailure failure = DecodeFailure::corrupt;
    bool failed = false;

    std::optional<RowPlacement> placement;
    std::optional<Resampler> resampler;
    std::vector<std::byte> row;  ///< where the codec writes when rows are reduced in its own thread
    std::optional<RowPipe> pipe; ///< last: its thread uses what stands above

    [[nodiscard]] bool shrinks() const { return target != layout.rows; }
    [[nodiscard]] bool threaded() const { return shrinks() && layout.rows.pixels() >= kPixelsWorthAThread; }
    [[nodiscard]] std::size_t rowBytes() const { return std::size_t{layout.rows.width} * PixelBuffer::kBytesPerPixel; }

    bool fail(DecodeFailure why)
    {
        failure = why;
        failed = true;
        return false;
    }

    [[nodiscard]] std::uint64_t workingBytes() const
    {
        std::uint64_t bytes = target.pixels() * PixelBuffer::kBytesPerPixel +
                              RowPlacement::workingBytes(target.width, layout.orientation);
        if (shrinks())
            bytes += Reduction::workingBytes(layout.rows, target) + rowBytes() +
                     (threaded() ? RowPipe::workingBytes(rowBytes()) : 0);
        return bytes;
    }

    void allocate()
    {
        pixels = PixelBuffer::allocate(swapsSides(layout.orientation) ? target.transposed() : target);
        if (pixels.isNull())
            throw std::bad_alloc();
        placement.emplace(pixels, layout.orientation);
        if (!shrinks())
            return;
        resampler.emplace(std::make_shared<const Reduction>(layout.rows, target), 0, target.height);
        if (threaded())
            pipe.emplace(rowBytes(), [this](std::byte *stored) { reduce(stored); });
        else
            row.resize(rowBytes());
    }

    void reduce(std::byte *stored)
    {
        if (layout.hasAlpha)
            premultiply(stored, layout.rows.width);
        resampler->push(stored);
        while (resampler->pull(placement->nextRow()))
            placement->rowDone();
    }

    /// Ends a picture of which @p received rows came.
    void complete()
    {
        if (pipe)
            pipe->finish();
        if (resampler && !resampler->finished())
            fadeOut();
        // Black where an opaque picture breaks off, as on an unlit screen: grey, the other habit, looks like part of
        // it.
        while (!layout.hasAlpha && placement->rowsDone() < target.height) {
            std::byte *blank = placement->nextRow();
            for (std::uint32_t x = 0; x < target.width; ++x)
                std::memcpy(blank + std::size_t{x} * 4, "\0\0\0\xff", 4);
            placement->rowDone();
        }
        placement->finish();
    }

    /// Result rows that still have a share of the last rows that came.
    void fadeOut()
    {
        std::vector<std::byte> blank(rowBytes());
        for (std::size_t x = 3; x < blank.size() && !layout.hasAlpha; x += 4)
            blank[x] = std::byte{255};
        while (!resampler->finished() && resampler->nextDependsFrom() < received) {
            resampler->push(blank.data());
            while (resampler->pull(placement->nextRow()))
                placement->rowDone();
        }
    }
};

ImageAssembler::ImageAssembler(const DecodeLimits &limits) : m_state(std::make_unique<State>(limits)) {}

ImageAssembler::~ImageAssembler() = default;

bool ImageAssembler::begin(const RowLayout &layout)
{
    State &state = *m_state;
    if (layout.rows.empty())
        return state.fail(DecodeFailure::corrupt);
    if (exceeds(layout.rows, state.limits) || exceeds(layout.storedSize, state.limits))
        return state.fail(DecodeFailure::tooLarge);
    state.layout = layout;
    state.target = targetFor(layout, state.limits.maxSide);
    if (state.limits.progress)
        state.limits.progress->setRowCount(layout.rows.height);
    if (state.workingBytes() > state.limits.maxWorkingBytes)
        return state.fail(DecodeFailure::tooLarge);
    try {
        state.allocate();
    } catch (const std::bad_alloc &) {
        return state.fail(DecodeFailure::outOfMemory);
    }
    return true;
}

std::byte *ImageAssembler::nextRow()
{
    if (m_state->pipe)
        return m_state->pipe->nextRow();
    return m_state->resampler ? m_state->row.data() : m_state->placement->nextRow();
}

bool ImageAssembler::rowDone()
{
    State &state = *m_state;
    if (state.pipe) {
        state.pipe->rowDone();
    } else if (state.resampler) {
        state.reduce(state.row.data());
    } else {
        if (state.layout.hasAlpha)
            premultiply(state.placement->nextRow(), state.layout.rows.width);
        state.placement->rowDone();
    }
    ++state.received;
    if (state.received % kRowsBetweenQuestions != 0)
        return true;
    if (state.limits.progress)
        state.limits.progress->setRowsDone(state.received);
    if (state.limits.cancelled && state.limits.cancelled())
        return state.fail(DecodeFailure::cancelled);
    return true;
}

std::byte *ImageAssembler::allRows()
{
    const bool straight = !m_state->shrinks() && m_state->layout.orientation == Orientation::upright;
    return straight ? m_state->pixels.row(0) : nullptr;
}

DecodeFailure ImageAssembler::failure() const
{
    return m_state->failure;
}

std::optional<DecodedImage> ImageAssembler::take()
{
    State &state = *m_state;
    if (state.failed || state.received == 0)
        return std::nullopt;
    try {
        state.complete();
    } catch (const std::bad_alloc &) {
        state.fail(DecodeFailure::outOfMemory);
        return std::nullopt;
    }
    DecodedImage image;
    image.pixels = std::move(state.pixels);
    image.hasAlpha = state.layout.hasAlpha;
    image.storedSize = state.layout.storedSize.empty() ? state.layout.rows : state.layout.storedSize;
    image.colour = std::move(state.layout.colour);
    return image;
}

} // namespace tallowmere
