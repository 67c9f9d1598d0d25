// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "app/KeyboardShortcutsView.h"

#include "viewer/InterfaceFont.h"

#include <QGridLayout>
#include <QLabel>

namespace tallowmere {

namespace {

// All in points.
constexpr double kFont = 13;
constexpr int kMargin = 20;
constexpr int kBetweenRows = 4;
constexpr int kBetweenGroups = 12;
constexpr int kBetweenColumns = 32;

QLabel *textLabel(const QString &text, QFont::Weight weight = QFont::Normal)
{
    auto *label = new QLabel;
    label->setTextFormat(Qt::PlainText);
    label->setText(text);
    label->setFont(interfaceFont(kFont, weight));
    return label;
}

} // namespace

KeyboardShortcutsView::KeyboardShortcutsView(const QList<KeyboardShortcutGroup> &groups, QWidget *parent)
    : QWidget(parent)
{
    setAccessibleName(tr("Keyboard Shortcuts"));
    auto *grid = new QGridLayout(this);
    grid->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    grid->setVerticalSpacing(kBetweenRows);
    grid->setHorizontalSpacing(kBetweenColumns);
    grid->setColumnStretch(0, 1);
    // Said to the layout: a label by itself keeps an English text on the left, also in a window laid out the other way.
    constexpr Qt::Alignment kLeading = Qt::AlignLeading | Qt::AlignVCenter;
    int row = 0;
    for (const KeyboardShortcutGroup &group : groups) {
        if (row > 0)
            grid->setRowMinimumHeight(row++, kBetweenGroups);
        grid->addWidget(textLabel(group.title, QFont::DemiBold), row++, 0, 1, 2, kLeading);
        for (const KeyboardShortcut &shortcut : group.shortcuts) {
            grid->addWidget(textLabel(shortcut.purpose), row, 0, kLeading);
            grid->addWidget(textLabel(shortcut.keys.join(tr(" or "))), row++, 1, kLeading);
        }
    }
}

} // namespace tallowmere
