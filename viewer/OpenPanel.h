// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "support/FileURL.h"

#include <QString>

class QFileDialog;
class QWidget;

namespace tallowmere {

class SettingsManager;

/// The name filter for the image formats that are switched on: JPEG always. HEIF is not offered, though it opens.
[[nodiscard]] QString openPanelNameFilter(const SettingsManager &settings);

/// A modeless dialog for one existing file that deletes itself when closed. It begins in @p folder, or among the
/// user's pictures when that is empty. Not shown yet, and without a name filter.
[[nodiscard]] QFileDialog *makeOpenPanel(QWidget *parent, const FileURL &folder);

} // namespace tallowmere
