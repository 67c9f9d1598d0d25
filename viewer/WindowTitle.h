// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "settings/SettingsManager.h"
#include "support/FileURL.h"

#include <QString>

namespace tallowmere {

/// A file's name as one line of text: bytes that are no text become U+FFFD, control characters and line
/// separators become blanks.
[[nodiscard]] QString nameOnOneLine(const FileURL &file);

/// What the window is called while @p file (may be empty) is shown, as QWidget::setWindowTitle() takes it.
[[nodiscard]] QString windowTitleFor(const FileURL &file, FileNameDisplayLocation location);

} // namespace tallowmere
