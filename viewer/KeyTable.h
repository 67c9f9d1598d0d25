// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <Qt>

namespace tallowmere {

/// What a key asks of the viewer.
enum class KeyCommand
{
    none, ///< not the viewer's: it goes on to the window
    hideApplication,
    revealInFileManager,
    moveToTrash,
    undoMoveToTrash,
    resetZoom,
    zoomIn,
    zoomOut,
    smallWindow,
    mediumWindow,
    largeWindow,
    toggleFitToImage,
    earlierInList,
    laterInList,
};

/// A key press, freed from its event.
struct KeyPress
{
    int key = 0; ///< Qt::Key
    Qt::KeyboardModifiers modifiers;
    quint32 nativeScanCode = 0; ///< as X11 and Wayland count (evdev + 8); 0 when unknown
};

/// The character the key stands for with every modifier but Shift left out, as on a Latin keyboard: in lower case
/// unless Shift is down. Empty for keys that stand for none.
[[nodiscard]] QString charactersIgnoringModifiers(const KeyPress &press);

/// The whole key table. Of the modifiers only Ctrl counts; Shift does so through the characters.
[[nodiscard]] KeyCommand keyCommandFor(const KeyPress &press);

/// Whether the key goes on having its effect while it is held down: steps and zooms do, other keys with Ctrl, the
/// menu's among them, don't.
[[nodiscard]] bool repeatsWhileHeld(const KeyPress &press);

} // namespace tallowmere
