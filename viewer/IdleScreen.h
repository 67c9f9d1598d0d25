// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

class QLabel;

namespace tallowmere {

class NonInteractiveImageView;

/// What an empty viewer shows: the logo above a line that says how to begin.
class IdleScreen final : public QWidget
{
    Q_OBJECT

public:
    explicit IdleScreen(QWidget *parent = nullptr);

    [[nodiscard]] NonInteractiveImageView *logoImageView() const { return m_logoImageView; }
    [[nodiscard]] QLabel *instructionLabel() const { return m_instructionLabel; }

protected:
    void showEvent(QShowEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void layOut();
    void applyTextLook();

    NonInteractiveImageView *const m_logoImageView;
    QLabel *const m_instructionLabel;
    bool m_logoLoaded = false;
};

} // namespace tallowmere
