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

QString labelName(const FileLabel &label)
{
    static constexpr std::array<QLatin1StringView, kLabelCount> kNames{
        QLatin1StringView("Gray"),   QLatin1StringView("Green"), QLatin1StringView("Purple"), QLatin1StringView("Blue"),
        QLatin1StringView("Yellow"), QLatin1StringView("Red"),   QLatin1StringView("Orange")};
    if (label.number >= 1 && label.number <= static_cast<int>(kLabelCount))
        return kNames[static_cast<std::size_t>(label.number) - 1];
    if (!label.colour)
        return {};
    const std::uint32_t code = std::uint32_t{label.colour->red} << 16U | std::uint32_t{label.colour->green} << 8U |
                               std::uint32_t{label.colour->blue};
    return QLatin1Char('#') + QString::number(code, 16).rightJustified(6, QLatin1Char('0'));
}

} // namespace tallowmere
