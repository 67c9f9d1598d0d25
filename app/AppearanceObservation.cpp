// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "app/AppearanceObservation.h"

#include <QCoreApplication>
#include <QEvent>

namespace tallowmere {

AppearanceObservation::AppearanceObservation(std::function<void()> changed) : m_changed(std::move(changed))
{
    QCoreApplication::instance()->installEventFilter(this);
}

bool AppearanceObservation::eventFilter(QObject *watched, QEvent *event)
{
    // A filter on the application sees every object's events; the application's own copy comes once per change.
    if (event->type() == QEvent::ApplicationPaletteChange && watched == QCoreApplication::instance())
        m_changed();
    return false;
}

} // namespace tallowmere
