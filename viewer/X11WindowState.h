// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractNativeEventFilter>
#include <QDeadlineTimer>

#include <cstdint>
#include <functional>
#include <memory>

class QWidget;
struct xcb_connection_t;

namespace tallowmere {

/// What a window manager says of a window's maximised state in one direction alone.
///
/// Qt calls a window maximised when it is so in both directions. One that is tiled to half the screen or maximised
/// vertically is held in one of them (EWMH's _NET_WM_STATE). Main thread.
class X11WindowState final : public QAbstractNativeEventFilter
{
public:
    /// Null where windows are not X11's. @p window outlives it. @p geometryTold is called whenever the window manager
    /// has said which geometry the window has, before Qt learns of it.
    [[nodiscard]] static std::unique_ptr<X11WindowState> of(const QWidget &window, std::function<void()> geometryTold);
    ~X11WindowState() override;

    /// Asks the X server only when the state may have changed since. False when there is no answer. For a window that
    /// is on the screen or minimised.
    [[nodiscard]] bool isMaximisedInADirection();
    /// The window manager follows later; the question is answered by "no" meanwhile. What is asked of it from now on,
    /// it does afterwards.
    void endMaximised();

    bool nativeEventFilter(const QByteArray &eventType, void *message, qintptr *result) override;

private:
    X11WindowState(const QWidget &window, xcb_connection_t *connection, std::function<void()> geometryTold);
    void findAtoms();
    [[nodiscard]] bool readState();

    const QWidget &m_window;
    xcb_connection_t *const m_connection;
    const std::function<void()> m_geometryTold;
    std::uint32_t m_stateAtom = 0;
    std::uint32_t m_verticalAtom = 0;
    std::uint32_t m_horizontalAtom = 0;
    std::uint32_t m_readFrom = 0; ///< the native window that the state was read from; none: it is to be read
    bool m_isMaximised = false;
    QDeadlineTimer m_release{0}; ///< the window manager has this long to end the state
};

} // namespace tallowmere
