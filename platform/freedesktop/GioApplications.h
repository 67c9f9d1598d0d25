// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <optional>

namespace tallowmere {

/// The desktop file ("name.desktop") that opens @p mimeType by default, as GIO finds it: over all of the user's and the
/// system's lists, those of the running desktop first. Nothing when there is none, or no GIO.
///
/// GIO is loaded by the first call, never before, and stays. Main thread.
[[nodiscard]] std::optional<QByteArray> gioDefaultApplication(const QByteArray &mimeType);

} // namespace tallowmere
