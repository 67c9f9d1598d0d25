// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/pixels/DisplayCopy.h"

#include "imaging/pixels/ColourConversion.h"
#include "imaging/pixels/PixelKernels.h"
#include "imaging/pixels/Resampler.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <new>
#include <optional>
#include <system_error>
#include <thread>

namespace tallowmere {
namespace {

/// Under this many source pixels a second thread is not ready before the first has finished.
constexpr std::uint64_t kPixelsWorthAThread = 400'000;
/// Parts of the result, taken by whichever thread is free; each filters some rows at its edges once more.
constexpr std::uint32_t kParts = 6;
constexpr std::uint32_t kRowsBetweenQuestions = 16;

/// One making of a display copy, shared by its threads.
class Making final
{
public:
    Making(const DecodedImage &image, PixelBuffer &result, const std::function<bool()> &cancelled)
        : m_image(image), m_result(result), m_cancelled(cancelled), m_conversion(ColourConversion::toSRGB(image.colour))
    {
        if (result.size() != image.pixels.size())
            m_reduction = std::make_shared<const Reduction>(image.pixels.size(), result.size());
    }

    /// False when the copy was given up.
    bool run()
    {
        std::thread helper;
        if (m_image.pixels.size().pixels() >= kPixelsWorthAThread && std::thread::hardware_concurrency() > 1) {
            try {
                helper = std::thread([this] { makeParts(false); });
            } catch (const std::system_error &) {
                // Out of threads: this one does it all.
            }
        }
        makeParts(true);
        if (helper.joinable())
            helper.join();
        return !m_stopped;
    }

private:
    void makeParts(bool mayAsk)
    {
        const std::uint32_t height = m_result.size().height;
        const auto edge = [&](std::uint32_t part) {
            return static_cast<std::uint32_t>(std::uint64_t{height} * part / kParts);
        };
        try {
            for (std::uint32_t part = m_nextPart++; part < kParts && !m_stopped; part = m_nextPart++) {
                if (edge(part) < edge(part + 1))
                    makeRows(edge(part), edge(part + 1), mayAsk);
            }
        } catch (const std::bad_alloc &) {
            m_stopped = true;
        }
    }

    void makeRows(std::uint32_t first, std::uint32_t end, bool mayAsk)
    {
        if (!m_reduction) {
            for (std::uint32_t y = first; y < end && goesOn(y, mayAsk); ++y) {
                std::memcpy(m_result.row(y), m_image.pixels.row(y), m_result.rowBytes());
                convert(m_result.row(y));
            }
            return;
        }
        Resampler resampler(m_reduction, first, end);
        const std::uint32_t past = resampler.endSourceRow();
        std::uint32_t y = first;
        for (std::uint32_t source = resampler.firstSourceRow(); source < past && goesOn(source, mayAsk); ++source) {
            resampler.push(m_image.pixels.row(source));
            while (y < end && resampler.pull(m_result.row(y)))
                convert(m_result.row(y++));
        }
    }

    void convert(std::byte *row) const
    {
        if (!m_conversion)
            return;
        const std::size_t count = m_result.size().width;
        if (m_image.hasAlpha)
            unpremultiply(row, count);
        m_conversion->convert(row, count);
        if (m_image.hasAlpha)
            premultiply(row, count);
    }

    bool goesOn(std::uint32_t row, bool mayAsk)
    {
        if (mayAsk && row % kRowsBetweenQuestions == 0 && m_cancelled && m_cancelled())
            m_stopped = true;
        return !m_stopped;
    }

    const DecodedImage &m_image;
    PixelBuffer &m_result;
    const std::function<bool()> &m_cancelled;
    std::shared_ptr<const ColourConversion> m_conversion;
    std::shared_ptr<const Reduction> m_reduction; ///< null for a copy of the picture's own size
    std::atomic<std::uint32_t> m_nextPart = 0;
    std::atomic<bool> m_stopped = false;
};

} // namespace

PixelBuffer makeDisplayCopy(const DecodedImage &image, PixelSize size, const std::function<bool()> &cancelled)
{
    const PixelSize from = image.pixels.size();
    if (image.pixels.isNull() || size.empty() || size.width > from.width || size.height > from.height)
        return {};
    PixelBuffer result = PixelBuffer::allocate(size);
    if (result.isNull())
        return {};
    try {
        if (Making(image, result, cancelled).run())
            return result;
    } catch (const std::bad_alloc &) {
        // As without room for the result itself.
    }
    return {};
}

} // namespace tallowmere
