// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <vector>

namespace tallowmere {

/// Sorts file names as people expect: case ignored, runs of digits by their value, the rest as the user's language has
/// it. Names that compare equal (A.jpg and a.jpg) come in byte order, so that the result never depends on the order of
/// @p names. Without usable collation data everything is in byte order. Any thread.
void sortByName(std::vector<QByteArray> &names);

/// The ICU locale that collation follows, from three variables of the environment: the first that is not empty
/// counts. C and POSIX give the root locale, since the one ICU has for them puts capitals first.
[[nodiscard]] QByteArray collationLocale(const QByteArray &lcAll, const QByteArray &lcCollate, const QByteArray &lang);

/// The same with a locale given; for tests of one language's rules.
void sortByName(std::vector<QByteArray> &names, const QByteArray &locale);

} // namespace tallowmere
