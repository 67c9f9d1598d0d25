// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArrayView>

namespace tallowmere {

/// Writes one line of UTF-8 bytes to standard output, whatever the locale. Control characters in
/// @p line become "?", so that no file name can break the line. A closed pipe is ignored (main() ignores SIGPIPE).
/// Any thread.
void printDiagnostic(QByteArrayView line);

/// The same to standard error, behind "tallowmere: ".
void printError(QByteArrayView line);

} // namespace tallowmere
