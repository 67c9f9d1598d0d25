// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/codecs/containers/MediaBudget.h"

#include "imaging/codecs/containers/CodedPicture.h"
#include "imaging/codecs/containers/MediaCanvas.h"

#include <algorithm>
#include <iterator>

namespace tallowmere {
namespace {

/// 64 Mpixel in tiles of 128 x 128, or 1 Gpixel in the usual ones of 512 x 512.
constexpr unsigned kMaxTiles = 4096;
/// A grid of grids is already unheard of.
constexpr int kMaxDepth = 4;
/// Tiles stick out of a grid by less than one tile; what is decoded beyond that is a trap for the processor.
constexpr std::uint64_t kWasteFactor = 4;
constexpr std::uint64_t kWasteAllowance = std::uint64_t{64} << 20; // pixels
/// The strip in which rows are converted, and small change.
constexpr std::uint64_t kOverhead = std::uint64_t{8} << 20;

/// What one item costs, with all it is made of.
struct Cost
{
    PixelSize size;
    unsigned samplesPerFourPixels = 6;
    unsigned bytesPerSample = 1;
    std::uint64_t kept = 0; ///< bytes of the finished planes
    std::uint64_t peak = 0; ///< bytes while they are being made, kept ones included
};

PixelSize largerOf(PixelSize a, PixelSize b)
{
    return a.pixels() >= b.pixels() ? a : b;
}

class Estimator final
{
public:
    Estimator(const MediaFile &file, const DecodeLimits &limits, const LibraryCosts &costs)
        : m_file(file), m_limits(limits), m_costs(costs)
    {}

    /// Nothing: see failure().
    std::optional<Cost> of(const MediaItem &item, int depth = 0)
    {
        if (depth > kMaxDepth)
            return refuse(DecodeFailure::corrupt);
        if (++m_items > kMaxTiles)
            return refuse(DecodeFailure::tooLarge);
        const bool canvas = item.type == fourCC("grid") || item.type == fourCC("iovl");
        auto cost = canvas || item.type == fourCC("iden") ? ofDerived(item, canvas, depth) : ofCoded(item);
        if (cost)
            m_largest = std::max(m_largest, cost->size.pixels());
        return cost;
    }

    [[nodiscard]] DecodeFailure failure() const { return m_failure; }
    [[nodiscard]] std::uint64_t largest() const { return m_largest; }
    [[nodiscard]] std::uint64_t decodedPixels() const { return m_decodedPixels; }

private:
    std::optional<Cost> refuse(DecodeFailure failure)
    {
        m_failure = failure;
        return std::nullopt;
    }

    [[nodiscard]] bool withinLimits(PixelSize size) const
    {
        return size.longerSide() <= m_limits.maxSourceSide && size.pixels() <= m_limits.maxSourcePixels;
    }

    [[nodiscard]] std::uint64_t keptFor(const Cost &cost) const
    {
        constexpr unsigned kGrey = 4;
        constexpr unsigned kFull = 12;
        const bool full = m_costs.deliversRgb && cost.samplesPerFourPixels != kGrey;
        return cost.size.pixels() * (full ? kFull : cost.samplesPerFourPixels) / 4 * cost.bytesPerSample;
    }

    std::optional<Cost> ofCoded(const MediaItem &item)
    {
        constexpr FourCC kReadable[] = {fourCC("hvc1"), fourCC("hev1"), fourCC("av01")};
        if (std::find(std::begin(kReadable), std::end(kReadable), item.type) == std::end(kReadable))
            return refuse(DecodeFailure::unsupported);
        const auto extent = m_file.spatialExtent(item);
        const auto coded = codedPicture(m_file, item);
        if (!extent && !coded)
            return refuse(DecodeFailure::corrupt);
        Cost cost;
        cost.size = largerOf(extent.value_or(PixelSize{}), coded ? coded->size : PixelSize{});
        if (cost.size.empty())
            return refuse(DecodeFailure::corrupt);
        if (!withinLimits(cost.size))
            return refuse(DecodeFailure::tooLarge);
        CodedPicture picture = coded.value_or(CodedPicture{});
        picture.size = cost.size;
        cost.samplesPerFourPixels = picture.samplesPerFourPixels;
        cost.bytesPerSample = picture.bytesPerSample;
        cost.kept = keptFor(cost);
        cost.peak = picture.planeBytes() * (m_costs.copiesOfCoded + (picture.filmGrain ? 1 : 0)) +
                    cost.size.pixels() * m_costs.bookkeepingPerPixel + (m_costs.deliversRgb ? cost.kept : 0);
        m_decodedPixels += cost.size.pixels();
        return cost;
    }

