// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QFont>
#include <QString>
#include <QWidget>

namespace tallowmere {

/// A line of plain text in a translucent capsule over the picture, legible on whatever lies below.
///
/// It lets the mouse and drags through to what it lies on. Without text it is painted only where it carries the tag
/// circle, and then no wider than that needs. Main thread; sizes in points, which need not be whole.
class Pill final : public QWidget
{
    Q_OBJECT

public:
    /// What the text is made of.
    enum class Content
    {
        facts, ///< joined by bullets; each runs in the direction of its own script. Clipped where there is no room.
        name   ///< truncated in the middle where there is no room
    };
    Pill(Content content, double width, QWidget *parent);

    void setText(const QString &text);
    [[nodiscard]] const QString &text() const { return m_text; }
    /// What there is room for.
    [[nodiscard]] QString shownText() const;
    /// Of the whole text.
    [[nodiscard]] double textWidth() const;
    /// Where the text begins, from the pill's left edge: behind the tag circle where the pill carries one.
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

Q_SIGNALS:
    /// The text has another width now, and the pill perhaps another height.
    void fontChanged();

protected:
    void paintEvent(QPaintEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void place(QPointF topLeft);
    [[nodiscard]] double paintedWidth() const;
    void paintCapsule(QPainter &painter, const QRectF &body) const;
    void paintText(QPainter &painter, const QRectF &body) const;

    const Content m_content;
    QFont m_font; ///< apart from the widget's own, which has to be left to itself to follow the user's
    QString m_text;
    double m_textLeading;
    double m_pillWidth;
    QPointF m_origin; ///< of the capsule in the widget, whose own place is in whole points
};

} // namespace tallowmere
