// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "viewer/KeyTable.h"

#include <array>
#include <utility>

namespace tallowmere {

namespace {

constexpr quint32 kEvdevOffset = 8;

/// The keys of the table that stand for a character, by their place on the keyboard: what is left to go by when
/// no layout of the keymap has Latin letters.
constexpr std::array<std::pair<quint32, char>, 9> kLatinByScanCode{{
    {kEvdevOffset + 2, '1'},
    {kEvdevOffset + 3, '2'},
    {kEvdevOffset + 4, '3'},
    {kEvdevOffset + 5, '4'},
    {kEvdevOffset + 11, '0'},
    {kEvdevOffset + 12, '-'},
    {kEvdevOffset + 13, '='},
    {kEvdevOffset + 35, 'h'},
    {kEvdevOffset + 44, 'z'},
}};

constexpr bool isLatinCharacter(int key)
{
    return key > Qt::Key_Space && key <= 0xff;
}

int latinKey(const KeyPress &press)
{
    if (isLatinCharacter(press.key) || press.key >= Qt::Key_Escape)
        return press.key;
    for (const auto &[scanCode, character] : kLatinByScanCode) {
        if (press.nativeScanCode == scanCode)
            return QChar::toUpper(static_cast<char32_t>(character));
    }
    return press.key;
}

KeyCommand commandForCharacter(QChar character, bool keypad)
{
    switch (character.unicode()) {
    case 'h':
        return KeyCommand::hideApplication;
    case 'z':
        return KeyCommand::undoMoveToTrash;
    case '0':
        return KeyCommand::resetZoom;
    case '=':
    case '+':
        return keypad ? KeyCommand::none : KeyCommand::zoomIn;
    case '-':
        return keypad ? KeyCommand::none : KeyCommand::zoomOut;
    case '1':
        return KeyCommand::smallWindow;
    case '2':
        return KeyCommand::mediumWindow;
    case '3':
        return KeyCommand::largeWindow;
    case '4':
        return KeyCommand::toggleFitToImage;
    default:
        return KeyCommand::none;
    }
}

KeyCommand controlCommandFor(const KeyPress &press)
{
    if (press.key == Qt::Key_Return)
        return KeyCommand::revealInFileManager;
    if (press.key == Qt::Key_Backspace)
        return KeyCommand::moveToTrash;
    const QString characters = charactersIgnoringModifiers(press);
    if (characters.isEmpty())
        return KeyCommand::none;
    return commandForCharacter(characters.front(), press.modifiers.testFlag(Qt::KeypadModifier));
}

} // namespace

QString charactersIgnoringModifiers(const KeyPress &press)
{
    const int key = latinKey(press);
    if (!isLatinCharacter(key))
        return {};
    const bool shift = press.modifiers.testFlag(Qt::ShiftModifier);
    // Some platforms name the key rather than what Shift makes of it.
    if (shift && key == Qt::Key_Equal)
        return QStringLiteral("+");
    const QChar character(static_cast<char16_t>(key));
    return shift ? character.toUpper() : character.toLower();
}

KeyCommand keyCommandFor(const KeyPress &press)
{
    if (press.modifiers.testFlag(Qt::ControlModifier)) {
        const KeyCommand command = controlCommandFor(press);
        if (command != KeyCommand::none)
            return command;
    }
    if (press.key == Qt::Key_Right)
        return KeyCommand::earlierInList;
    if (press.key == Qt::Key_Left)
        return KeyCommand::laterInList;
    return KeyCommand::none;
}

bool repeatsWhileHeld(const KeyPress &press)
{
    if (!press.modifiers.testFlag(Qt::ControlModifier))
        return true;
    switch (keyCommandFor(press)) {
    case KeyCommand::zoomIn:
    case KeyCommand::zoomOut:
    case KeyCommand::earlierInList:
    case KeyCommand::laterInList:
        return true;
    default:
        return false;
    }
}

} // namespace tallowmere
