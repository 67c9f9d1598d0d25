// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "platform/freedesktop/QtFolderPanel.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileDialog>
#include <QFileSystemModel>
#include <QLabel>
#include <QLayout>

#include <utility>

namespace tallowmere {

using namespace Qt::Literals::StringLiterals;

namespace {

void addMessage(QFileDialog &panel, const QString &text)
{
    auto *message = new QLabel(text, &panel);
    message->setTextFormat(Qt::PlainText);
    message->setWordWrap(true);
    QMargins margins = panel.layout()->contentsMargins();
    margins.setBottom(0);
    message->setContentsMargins(margins);
    // The place of a menu bar is the one above all that the dialog has laid out for itself.
    panel.layout()->setMenuBar(message);
}

/// Only folders can be picked, and there is nothing to choose among them.
void hideFileTypes(const QFileDialog &panel)
{
    for (const auto &name : {u"fileTypeLabel"_s, u"fileTypeCombo"_s}) {
        if (auto *part = panel.findChild<QWidget *>(name))
            part->hide();
    }
}

/// The folder shown first can't be watched, which the toolkit would complain of on standard error.
void doNotWatchFolders(const QFileDialog &panel)
{
    if (auto *folders = panel.findChild<QFileSystemModel *>())
        folders->setOption(QFileSystemModel::DontWatchForChanges);
}

FileURL pickedIn(const QFileDialog &panel)
{
    const QStringList picked = panel.selectedFiles();
    return picked.isEmpty() ? FileURL() : FileURL::fromPath(QFile::encodeName(picked.first()));
}

} // namespace

void QtFolderPanel::ask(const Question &question, std::function<void(const FileURL &folder)> done)
{
    // Made in a folder that everybody may watch: the working folder, the usual choice, may be the closed one.
    auto *panel = new QFileDialog(nullptr, QCoreApplication::translate("FolderPanel", "Folder Access"), u"/"_s);
    panel->setAttribute(Qt::WA_DeleteOnClose);
    panel->setOptions(QFileDialog::DontUseNativeDialog | QFileDialog::ShowDirsOnly);
    panel->setAcceptMode(QFileDialog::AcceptOpen);
    panel->setFileMode(QFileDialog::Directory);
    panel->setLabelText(QFileDialog::Accept, question.acceptTitle);
    doNotWatchFolders(*panel);
    hideFileTypes(*panel);
    panel->setDirectory(QFile::decodeName(question.startFolder.path()));
    addMessage(*panel, question.message);
    QObject::connect(panel, &QFileDialog::finished, panel, [panel, done = std::move(done)](int result) {
        done(result == QDialog::Accepted ? pickedIn(*panel) : FileURL());
    });
    panel->show();
    panel->raise();
    panel->activateWindow();
}

} // namespace tallowmere
