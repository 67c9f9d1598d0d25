// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/codecs/WebpCodec.h"

#include "imaging/codecs/WebpContainer.h"
#include "imaging/pixels/PixelBuffer.h"

#include <webp/decode.h>

#include <algorithm>
#include <cstring>
#include <memory>

namespace tallowmere {
namespace {

constexpr std::size_t kFileHeaderBytes = 12;

/// How much of the file is handed over between two looks at the cancellation and at the rows that are ready.
constexpr std::size_t kStepBytes = std::size_t{64} << 10;

/// Row caches, line filters and Huffman tables of libwebp, with room to spare.
constexpr std::uint64_t libraryOverhead(PixelSize frame)
{
    return (std::uint64_t{2} << 20) + frame.width * 512ULL;
}

struct IncrementalDeleter
{
    void operator()(WebPIDecoder *decoder) const { WebPIDelete(decoder); }
};
using Incremental = std::unique_ptr<WebPIDecoder, IncrementalDeleter>;

/// How the frame is to be decoded so that it stays within the limits.
struct Plan
{
    PixelSize output; ///< of the frame as libwebp delivers it
    PixelSize rows;   ///< of the canvas as the sink gets it
    bool shrinks = false;
};

std::size_t frameRowBytes(const Plan &plan)
{
    return std::size_t{plan.output.width} * PixelBuffer::kBytesPerPixel;
}

std::optional<DecodeFailure> exceeds(const WebpContainer &container, const DecodeLimits &limits)
{
    const PixelSize canvas = container.canvas;
    if (canvas.empty())
        return DecodeFailure::corrupt;
    if (canvas.longerSide() > limits.maxSourceSide || canvas.pixels() > limits.maxSourcePixels)
        return DecodeFailure::tooLarge;
    return std::nullopt;
}

std::optional<Plan> planFor(const WebpContainer &container, const DecodeLimits &limits)
{
    constexpr std::uint64_t kPixel = PixelBuffer::kBytesPerPixel;
    const PixelSize fitted = container.canvas.fittedTo(limits.maxSide);
    // Lossless pictures are held whole inside the library, and so is the alpha plane of a lossy one.
    const std::uint64_t inside = container.frame.pixels() * (container.lossless        ? kPixel
                                                             : container.frameHasAlpha ? 1
                                                                                       : 0) +
                                 libraryOverhead(container.frame);
    const std::uint64_t result = fitted.pixels() * kPixel;
    if (inside + container.frame.pixels() * kPixel + result <= limits.maxWorkingBytes)
        return Plan{container.frame, container.canvas, false};
    // The library's own scaler averages areas: good enough where the alternative is no picture.
    if (container.frame == container.canvas && inside + 2 * result <= limits.maxWorkingBytes)
        return Plan{fitted, fitted, true};
    return std::nullopt;
}

/// Hands the canvas to the sink, row by row, as the frame's rows become ready.
class CanvasRows final
{
public:
    /// @p frame: the rows of the frame, one after the other.
    CanvasRows(const WebpContainer &container, const Plan &plan, const std::byte *frame, RowSink &sink)
        : m_container(container), m_plan(plan), m_frame(frame), m_sink(sink)
    {}

    /// @p ready: rows of the frame that are final. False when the sink wants no more.
    bool deliver(std::uint32_t ready)
    {
        const std::uint32_t end = ready >= m_plan.output.height ? m_plan.rows.height : m_container.frameY + ready;
        for (; m_next < end; ++m_next) {
            std::byte *row = m_sink.nextRow();
            write(row, m_next);
            if (!m_sink.rowDone())
                return false;
        }
        return true;
    }

    [[nodiscard]] bool any() const { return m_next > m_container.frameY; }
    [[nodiscard]] DecodeFailure failure() const { return m_sink.failure(); }

private:
    void write(std::byte *row, std::uint32_t y) const
    {
        const bool inFrame = y >= m_container.frameY && y - m_container.frameY < m_plan.output.height;
        const std::size_t rowBytes = std::size_t{m_plan.rows.width} * PixelBuffer::kBytesPerPixel;
        if (!inFrame) {
            std::memset(row, 0, rowBytes);
            return;
        }
        const std::size_t before = std::size_t{m_container.frameX} * PixelBuffer::kBytesPerPixel;
        const std::size_t frameBytes = frameRowBytes(m_plan);
        const std::byte *frameRow = m_frame + frameBytes * (y - m_container.frameY);
        if (frameRow != row) {
            std::memset(row, 0, before);
            std::memcpy(row + before, frameRow, frameBytes);
            std::memset(row + before + frameBytes, 0, rowBytes - before - frameBytes);
        }
        if (m_container.lossless && !m_container.frameHasAlpha)
            makeOpaque(row + before, m_plan.output.width);
    }

