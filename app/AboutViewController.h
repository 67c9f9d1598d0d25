// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "app/BundleInformation.h"

#include <QWidget>

class QLabel;
class QPushButton;

namespace tallowmere {

class NonInteractiveImageView;

/// The content of the About window: icon, name, version, rights and a button to the maker's web site. Main thread.
class AboutViewController final : public QWidget
{
    Q_OBJECT

public:
    explicit AboutViewController(const BundleInformation &bundle, QWidget *parent = nullptr);

    /// Key presses go to it from now on.
    void makeFirstResponder();
    /// In the user's browser; nothing while the bundle names no address, and no word when it can't be opened.
    void openOltraWebsite();
    /// Escape and Ctrl-W close the window; any other key is left to the window.
    void keyDown(QKeyEvent *event);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void layOut();
    void applyTextLook();
    void fillTexts();

    const BundleInformation m_bundle;
    NonInteractiveImageView *const m_appIconImageView;
    QLabel *const m_appNameLabel;
    QLabel *const m_versionLabel;
    QLabel *const m_copyrightLabel;
    QPushButton *const m_oltraButton;
};

} // namespace tallowmere
