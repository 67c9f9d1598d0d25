// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/FileAttributes.h"

namespace tallowmere {

/// File attributes as statx(2) gives them, birth time included.
class StatxAttributesReader final : public FileAttributesReader
{
public:
    [[nodiscard]] std::optional<FileAttributes> attributes(const FileURL &file) const override;
};

} // namespace tallowmere
