// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "viewer/Pill.h"

#include "viewer/AccessibleViews.h"
#include "viewer/Appearance.h"
#include "viewer/InterfaceFont.h"
#include "viewer/rules/PillLayout.h"

#include <QEvent>
#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace tallowmere {

namespace {

/// Colours of one appearance. The fill alone carries the text: at its alpha the text keeps a contrast of more than
/// 7 to 1 on white as on black. The hairline sets the pill off from a picture of the fill's own colour.
struct Look
{
    QColor fill;
    QColor hairline;
    QColor text;
};

Look lookOf(const QPalette &palette)
{
    if (isDark(palette))
        return {QColor(28, 28, 30, 204), QColor(255, 255, 255, 56), QColor(255, 255, 255, 235)};
    return {QColor(246, 246, 248, 214), QColor(0, 0, 0, 46), QColor(0, 0, 0, 217)};
}

} // namespace

Pill::Pill(Overflow overflow, double width, QWidget *parent)
    : QWidget(parent), m_overflow(overflow), m_textLeading(PillLayout::kTextPadding), m_pillWidth(width)
{
    setAttribute(Qt::WA_TransparentForMouseEvents); // a pan may begin on a pill
    setFont(interfaceFont(PillLayout::kFontSize, QFont::Medium));
}

void Pill::setText(const QString &text)
{
    if (text == m_text)
        return;
    m_text = text;
    announce(*this, QAccessible::NameChanged);
    update();
}

double Pill::textWidth() const
{
    return QFontMetricsF(font()).horizontalAdvance(m_text);
}

QString Pill::shownText() const
{
    const double room = m_pillWidth - m_textLeading - PillLayout::kTextPadding;
    // The pill is as wide as its text where it may be: what is left over then is an error of rounding.
    if (m_overflow == Overflow::clip || textWidth() <= room + 0.01)
        return m_text;
    return QFontMetricsF(font()).elidedText(m_text, Qt::ElideMiddle, room);
}

void Pill::setTextLeading(double leading)
{
    m_textLeading = leading;
    update();
}

double Pill::pillHeight() const
{
    constexpr double kAboveAndBelow = 6;
    return std::max(PillLayout::kHeight, std::ceil(QFontMetricsF(font()).height()) + kAboveAndBelow);
}

void Pill::placeAtLeft(QSize size)
{
    place({PillLayout::kMargin, size.height() - PillLayout::kMargin - pillHeight()});
}

void Pill::placeAtRight(QSize size)
{
    place({size.width() - PillLayout::kMargin - m_pillWidth, size.height() - PillLayout::kMargin - pillHeight()});
}

void Pill::place(QPointF topLeft)
{
    const QRect covered = QRectF(topLeft, QSizeF(m_pillWidth, pillHeight())).toAlignedRect();
    setGeometry(covered);
    m_origin = topLeft - covered.topLeft();
    update();
}

void Pill::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        update();
    else if (event->type() == QEvent::ApplicationFontChange)
        setFont(interfaceFont(PillLayout::kFontSize, QFont::Medium));
}

void Pill::paintEvent(QPaintEvent *)
{
    if (m_text.isEmpty())
        return;
    const Look look = lookOf(palette());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF body(m_origin, QSizeF(m_pillWidth, pillHeight()));
    painter.setPen(Qt::NoPen);
    painter.setBrush(look.fill);
    painter.drawRoundedRect(body, PillLayout::kCornerRadius, PillLayout::kCornerRadius);

    const double line = 1.0 / devicePixelRatioF();
    const QRectF inside = body.adjusted(line / 2, line / 2, -line / 2, -line / 2);
    painter.setPen(QPen(look.hairline, line));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(inside, PillLayout::kCornerRadius - line / 2, PillLayout::kCornerRadius - line / 2);

    painter.setPen(look.text);
    painter.setClipRect(body);
    const QRectF room = body.adjusted(m_textLeading, 0, 0, 0);
    painter.setLayoutDirection(Qt::LayoutDirectionAuto); // the text's own, not the window's
    painter.drawText(room, Qt::AlignLeft | Qt::AlignAbsolute | Qt::AlignVCenter | Qt::TextSingleLine, shownText());
}

} // namespace tallowmere
