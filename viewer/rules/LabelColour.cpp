// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "viewer/rules/LabelColour.h"

#include <cmath>

namespace tallowmere {

namespace {

constexpr double kNoticeableDifference = 0.3;

constexpr Color colourOf(FileLabel::Rgb rgb)
{
    return {rgb.red / 255.0, rgb.green / 255.0, rgb.blue / 255.0, 1.0};
}

constexpr std::array<Color, kLabelCount> kStandardColours{
    colourOf({0x96, 0x96, 0x9b}), // grey
    colourOf({0x34, 0xc2, 0x59}), // green
    colourOf({0xa8, 0x55, 0xd2}), // purple
    colourOf({0x32, 0x85, 0xe8}), // blue
    colourOf({0xf2, 0xc9, 0x1f}), // yellow
    colourOf({0xe5, 0x3a, 0x3a}), // red
    colourOf({0xf5, 0x86, 0x1c}), // orange
};

double difference(const Color &a, const Color &b)
{
    return std::abs(a.red - b.red) + std::abs(a.green - b.green) + std::abs(a.blue - b.blue);
}

} // namespace

std::span<const Color, kLabelCount> standardLabelColours()
{
    return kStandardColours;
}

std::optional<Color> labelColour(const FileLabel &label, std::span<const Color> standard)
{
    const std::optional<Color> own = label.colour ? std::optional(colourOf(*label.colour)) : std::nullopt;
    if (label.number < 1 || label.number > static_cast<int>(kLabelCount) || standard.size() < kLabelCount)
        return own;
    const Color &ofLabel = standard[static_cast<std::size_t>(label.number) - 1];
    return own && difference(*own, ofLabel) > kNoticeableDifference ? *own : ofLabel;
}

} // namespace tallowmere
