// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "viewer/Alert.h"

#include <QLabel>
#include <QMessageBox>

namespace tallowmere {

namespace {

/// So that a sentence is not broken into a column of words.
constexpr int kLeastCharactersOnALine = 52;

} // namespace

void showAlert(QWidget *parent, const QString &message, const QString &informativeText)
{
    auto *alert = new QMessageBox(QMessageBox::Warning, message, message, QMessageBox::Ok, parent);
    alert->setInformativeText(informativeText);
    // A file's name may look like markup; the box sets the format of the first label only.
    const auto labels = alert->findChildren<QLabel *>();
    for (QLabel *label : labels)
        label->setTextFormat(Qt::PlainText);
    if (auto *icon = alert->findChild<QLabel *>(QStringLiteral("qt_msgboxex_icon_label")))
        icon->setAccessibleName(QObject::tr("Warning"));
    if (auto *heading = alert->findChild<QLabel *>(QStringLiteral("qt_msgbox_label"))) {
        QFont bold = heading->font();
        bold.setBold(true);
        heading->setFont(bold);
    }
    if (auto *reason = alert->findChild<QLabel *>(QStringLiteral("qt_msgbox_informativelabel")))
        reason->setMinimumWidth(kLeastCharactersOnALine * reason->fontMetrics().averageCharWidth());
    alert->setAttribute(Qt::WA_DeleteOnClose);
    alert->setWindowModality(Qt::ApplicationModal);
    alert->show();
}

} // namespace tallowmere
