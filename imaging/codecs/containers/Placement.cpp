// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/codecs/containers/Placement.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

namespace tallowmere {
namespace {

struct Rectangle
{
    std::uint32_t x = 0;
    std::uint32_t y = 0;
    PixelSize size;
};

/// One side of a clean aperture: where it starts and how long it is, in pixels.
std::optional<std::pair<std::uint32_t, std::uint32_t>> apertureSide(double length, double offset, std::uint32_t side)
{
    const double rounded = std::floor(length + 0.5);
    // The offset is that of the centres. A hair is added so that exact halves don't fall to rounding errors.
    const double start = std::floor(offset + (side - length) / 2 + 1e-6);
    if (!(rounded >= 1) || !(start < side) || !(start + rounded > 0))
        return std::nullopt;
    const double from = std::max(start, 0.0);
    const double to = std::min(start + rounded, static_cast<double>(side));
    return std::pair{static_cast<std::uint32_t>(from), static_cast<std::uint32_t>(to - from)};
}

std::optional<Rectangle> cleanAperture(std::span<const std::byte> payload, PixelSize size)
{
    ByteReader reader(payload);
    double values[4] = {}; // width, height, horizontal and vertical offset
    for (int i = 0; i < 4; ++i) {
        const std::uint32_t numerator = reader.u32();
        const std::uint32_t denominator = reader.u32();
        if (!reader.ok() || denominator == 0)
            return std::nullopt;
        values[i] =
            i < 2 ? numerator : static_cast<double>(static_cast<std::int32_t>(numerator)); // offsets have a sign
        values[i] /= denominator;
    }
    const auto across = apertureSide(values[0], values[2], size.width);
    const auto down = apertureSide(values[1], values[3], size.height);
    if (!across || !down)
        return std::nullopt;
    return Rectangle{across->first, down->first, {across->second, down->second}};
}

/// Any of the eight ways to lay a rectangle down: sides exchanged first, then mirrored.
class Turn final
{
public:
    void rotateAnticlockwise()
    {
        m_transposed = !m_transposed;
        std::swap(m_acrossMirrored, m_downMirrored);
        m_downMirrored = !m_downMirrored;
    }
    void exchangeLeftAndRight() { m_acrossMirrored = !m_acrossMirrored; }
    void exchangeTopAndBottom() { m_downMirrored = !m_downMirrored; }

    [[nodiscard]] PixelSize applied(PixelSize size) const { return m_transposed ? size.transposed() : size; }

    /// From coordinates of the turned picture of @p turned pixels to those of the picture as it was.
    [[nodiscard]] Rectangle undone(Rectangle area, PixelSize turned) const
    {
        if (m_acrossMirrored)
            area.x = turned.width - area.x - area.size.width;
        if (m_downMirrored)
            area.y = turned.height - area.y - area.size.height;
        return m_transposed ? Rectangle{area.y, area.x, area.size.transposed()} : area;
    }

    [[nodiscard]] Orientation orientation() const
    {
        using enum Orientation;
        constexpr Orientation kStraight[] = {upright, mirroredHorizontally, mirroredVertically, rotated180};
        constexpr Orientation kTransposed[] = {transposed, rotated90Clockwise, rotated270Clockwise, transversed};
        const int mirrors = (m_acrossMirrored ? 1 : 0) + (m_downMirrored ? 2 : 0);
        return m_transposed ? kTransposed[mirrors] : kStraight[mirrors];
    }

private:
    bool m_transposed = false;
    bool m_acrossMirrored = false;
    bool m_downMirrored = false;
};

std::vector<MediaProperty> transforms(const MediaFile &file, const MediaItem &item, TransformOrder order)
{
    const auto rank = [](FourCC type) {
        return type == fourCC("clap") ? 0 : type == fourCC("irot") ? 1 : type == fourCC("imir") ? 2 : 3;
    };
    auto result = file.properties(item);
    std::erase_if(result, [&](const MediaProperty &property) { return rank(property.type) == 3; });
    if (order == TransformOrder::cropRotateMirror) {
        std::stable_sort(result.begin(), result.end(),
                         [&](const MediaProperty &a, const MediaProperty &b) { return rank(a.type) < rank(b.type); });
    }
    return result;
}

} // namespace

Placement placementOf(const MediaFile &file, const MediaItem &item, PixelSize stored, TransformOrder order)
{
    Rectangle shown{0, 0, stored};
    Turn turn;
    for (const MediaProperty &property : transforms(file, item, order)) {
        const unsigned value = ByteReader(property.payload).u8();
        if (property.type == fourCC("clap")) {
            const PixelSize turned = turn.applied(shown.size);
            if (const auto area = cleanAperture(property.payload, turned)) {
                const Rectangle inside = turn.undone(*area, turned);
                shown = {shown.x + inside.x, shown.y + inside.y, inside.size};
            }
        } else if (property.type == fourCC("irot")) {
            for (unsigned quarter = 0; quarter < (value & 3U); ++quarter)
                turn.rotateAnticlockwise();
        } else if ((value & 1U) != 0) {
            turn.exchangeLeftAndRight();
        } else {
            turn.exchangeTopAndBottom();
        }
    }
    return {shown.x, shown.y, shown.size, turn.orientation()};
}

} // namespace tallowmere
