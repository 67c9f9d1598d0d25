// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

class QMenuBar;

namespace tallowmere {

/// What one or more keys do.
struct KeyboardShortcut
{
    QString purpose;
    QStringList keys; ///< as the user's keyboard labels them
};

struct KeyboardShortcutGroup
{
    QString title;
    QList<KeyboardShortcut> shortcuts;
};

/// Every key the program knows: those of the menu, group by menu, and the viewer's own. Read from the menu's items and
/// from the viewer's key table themselves, so that the list can't say anything else than what happens.
[[nodiscard]] QList<KeyboardShortcutGroup> keyboardShortcuts(const QMenuBar &menuBar);

} // namespace tallowmere
