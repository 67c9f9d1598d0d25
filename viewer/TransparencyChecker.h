// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "viewer/rules/CheckerPattern.h"

#include <QPixmap>
#include <QWidget>

class QPainter;

namespace tallowmere {

/// The checkerboard that shows through transparent images. It reacts to nothing.
class TransparencyChecker final : public QWidget
{
    Q_OBJECT

public:
    explicit TransparencyChecker(QWidget *parent);

    void setPattern(const CheckerPattern &pattern);
    [[nodiscard]] const CheckerPattern &pattern() const { return m_pattern; }

    /// Paints what lies in @p part, in points of this view, onto another one in the same place.
    void paintOn(QPainter &painter, const QRectF &part);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void makeTiles(double scale);

    CheckerPattern m_pattern;
    QPixmap m_tiles; ///< null: to be made anew
};

} // namespace tallowmere
