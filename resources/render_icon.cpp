// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
//
// render_icon SVG SIDE PNG
//
// Draws an icon at a size in pixels, for desktops that want pictures of fixed sizes. Runs while building.

#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

#include <cstdio>

int main(int count, char **arguments)
{
    if (count != 4) {
        std::fputs("usage: render_icon SVG SIDE PNG\n", stderr);
        return 2;
    }
    QSvgRenderer icon(QString::fromLocal8Bit(arguments[1]));
    const int side = QByteArray(arguments[2]).toInt();
    QImage picture(side, side, QImage::Format_ARGB32_Premultiplied);
    if (!icon.isValid() || picture.isNull()) {
        std::fprintf(stderr, "render_icon: cannot draw %s at %s pixels\n", arguments[1], arguments[2]);
        return 1;
    }
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    icon.render(&painter);
    painter.end();
    if (!picture.save(QString::fromLocal8Bit(arguments[3]), "PNG")) {
        std::fprintf(stderr, "render_icon: cannot write %s\n", arguments[3]);
        return 1;
    }
    return 0;
}
