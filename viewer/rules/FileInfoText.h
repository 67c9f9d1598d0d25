// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/pixels/PixelSize.h"
#include "platform/FileAttributes.h"

#include <QString>

#include <optional>

namespace tallowmere {

class SecurityScope;
class SettingsManager;

/// Which facts about the file the user wants to see. A value.
struct FileInfoSelection
{
    bool fileSize = false;
    bool creationDate = false;
    bool imageResolution = false;

    /// Any thread.
    [[nodiscard]] static FileInfoSelection of(const SettingsManager &settings);
    [[nodiscard]] bool any() const { return fileSize || creationDate || imageResolution; }
};

/// What the pill says about a file, item by item. A value.
struct FileInfoTexts
{
    std::optional<QString> size;
    std::optional<QString> date;
    std::optional<QString> resolution;

    /// In this order, with bullets in between. Empty when there is nothing to say.
    [[nodiscard]] QString joined() const;
};

/// "1920×1080"; nothing unless both sides have a pixel.
[[nodiscard]] std::optional<QString> resolutionText(PixelSize size);

/// Reads what @p selection asks for, and no more. A file without attributes counts as zero bytes of unknown date; a
/// picture that states no size has no resolution. Any thread; blocks.
[[nodiscard]] FileInfoTexts readFileInfo(const FileURL &file, FileInfoSelection selection,
                                         const FileAttributesReader &reader, SecurityScope &scope);

} // namespace tallowmere
