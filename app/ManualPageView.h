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
    /// @p manFolder is looked into before the system's own.
    explicit ManualPageView(const QString &manFolder = besideTheProgram(), QWidget *parent = nullptr);
    ~ManualPageView() override;

private:
    /// Where an installed program has its page, whatever its prefix.
    [[nodiscard]] static QString besideTheProgram();
    void startMan(const QString &manFolder);
    void showPage();
    void showThatThereIsNone();

    QProcess *const m_man;
};

} // namespace tallowmere
