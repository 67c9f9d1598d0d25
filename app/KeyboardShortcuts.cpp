// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "app/KeyboardShortcuts.h"

#include "viewer/KeyTable.h"

#include <QAction>
#include <QCoreApplication>
#include <QKeySequence>
#include <QMenu>
#include <QMenuBar>

#include <algorithm>
#include <array>
#include <vector>

namespace tallowmere {

namespace {

struct Purpose
{
    KeyCommand command;
    const char *text;
};

/// In the order of the list. Purposes that the menu has, too, are called as there.
constexpr std::array kPurposes{
    Purpose{KeyCommand::earlierInList, QT_TRANSLATE_NOOP("KeyboardShortcuts", "Earlier File in the Folder")},
    Purpose{KeyCommand::laterInList, QT_TRANSLATE_NOOP("KeyboardShortcuts", "Later File in the Folder")},
    Purpose{KeyCommand::zoomIn, QT_TRANSLATE_NOOP("KeyboardShortcuts", "Zoom In")},
    Purpose{KeyCommand::zoomOut, QT_TRANSLATE_NOOP("KeyboardShortcuts", "Zoom Out")},
    Purpose{KeyCommand::resetZoom, QT_TRANSLATE_NOOP("KeyboardShortcuts", "Reset Zoom")},
    Purpose{KeyCommand::undoMoveToTrash, QT_TRANSLATE_NOOP("KeyboardShortcuts", "Undo Move to Trash")},
    Purpose{KeyCommand::hideApplication, QT_TRANSLATE_NOOP("KeyboardShortcuts", "Minimise All Windows")},
    Purpose{KeyCommand::revealInFileManager, QT_TRANSLATE_NOOP("KeyboardShortcuts", "Show in Finder")},
    Purpose{KeyCommand::moveToTrash, QT_TRANSLATE_NOOP("KeyboardShortcuts", "Move to Trash")},
    Purpose{KeyCommand::smallWindow, QT_TRANSLATE_NOOP("KeyboardShortcuts", "Small Window")},
    Purpose{KeyCommand::mediumWindow, QT_TRANSLATE_NOOP("KeyboardShortcuts", "Medium Window")},
    Purpose{KeyCommand::largeWindow, QT_TRANSLATE_NOOP("KeyboardShortcuts", "Large Window")},
    Purpose{KeyCommand::toggleFitToImage, QT_TRANSLATE_NOOP("KeyboardShortcuts", "Fit to Image")},
};

std::vector<int> keysWorthTrying()
{
    std::vector<int> keys{Qt::Key_Return, Qt::Key_Backspace, Qt::Key_Right, Qt::Key_Left};
    for (int character = Qt::Key_Exclam; character <= Qt::Key_AsciiTilde; ++character) {
        if (character < 'a' || character > 'z') // a key is called by its capital
            keys.push_back(character);
    }
    return keys;
}

QString label(const QKeySequence &sequence)
{
    return sequence.toString(QKeySequence::NativeText);
}

QStringList labels(KeyCommand command, Qt::KeyboardModifiers modifiers)
{
    QStringList found;
    for (const int key : keysWorthTrying()) {
        if (keyCommandFor({key, modifiers, 0}) == command)
            found << label(QKeySequence(QKeyCombination(modifiers, static_cast<Qt::Key>(key))));
    }
    return found;
}

/// A key that does without Ctrl does the same with it: not worth a second mention.
QStringList labels(KeyCommand command)
{
    const QStringList plain = labels(command, Qt::NoModifier);
    return plain.isEmpty() ? labels(command, Qt::ControlModifier) : plain;
}

KeyboardShortcutGroup groupOf(const QAction &menu)
{
    KeyboardShortcutGroup group{menu.text().remove(u'&'), {}};
    for (const QAction *item : menu.menu()->actions()) {
        QString purpose = item->text().remove(u'&');
        if (purpose.endsWith(QStringLiteral("...")))
            purpose.chop(3);
        if (!item->shortcut().isEmpty())
            group.shortcuts.append({purpose, {label(item->shortcut())}});
    }
    return group;
}

KeyboardShortcut *find(QList<KeyboardShortcutGroup> &groups, const QString &purpose)
{
    for (KeyboardShortcutGroup &group : groups) {
        for (KeyboardShortcut &shortcut : group.shortcuts) {
            if (shortcut.purpose == purpose)
                return &shortcut;
        }
    }
    return nullptr;
}

} // namespace

QList<KeyboardShortcutGroup> keyboardShortcuts(const QMenuBar &menuBar)
{
    QList<KeyboardShortcutGroup> groups;
    for (const QAction *menu : menuBar.actions())
        groups.append(groupOf(*menu));
    KeyboardShortcutGroup viewer{QCoreApplication::translate("KeyboardShortcuts", "Picture"), {}};
    for (const Purpose &purpose : kPurposes) {
        const QString text = QCoreApplication::translate("KeyboardShortcuts", purpose.text);
        if (KeyboardShortcut *known = find(groups, text)) {
            known->keys << labels(purpose.command);
            known->keys.removeDuplicates();
        } else if (const QStringList keys = labels(purpose.command); !keys.isEmpty()) {
            viewer.shortcuts.append({text, keys});
        }
    }
    groups.prepend(viewer);
    groups.removeIf([](const KeyboardShortcutGroup &group) { return group.shortcuts.isEmpty(); });
    return groups;
}

} // namespace tallowmere
