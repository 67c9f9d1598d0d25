// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "viewer/OpenPanel.h"

#include "settings/SettingsManager.h"

#include <QCoreApplication>
#include <QFileDialog>
#include <QStandardPaths>

namespace tallowmere {

QString openPanelNameFilter(const SettingsManager &settings)
{
    QStringList patterns;
    // Native dialogs match patterns letter for letter, and cameras write names in capitals.
    const auto add = [&patterns](const QString &extension) {
        patterns << QStringLiteral("*.") + extension << QStringLiteral("*.") + extension.toUpper();
    };
    add(QStringLiteral("jpg"));
    add(QStringLiteral("jpeg"));
    if (settings.pngSupportEnabled())
        add(QStringLiteral("png"));
    if (settings.webpSupportEnabled())
        add(QStringLiteral("webp"));
    if (settings.avifSupportEnabled())
        add(QStringLiteral("avif"));
    if (settings.heicSupportEnabled())
        add(QStringLiteral("heic"));
    return QCoreApplication::translate("OpenPanel", "Images") + QStringLiteral(" (") + patterns.join(QLatin1Char(' ')) +
           QLatin1Char(')');
}

QFileDialog *makeOpenPanel(QWidget *parent, const SettingsManager &settings, const FileURL &folder)
{
    auto *panel = new QFileDialog(parent, QCoreApplication::translate("OpenPanel", "Open"));
    panel->setAttribute(Qt::WA_DeleteOnClose);
    panel->setModal(false);
    panel->setAcceptMode(QFileDialog::AcceptOpen);
    panel->setFileMode(QFileDialog::ExistingFile);
    panel->setOption(QFileDialog::HideNameFilterDetails);
    panel->setNameFilter(openPanelNameFilter(settings));
    panel->setDirectory(folder.empty() ? QStandardPaths::writableLocation(QStandardPaths::PicturesLocation)
                                       : QFile::decodeName(folder.path()));
    return panel;
}

} // namespace tallowmere
