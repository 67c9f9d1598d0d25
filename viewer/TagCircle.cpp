// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "viewer/TagCircle.h"

#include "viewer/AccessibleViews.h"
#include "viewer/rules/PillLayout.h"

#include <QPainter>

#include <utility>

namespace tallowmere {

TagCircle::TagCircle(QWidget *parent) : QWidget(parent)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void TagCircle::setColor(const QColor &color)
{
    m_color = color;
    update();
}

void TagCircle::setLabelName(const QString &name)
{
    if (std::exchange(m_labelName, name) != name)
        announce(*this, QAccessible::NameChanged);
}

void TagCircle::paintEvent(QPaintEvent *)
{
    constexpr double kInset = PillLayout::kTagBorderWidth / 2;
    QColor border(Qt::white);
    border.setAlphaF(static_cast<float>(PillLayout::kTagBorderAlpha));
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(border, PillLayout::kTagBorderWidth));
    painter.setBrush(m_color);
    painter.drawEllipse(QRectF(rect()).adjusted(kInset, kInset, -kInset, -kInset));
}

} // namespace tallowmere
