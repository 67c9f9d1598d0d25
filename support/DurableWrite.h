// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArrayView>

namespace tallowmere {

/// Writes all of @p bytes and has them on the disk before it returns, so that a power cut can't take them; on file
/// systems that can't do that, only the first. 0, or what errno said. Any thread; blocks.
[[nodiscard]] int writeDurably(int descriptor, QByteArrayView bytes);

} // namespace tallowmere
