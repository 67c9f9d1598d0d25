// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QApplication>
#include <QFont>

namespace tallowmere::test {

/// The application's font as if the user had changed its size, until this object goes.
class ApplicationFont final
{
public:
    ApplicationFont() = default;
    ~ApplicationFont() { QApplication::setFont(m_before); }
    ApplicationFont(const ApplicationFont &) = delete;
    ApplicationFont &operator=(const ApplicationFont &) = delete;

    void setPointSize(double points) const
    {
        QFont font = m_before;
        font.setPointSizeF(points);
        QApplication::setFont(font);
    }

private:
    const QFont m_before = QApplication::font();
};

} // namespace tallowmere::test
