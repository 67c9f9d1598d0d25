// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "app/KeyboardShortcuts.h"

#include <QWidget>

namespace tallowmere {

/// Lists keys: what each does, and under which name the keyboard has it. Main thread.
class KeyboardShortcutsView final : public QWidget
{
    Q_OBJECT

public:
    explicit KeyboardShortcutsView(const QList<KeyboardShortcutGroup> &groups, QWidget *parent = nullptr);
};

} // namespace tallowmere
