// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "app/FirstScreen.h"

#include <QByteArray>
#include <QGuiApplication>
#include <QScreen>

#include <xcb/xcb.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <optional>

namespace tallowmere {

namespace {

/// Whether Qt is going to take the X server: under Wayland there may be one, too, which knows nothing of scales.
bool isForX11()
{
    const QByteArray platform = qgetenv("QT_QPA_PLATFORM");
    return platform.isEmpty() ? qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") : platform.startsWith("xcb");
}

std::optional<PixelSize> x11Screen()
{
    int number = 0;
    const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> connection(xcb_connect(nullptr, &number),
                                                                                  xcb_disconnect);
    if (xcb_connection_has_error(connection.get()) != 0)
        return std::nullopt;
    for (auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection.get())); screens.rem > 0;
         xcb_screen_next(&screens), --number) {
        if (number == 0)
            return PixelSize{screens.data->width_in_pixels, screens.data->height_in_pixels};
    }
    return std::nullopt;
}

} // namespace

PixelSize FirstScreen::mostFor(PixelSize full) const
{
    std::optional<PixelSize> screen;
    if (isForX11())
        screen = x11Screen();
    if (!screen)
        screen = m_toolkits.get();
    if (screen->empty() || full.empty())
        return {};
    const double factor = std::min({double{1}, static_cast<double>(screen->width) / full.width,
                                    static_cast<double>(screen->height) / full.height});
    return {static_cast<std::uint32_t>(std::ceil(full.width * factor)),
            static_cast<std::uint32_t>(std::ceil(full.height * factor))};
}

void FirstScreen::toolkitIsThere()
{
    const QScreen *screen = QGuiApplication::primaryScreen();
    const QSize size = screen ? (QSizeF(screen->size()) * screen->devicePixelRatio()).toSize() : QSize();
    m_promise.set_value({static_cast<std::uint32_t>(std::max(size.width(), 0)),
                         static_cast<std::uint32_t>(std::max(size.height(), 0))});
}

} // namespace tallowmere
