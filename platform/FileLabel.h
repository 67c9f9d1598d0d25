// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "support/FileURL.h"

#include <cstdint>
#include <optional>

namespace tallowmere {

/// The colour label a user has given to a file. A value.
struct FileLabel
{
    struct Rgb
    {
        std::uint8_t red = 0;
        std::uint8_t green = 0;
        std::uint8_t blue = 0;

        friend bool operator==(const Rgb &, const Rgb &) = default;
    };

    int number = 0;            ///< 1 grey, 2 green, 3 purple, 4 blue, 5 yellow, 6 red, 7 orange; 0: none of them
    std::optional<Rgb> colour; ///< sRGB; the file's own, where it has one

    friend bool operator==(const FileLabel &, const FileLabel &) = default;
};

/// Reads colour labels. Any thread, several at a time; may block on a slow file system.
class FileLabelReader
{
public:
    virtual ~FileLabelReader() = default;
    /// An empty label when there is none or it can't be read.
    [[nodiscard]] virtual FileLabel label(const FileURL &file) const = 0;
};

} // namespace tallowmere
