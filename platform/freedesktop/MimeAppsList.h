// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>

namespace tallowmere {

/// The text @p mimeAppsList of a mimeapps.list (MIME Applications Associations specification) with @p desktopFile
/// ("name.desktop") first among the default applications of each of @p mimeTypes.
///
/// Those who were there stay behind it, as fall-backs. Only lines of these types are changed or added: order, comments,
/// other groups, blank lines, line endings and a missing line feed at the end stay as they are. Of a repeated key the
/// line that counts is changed, the last one; a repeated group is one group. What follows a line that nobody can read
/// is not read by anybody, so that nothing is written behind such a line. Doing it twice changes nothing more.
[[nodiscard]] QByteArray withDefaultApplication(const QByteArray &mimeAppsList, const QByteArray &desktopFile,
                                                const QList<QByteArray> &mimeTypes);

} // namespace tallowmere
