// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include <functional>

namespace tallowmere {

/// Watches the application's palette for as long as it lives. No call at the beginning. Main thread.
class AppearanceObservation final : public QObject
{
public:
    explicit AppearanceObservation(std::function<void()> changed);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    const std::function<void()> m_changed;
};

} // namespace tallowmere
