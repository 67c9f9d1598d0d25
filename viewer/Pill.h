// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QWidget>

namespace tallowmere {

/// A line of plain text in a translucent capsule over the picture, legible on whatever lies below.
///
/// It lets the mouse and drags through to what it lies on. Without text nothing is painted. Main thread; sizes in
/// points, which need not be whole.
class Pill final : public QWidget
{
    Q_OBJECT

public:
    /// What becomes of text that is too long.
    enum class Overflow
    {
        clip,
        elideMiddle
    };
    Pill(Overflow overflow, double width, QWidget *parent);

    void setText(const QString &text);
    [[nodiscard]] const QString &text() const { return m_text; }
    /// What there is room for.
    [[nodiscard]] QString shownText() const;
    /// Of the whole text in the pill's font.
    [[nodiscard]] double textWidth() const;
    /// Where the text begins, from the pill's left edge.
    void setTextLeading(double leading);
    [[nodiscard]] double textLeading() const { return m_textLeading; }

    /// Takes effect with the next placement.
    void setPillWidth(double width) { m_pillWidth = width; }
    [[nodiscard]] double pillWidth() const { return m_pillWidth; }
    /// More than usual only where the user's font is so large that it needs the room.
    [[nodiscard]] double pillHeight() const;
    /// Into the lower left or the lower right corner of a parent of @p size.
    void placeAtLeft(QSize size);
    void placeAtRight(QSize size);

protected:
    void paintEvent(QPaintEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void place(QPointF topLeft);

    const Overflow m_overflow;
    QString m_text;
    double m_textLeading;
    double m_pillWidth;
    QPointF m_origin; ///< of the capsule in the widget, whose own place is in whole points
};

} // namespace tallowmere