    /// Lossless pictures without alpha may carry anything in the unused byte.
    static void makeOpaque(std::byte *row, std::uint32_t pixels)
    {
        for (std::uint32_t x = 0; x < pixels; ++x)
            row[std::size_t{x} * PixelBuffer::kBytesPerPixel + 3] = std::byte{255};
    }

    const WebpContainer &m_container;
    const Plan &m_plan;
    const std::byte *const m_frame;
    RowSink &m_sink;
    std::uint32_t m_next = 0;
};

void configure(WebPDecoderConfig &config, const Plan &plan, std::byte *frame)
{
    WebPInitDecoderConfig(&config);
    config.options.use_threads = 1;
    config.options.use_scaling = plan.shrinks ? 1 : 0;
    config.options.scaled_width = static_cast<int>(plan.output.width);
    config.options.scaled_height = static_cast<int>(plan.output.height);
    config.output.colorspace = MODE_BGRA;
    config.output.is_external_memory = 1;
    config.output.u.RGBA.rgba = reinterpret_cast<std::uint8_t *>(frame);
    config.output.u.RGBA.stride = static_cast<int>(frameRowBytes(plan));
    config.output.u.RGBA.size = frameRowBytes(plan) * plan.output.height;
}

/// Feeds the bitstream step by step. A damaged or truncated one ends early with the rows there are.
std::optional<DecodeFailure> feed(WebPIDecoder *decoder, std::span<const std::byte> bitstream,
                                  const DecodeLimits &limits, CanvasRows &rows)
{
    // libwebp starts over at a header that is incomplete: steps that grow with the file keep that cheap.
    const std::size_t step = std::max(kStepBytes, bitstream.size() / 64);
    VP8StatusCode status = VP8_STATUS_SUSPENDED;
    for (std::size_t given = 0; given < bitstream.size() && status == VP8_STATUS_SUSPENDED;) {
        if (limits.cancelled && limits.cancelled())
            return DecodeFailure::cancelled;
        given = std::min(bitstream.size(), given + step);
        status = WebPIUpdate(decoder, reinterpret_cast<const std::uint8_t *>(bitstream.data()), given);
        int ready = 0;
        if (WebPIDecGetRGB(decoder, &ready, nullptr, nullptr, nullptr) != nullptr && ready > 0 &&
            !rows.deliver(static_cast<std::uint32_t>(ready)))
            return rows.failure();
    }
    if (status == VP8_STATUS_OUT_OF_MEMORY)
        return DecodeFailure::outOfMemory;
    return rows.any() ? std::nullopt : std::optional(DecodeFailure::corrupt);
}

} // namespace

bool WebpCodec::recognises(std::span<const std::byte> head) const
{
    return head.size() >= kFileHeaderBytes && std::memcmp(head.data(), "RIFF", 4) == 0 &&
           std::memcmp(head.data() + 8, "WEBP", 4) == 0;
}

std::optional<PixelSize> WebpCodec::storedSize(std::span<const std::byte> file) const
{
    WebPBitstreamFeatures features{};
    if (WebPGetFeatures(reinterpret_cast<const std::uint8_t *>(file.data()), file.size(), &features) != VP8_STATUS_OK ||
        features.width <= 0 || features.height <= 0)
        return std::nullopt;
    return PixelSize{static_cast<std::uint32_t>(features.width), static_cast<std::uint32_t>(features.height)};
}

std::optional<DecodeFailure> WebpCodec::decode(std::span<const std::byte> file, const DecodeLimits &limits,
                                               RowSink &sink) const
{
    const auto container = WebpContainer::read(file);
    if (!container)
        return DecodeFailure::corrupt;
    if (const auto failure = exceeds(*container, limits))
        return failure;
    const auto plan = planFor(*container, limits);
    if (!plan)
        return DecodeFailure::tooLarge;

    if (!sink.begin({plan->rows, container->canvas, container->orientation, container->hasAlpha, container->colour}))
        return sink.failure();
    // A second bitmap costs a quarter of the whole decode: its pages' first touch and the copying.
    std::byte *frame = plan->output == plan->rows ? sink.allRows() : nullptr;
    PixelBuffer between;
    if (!frame) {
        between = PixelBuffer::allocate(plan->output);
        if (between.isNull())
            return DecodeFailure::outOfMemory;
        frame = between.row(0);
    }
    WebPDecoderConfig config;
    configure(config, *plan, frame);
    const Incremental decoder(WebPIDecode(nullptr, 0, &config));
    if (!decoder)
        return DecodeFailure::outOfMemory;
    CanvasRows rows(*container, *plan, frame, sink);
    return feed(decoder.get(), container->bitstream, limits, rows);
}

} // namespace tallowmere
