// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QFont>

namespace tallowmere {

/// The application's font at @p points device-independent pixels, larger or smaller by as much as the user's own
/// choice of font size departs from the usual 10 pt.
[[nodiscard]] QFont interfaceFont(double points, QFont::Weight weight = QFont::Normal);

} // namespace tallowmere
