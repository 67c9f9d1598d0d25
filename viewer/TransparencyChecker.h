// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "viewer/rules/CheckerPattern.h"

#include <QPixmap>
#include <QWidget>

namespace tallowmere {

/// The checkerboard that shows through transparent images. It reacts to nothing.
class TransparencyChecker final : public QWidget
{
    Q_OBJECT

public:
    explicit TransparencyChecker(QWidget *parent);

    void setPattern(const CheckerPattern &pattern);
    [[nodiscard]] const CheckerPattern &pattern() const { return m_pattern; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void makeTiles(double scale);

    CheckerPattern m_pattern;
    QPixmap m_tiles; ///< null: to be made anew
};

} // namespace tallowmere
