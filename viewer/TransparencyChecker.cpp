// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "viewer/TransparencyChecker.h"

#include <QPainter>
#include <QPaintEvent>

namespace tallowmere {

namespace {

/// Tiles drawn beforehand, to either side: long runs of ready pixels are copied faster than many short ones.
constexpr int kTilesASide = 16;

QColor grey(double white)
{
    const auto component = static_cast<float>(white);
    return QColor::fromRgbF(component, component, component);
}

} // namespace

TransparencyChecker::TransparencyChecker(QWidget *parent) : QWidget(parent)
{
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void TransparencyChecker::setPattern(const CheckerPattern &pattern)
{
    if (pattern == m_pattern)
        return;
    m_pattern = pattern;
    m_tiles = {};
    update();
}

void TransparencyChecker::makeTiles(double scale)
{
    constexpr double kSide = kTilesASide * CheckerPattern::tileSide;
    constexpr double kSquare = CheckerPattern::squareSide;
    m_tiles = QPixmap((QSizeF(kSide, kSide) * scale).toSize());
    m_tiles.setDevicePixelRatio(scale);
    m_tiles.fill(grey(m_pattern.baseGrey));
    QPainter painter(&m_tiles);
    const QColor square = grey(m_pattern.squareGrey);
    for (int row = 0; row < 2 * kTilesASide; ++row) {
        for (int column = row % 2; column < 2 * kTilesASide; column += 2)
            painter.fillRect(QRectF(column * kSquare, row * kSquare, kSquare, kSquare), square);
    }
}

void TransparencyChecker::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    for (const QRect &part : event->region())
        paintOn(painter, part);
}

void TransparencyChecker::paintOn(QPainter &painter, const QRectF &part)
{
    const double scale = devicePixelRatioF();
    if (m_tiles.isNull() || m_tiles.devicePixelRatio() != scale)
        makeTiles(scale);
    painter.drawTiledPixmap(part, m_tiles, part.topLeft());
}

} // namespace tallowmere
