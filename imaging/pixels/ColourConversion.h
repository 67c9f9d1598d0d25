// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/pixels/ColourDescription.h"

#include <cstddef>
#include <memory>

namespace tallowmere {

/// Converts rows from a file's colour space to sRGB. Threads: any, several at once.
class ColourConversion
{
public:
    virtual ~ColourConversion() = default;

    /// Null when there is nothing to do: no description, an unusable one, or one that moves no value by more than
    /// one. Made once and remembered while it is among the last few asked for.
    [[nodiscard]] static std::shared_ptr<const ColourConversion> toSRGB(const ColourDescription &colour);

    /// @p pixels are straight BGRA, changed in place; alpha keeps its value.
    virtual void convert(std::byte *pixels, std::size_t count) const = 0;
};

} // namespace tallowmere
