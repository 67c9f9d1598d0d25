// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QFont>

namespace tallowmere {

/// The application's font at @p points device-independent pixels, larger by as much as the user's own choice of font
/// size exceeds the usual 10 pt. A smaller one changes nothing: where a desktop sets no font Qt takes one of 9 pt,
/// which nobody chose.
[[nodiscard]] QFont interfaceFont(double points, QFont::Weight weight = QFont::Normal);

} // namespace tallowmere
