// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QPlainTextEdit>

class QProcess;

namespace tallowmere {

/// The program's manual page, set by the system's own "man" in the background. Main thread.
///
/// In a window of our own since no desktop can be relied on to open "man:" addresses: where nothing handles them, the
/// opener starts a web browser with them, which shows an error.
class ManualPageView final : public QPlainTextEdit
{
    Q_OBJECT

public:
    explicit ManualPageView(QWidget *parent = nullptr);
    ~ManualPageView() override;

private:
    void startMan();
    void showPage();
    void showThatThereIsNone();

    QProcess *const m_man;
};

} // namespace tallowmere
