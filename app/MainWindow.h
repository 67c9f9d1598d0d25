// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QMainWindow>

namespace tallowmere {

/// The viewer's window: tells when the user closes it, when it becomes the active one and when a menu key may come.
class MainWindow final : public QMainWindow
{
    Q_OBJECT

public:
    MainWindow();

    /// The central widget gets @p size in points, whatever the menu bar needs above it.
    void resizeContent(QSize size);
    /// The central widget's drag handlers get what is dragged anywhere over the window, the menu bar included.
    void handDragsToContent();

Q_SIGNALS:
    void willClose();
    void didBecomeKey();
    /// Before a key is matched with the menu's: the last moment to bring enabling up to date.
    void menuKeyMayCome();

protected:
    void closeEvent(QCloseEvent *event) override;
    bool event(QEvent *event) override;
};

} // namespace tallowmere
