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

using namespace Qt::Literals::StringLiterals;

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

/// With marks around each fact that have no width of their own: behind a date in Arabic, 600×400 would otherwise read
/// 400×600.
QString isolated(QString facts)
{
    constexpr QChar kFirstStrongIsolate(0x2068);
    constexpr QChar kPopDirectionalIsolate(0x2069);
    facts.replace(u" \u2022 "_s, kPopDirectionalIsolate + u" \u2022 "_s + kFirstStrongIsolate);
    return kFirstStrongIsolate + facts + kPopDirectionalIsolate;
}

QFont textFont()
{
    return interfaceFont(PillLayout::kFontSize, QFont::Medium);
}

} // namespace

Pill::Pill(Content content, double width, QWidget *parent)
    : QWidget(parent), m_content(content), m_font(textFont()), m_textLeading(PillLayout::kTextPadding),
      m_pillWidth(width)
{
    setAttribute(Qt::WA_TransparentForMouseEvents); // a pan may begin on a pill
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
    return QFontMetricsF(m_font).horizontalAdvance(m_text);
}

QString Pill::shownText() const
{
    const double room = m_pillWidth - m_textLeading - PillLayout::kTextPadding;
    // The pill is as wide as its text where it may be: what is left over then is an error of rounding.
    if (m_content == Content::facts || textWidth() <= room + 0.01)
        return m_text;
    return QFontMetricsF(m_font).elidedText(m_text, Qt::ElideMiddle, room);
}

void Pill::setTextLeading(double leading)
{
    m_textLeading = leading;
    update();
}

double Pill::pillHeight() const
{
    constexpr double kAboveAndBelow = 6;
    return std::max(PillLayout::kHeight, std::ceil(QFontMetricsF(m_font).height()) + kAboveAndBelow);
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
    if (event->type() == QEvent::PaletteChange) {
        update();
    } else if (event->type() == QEvent::FontChange) {
        m_font = textFont();
        update();
        Q_EMIT fontChanged();
    }
}

double Pill::paintedWidth() const
{
    if (!m_text.isEmpty())
        return m_pillWidth;
    const bool carriesCircle = m_textLeading > PillLayout::kTextPadding;
    return carriesCircle ? PillLayout::kWidthOfTagAlone : 0;
}

void Pill::paintEvent(QPaintEvent *)
{
    const QRectF body(m_origin, QSizeF(paintedWidth(), pillHeight()));
    if (body.isEmpty())
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    paintCapsule(painter, body);
    paintText(painter, body);
}

void Pill::paintCapsule(QPainter &painter, const QRectF &body) const
{
    const Look look = lookOf(palette());
    painter.setPen(Qt::NoPen);
    painter.setBrush(look.fill);
    painter.drawRoundedRect(body, PillLayout::kCornerRadius, PillLayout::kCornerRadius);

    const double line = 1.0 / devicePixelRatioF();
    const QRectF inside = body.adjusted(line / 2, line / 2, -line / 2, -line / 2);
    painter.setPen(QPen(look.hairline, line));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(inside, PillLayout::kCornerRadius - line / 2, PillLayout::kCornerRadius - line / 2);
}

void Pill::paintText(QPainter &painter, const QRectF &body) const
{
    painter.setPen(lookOf(palette()).text);
    painter.setFont(m_font);
    painter.setClipRect(body);
    const QRectF room = body.adjusted(m_textLeading, 0, 0, 0);
    constexpr auto kHow = static_cast<int>(Qt::AlignLeft | Qt::AlignAbsolute | Qt::AlignVCenter) | Qt::TextSingleLine;
    const bool facts = m_content == Content::facts;
    // Facts keep their order; a name runs in its own direction. Neither follows the window's.
    painter.setLayoutDirection(facts ? Qt::LeftToRight : Qt::LayoutDirectionAuto);
    painter.drawText(room, kHow, facts ? isolated(m_text) : shownText());
}

} // namespace tallowmere
