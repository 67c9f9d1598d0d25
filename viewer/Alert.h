// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

class QWidget;

namespace tallowmere {

/// Tells of a failure: a warning with one "OK" button that keeps the whole program waiting for the user, but not its
/// event loop. Returns at once; the alert deletes itself when it is closed. Both texts are plain. @p parent may be
/// null. Main thread.
void showAlert(QWidget *parent, const QString &message, const QString &informativeText);

} // namespace tallowmere
