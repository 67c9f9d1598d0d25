// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
//
// The least that a program of this toolkit can do: a window in one colour, another after each key press. What the
// viewer needs beyond it is the viewer's own doing.

#include "benchmarks/PhotoStore.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QRasterWindow>
#include <QScreen>

namespace {

class FloorWindow final : public QRasterWindow
{
protected:
    void paintEvent(QPaintEvent *) override
    {
        // The unique marker stands for no picture of a series here.
        const auto &colour = tallowmere::bench::kMarkers.at(m_steps % tallowmere::bench::kUniqueMarker);
        QPainter(this).fillRect(QRect(QPoint(), size()), QColor(colour.red, colour.green, colour.blue));
    }

    void keyPressEvent(QKeyEvent *) override
    {
        ++m_steps;
        update();
    }

private:
    std::size_t m_steps = 0;
};

} // namespace

/// floor_window [WIDTH HEIGHT]: the size of the window, in the middle of the screen; 600 and 400 when not given.
int main(int count, char **arguments)
{
    QGuiApplication application(count, arguments);
    QSize size(600, 400);
    if (const auto words = QGuiApplication::arguments(); words.size() > 2)
        size = {words[1].toInt(), words[2].toInt()};
    FloorWindow window;
    QRect place(QPoint(), size);
    place.moveCenter(QGuiApplication::primaryScreen()->geometry().center());
    window.setGeometry(place);
    window.show();
    return QGuiApplication::exec();
}
