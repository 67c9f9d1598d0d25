// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QAccessible>

class QWidget;

namespace tallowmere {

/// Has screen readers meet the viewer's own views as what they are: the picture as a graphic with the file's name, a
/// pill as a label, the tag circle by its label's name. Costs next to nothing while none runs. Once or more; main
/// thread.
void installAccessibleViews();

/// Tells the screen readers that something about @p view has changed; nothing while none runs. Main thread.
void announce(QWidget &view, QAccessible::Event change);

} // namespace tallowmere
