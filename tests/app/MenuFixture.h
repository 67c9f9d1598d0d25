// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "tests/app/ApplicationFixture.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <QTest>

namespace tallowmere::test {

using namespace Qt::Literals::StringLiterals;

/// The application with its menu bar, and what tests ask of it.
class MenuFixture : public ApplicationFixture
{
protected:
    QMenu *menuTitled(const QString &title) const
    {
        for (const QAction *action : window()->menuBar()->actions()) {
            if (action->text().remove(u'&') == title)
                return action->menu();
        }
        return nullptr;
    }
    /// The submenu's items are indented; a separator is a dash.
    static void list(const QMenu *menu, const QString &indent, QStringList &lines)
    {
        for (const QAction *action : menu->actions()) {
            if (action->isSeparator()) {
                lines << indent + u"-"_s;
                continue;
            }
            const QString key = action->shortcut().toString(QKeySequence::PortableText);
            lines << indent + action->text() + (key.isEmpty() ? QString() : u" | "_s + key);
            if (action->menu())
                list(action->menu(), indent + u"  "_s, lines);
        }
    }
    QStringList contents(const QString &title) const
    {
        QStringList lines;
        if (const QMenu *menu = menuTitled(title))
            list(menu, {}, lines);
        return lines;
    }
    void press(int key, Qt::KeyboardModifiers modifiers = Qt::ControlModifier)
    {
        QTest::keyClick(window()->windowHandle(), static_cast<Qt::Key>(key), modifiers);
        settle();
    }
    /// What happens to a menu just before it is seen.
    void openMenu(const QString &title) { Q_EMIT menuTitled(title)->aboutToShow(); }
    std::vector<bool> sizeMarks() const
    {
        return {menu()->resizeSmallMenuItem->isChecked(), menu()->resizeMediumMenuItem->isChecked(),
                menu()->resizeLargeMenuItem->isChecked(), menu()->resizeToImageMenuItem->isChecked()};
    }
    std::vector<bool> nameMarks() const
    {
        return {menu()->fileNameInTitleMenuItem->isChecked(), menu()->fileNameInCornerMenuItem->isChecked(),
                menu()->fileNameOffMenuItem->isChecked()};
    }
    QColor systemBackground() const { return delegate->viewController()->windowBackgroundColor(); }
};

} // namespace tallowmere::test
