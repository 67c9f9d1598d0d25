// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/FileAttributes.h"
#include "platform/FileLabel.h"

#include <atomic>

namespace tallowmere::test {

/// Every file has the label the test gave.
class StatedLabel final : public FileLabelReader
{
public:
    [[nodiscard]] FileLabel label(const FileURL &) const override
    {
        ++reads;
        return stated;
    }

    FileLabel stated; ///< changed only while nothing reads
    mutable std::atomic<int> reads{0};
};

/// Every file has the attributes the test gave; nothing: they can't be read.
class StatedAttributes final : public FileAttributesReader
{
public:
    [[nodiscard]] std::optional<FileAttributes> attributes(const FileURL &) const override
    {
        ++reads;
        return stated;
    }

    std::optional<FileAttributes> stated = FileAttributes{.size = 2'000'000, .creationDate = {}};
    mutable std::atomic<int> reads{0};
};

} // namespace tallowmere::test
