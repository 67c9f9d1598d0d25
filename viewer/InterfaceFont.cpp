// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "viewer/InterfaceFont.h"

#include <QApplication>
#include <QFontInfo>

#include <algorithm>
#include <cmath>

namespace tallowmere {

QFont interfaceFont(double points, QFont::Weight weight)
{
    constexpr double kUsualPixelSize = 10.0 * 96.0 / 72.0;
    QFont font = QApplication::font();
    const double ratio = std::max(QFontInfo(font).pixelSize() / kUsualPixelSize, 1.0);
    font.setPixelSize(static_cast<int>(std::lround(points * ratio)));
    font.setWeight(weight);
    return font;
}

} // namespace tallowmere
