// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QLocale>
#include <QString>

namespace tallowmere {

/// A file's size as file managers write it: "Zero KB", "1 byte", "512 bytes", "17 KB", "2.4 MB", "1.25 GB".
///
/// Units are decimal (1 KB is 1000 bytes). Bytes and KB have no decimals, MB up to one, larger units up to two.
/// Rounded to the nearest, halves upwards. The decimal point and the digits are those of @p locale. A negative count
/// reads as zero.
[[nodiscard]] QString byteCountText(qint64 bytes, const QLocale &locale = QLocale::system());

} // namespace tallowmere
