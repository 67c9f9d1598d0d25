// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <optional>

namespace tallowmere {

/// What a user types for a number of images to prefetch: pure rules, any thread.
namespace PrefetchCountText {

inline constexpr int kMostImages = 100;

/// A text while it is being typed, with the cursor in UTF-16 units from its beginning. A value.
struct Typed
{
    QString text;
    int cursor = 0;

    friend bool operator==(const Typed &, const Typed &) = default;
};

/// Keeps the number characters (Unicode's categories Nd, Nl and No); the cursor stays between the same two of them.
[[nodiscard]] Typed withNumbersOnly(const Typed &typed);

/// A whole number from 0 to kMostImages in the decimal digits of any script, with at most one leading + or -.
/// Nothing for any other text: blanks, fractions and Roman numerals included.
[[nodiscard]] std::optional<int> parse(const QString &text);

} // namespace PrefetchCountText

} // namespace tallowmere
