// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/Color.h"
#include "platform/FileLabel.h"

#include <QString>

#include <array>
#include <optional>
#include <span>

namespace tallowmere {

/// The colours of the labels 1 to 7: grey, green, purple, blue, yellow, red, orange. sRGB, bright enough to be told
/// apart on a dark pill and on a light one.
inline constexpr std::size_t kLabelCount = 7;
[[nodiscard]] std::span<const Color, kLabelCount> standardLabelColours();

/// The colour of the tag circle. Nothing: no circle.
///
/// A file's own colour counts where it is far from the standard colour of its label (the differences of the three
/// components add up to more than 0.3); nearer ones are the same colour with small errors, and so the standard one.
/// With fewer than seven @p standard colours only the file's own counts.
[[nodiscard]] std::optional<Color> labelColour(const FileLabel &label,
                                               std::span<const Color> standard = standardLabelColours());

/// How a label is called: "Red"; one that is nothing but a colour of its own by its code, "#00c8ff". Empty without
/// a label.
[[nodiscard]] QString labelName(const FileLabel &label);

} // namespace tallowmere