    std::optional<Cost> ofDerived(const MediaItem &item, bool canvas, int depth)
    {
        Cost cost;
        std::uint64_t tilePeak = 0;
        for (const std::uint32_t id : item.derivedFrom) {
            const MediaItem *part = m_file.item(id);
            const auto partCost = part ? of(*part, depth + 1) : refuse(DecodeFailure::corrupt);
            if (!partCost)
                return std::nullopt;
            tilePeak = std::max(tilePeak, partCost->peak);
            cost.size = largerOf(cost.size, partCost->size);
            cost.samplesPerFourPixels = std::max(cost.samplesPerFourPixels, partCost->samplesPerFourPixels);
            cost.bytesPerSample = std::max(cost.bytesPerSample, partCost->bytesPerSample);
        }
        if (canvas) {
            const auto put = MediaCanvas::of(item);
            if (!put)
                return refuse(DecodeFailure::corrupt);
            cost.size = put->size;
        }
        if (cost.size.empty())
            return refuse(DecodeFailure::corrupt);
        if (!withinLimits(cost.size))
            return refuse(DecodeFailure::tooLarge);
        cost.kept = keptFor(cost);
        cost.peak = cost.kept + tilePeak * std::min<std::uint64_t>(m_costs.tilesAtOnce, item.derivedFrom.size());
        return cost;
    }

    const MediaFile &m_file;
    const DecodeLimits &m_limits;
    const LibraryCosts &m_costs;
    unsigned m_items = 0;
    std::uint64_t m_largest = 0;
    std::uint64_t m_decodedPixels = 0;
    DecodeFailure m_failure = DecodeFailure::corrupt;
};

} // namespace

std::variant<MediaBudget, DecodeFailure> MediaBudget::of(const MediaFile &file, const DecodeLimits &limits,
                                                         const LibraryCosts &costs)
{
    const MediaItem *primary = file.primary();
    if (!primary)
        return DecodeFailure::corrupt;
    Estimator estimator(file, limits, costs);
    const auto colour = estimator.of(*primary);
    if (!colour)
        return estimator.failure();
    MediaBudget budget;
    budget.stored = file.spatialExtent(*primary).value_or(colour->size);
    if (budget.stored.empty())
        return DecodeFailure::corrupt;
    std::uint64_t peak = colour->peak;
    if (const MediaItem *alpha = file.alphaOf(*primary)) {
        const auto alphaCost = estimator.of(*alpha);
        if (!alphaCost)
            return estimator.failure();
        budget.hasAlpha = true;
        peak = costs.alphaBesideColour ? peak + alphaCost->peak : std::max(peak, colour->kept + alphaCost->peak);
    }
    if (estimator.decodedPixels() > kWasteFactor * budget.stored.pixels() + kWasteAllowance)
        return DecodeFailure::tooLarge;
    budget.largestPicture = std::max(estimator.largest(), budget.stored.pixels());
    budget.workingBytes = peak + budget.stored.fittedTo(limits.maxSide).pixels() * 4 + kOverhead;
    if (budget.stored.longerSide() > limits.maxSourceSide || budget.stored.pixels() > limits.maxSourcePixels ||
        budget.workingBytes > limits.maxWorkingBytes)
        return DecodeFailure::tooLarge;
    return budget;
}

std::optional<PixelSize> storedSizeOfPrimary(std::span<const std::byte> file)
{
    const auto media = MediaFile::read(file);
    const MediaItem *primary = media ? media->primary() : nullptr;
    if (!primary)
        return std::nullopt;
    auto size = media->spatialExtent(*primary);
    if (!size) {
        if (const auto coded = codedPicture(*media, *primary))
            size = coded->size;
    }
    return size && !size->empty() ? size : std::nullopt;
}

} // namespace tallowmere
