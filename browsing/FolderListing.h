// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <optional>
#include <vector>

namespace tallowmere {

/// The names in the folder at @p path, as bytes, in no order, without those that begin with a dot. Names only: no
/// entry is looked at. Nothing when the folder can't be opened or read to its end. Any thread.
[[nodiscard]] std::optional<std::vector<QByteArray>> visibleNamesIn(const QByteArray &path);

} // namespace tallowmere
