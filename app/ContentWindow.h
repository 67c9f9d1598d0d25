// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

namespace tallowmere {

/// A window beside the viewer's, around one content that gives it its size: it can be closed, but not resized.
///
/// Main thread. Hidden when closed, and the same when it comes back.
class ContentWindow final : public QWidget
{
    Q_OBJECT

public:
    /// Takes @p content. @p size in points: the least it gets; large fonts and long texts make it larger.
    ContentWindow(const QString &title, QWidget *content, QSize size);

    /// Into the middle of the screen's usable area. Without effect where the desktop places windows itself.
    void centre();
    /// Shown, in front and with the keyboard, also when it was minimised.
    void makeKeyAndOrderFront();

protected:
    bool event(QEvent *event) override;

private:
    void fitToContent();

    const QSize m_smallest;
};

} // namespace tallowmere
