// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "viewer/NonInteractiveImageView.h"

#include <QImageReader>
#include <QPainter>

namespace tallowmere {

NonInteractiveImageView::NonInteractiveImageView(QWidget *parent) : QWidget(parent)
{
    setFocusPolicy(Qt::NoFocus);
}

void NonInteractiveImageView::setImage(const QString &resource)
{
    m_resource = resource;
    m_naturalSize = QImageReader(resource).size();
    m_rendered = {};
    update();
}

void NonInteractiveImageView::paintEvent(QPaintEvent *)
{
    if (isEmpty())
        return;
    const double scale = devicePixelRatioF();
    const QSize device = m_naturalSize.scaled((QSizeF(size()) * scale).toSize(), Qt::KeepAspectRatio);
    if (device.isEmpty())
        return;
    if (m_rendered.size() != device) {
        // Drawn anew for each size: a vector image stays sharp.
        QImageReader reader(m_resource);
        reader.setScaledSize(device);
        m_rendered = QPixmap::fromImage(reader.read());
    }
    const QSizeF points = QSizeF(device) / scale;
    QPainter(this).drawPixmap(QRectF({(width() - points.width()) / 2, (height() - points.height()) / 2}, points),
                              m_rendered, QRectF(m_rendered.rect()));
}

} // namespace tallowmere
