// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "app/ColourSchemePalette.h"

#include "viewer/Appearance.h"

#include <QApplication>

namespace tallowmere {

namespace {

struct Shades
{
    QRgb window;
    QRgb base;
    QRgb button;
    QRgb text;
    QRgb disabled;
};

constexpr Shades kDark{0xff2b2b2e, 0xff3a3a3e, 0xff38383b, 0xfff0f0f0, 0xff85858a};
constexpr Shades kLight{0xfff0f0f0, 0xffffffff, 0xfff0f0f0, 0xff1b1b1d, 0xff9a9a9e};

QPalette paletteOf(const Shades &shades)
{
    // The constructor works out the shadows and edges that belong to a button of this colour.
    QPalette palette{QColor(shades.button), QColor(shades.window)};
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText}) {
        palette.setColor(role, QColor(shades.text));
        palette.setColor(QPalette::Disabled, role, QColor(shades.disabled));
    }
    palette.setColor(QPalette::PlaceholderText, QColor(shades.disabled));
    palette.setColor(QPalette::Base, QColor(shades.base));
    palette.setColor(QPalette::AlternateBase, QColor(shades.window));
    palette.setColor(QPalette::ToolTipBase, QColor(shades.button));
    palette.setColor(QPalette::Highlight, QColor(0xff3584e4));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, isDark(palette) ? QColor(0xff78aeed) : QColor(0xff1b6acb));
    return palette;
}

} // namespace

void applyColourScheme(ColourScheme scheme)
{
    QApplication::setPalette({}); // the desktop's own again, and it may already do what is asked
    const bool dark = isDark(QApplication::palette());
    if (scheme == ColourScheme::dark && !dark)
        QApplication::setPalette(paletteOf(kDark));
    else if (scheme == ColourScheme::light && dark)
        QApplication::setPalette(paletteOf(kLight));
}

} // namespace tallowmere
