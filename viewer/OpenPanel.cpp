// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "viewer/OpenPanel.h"

#include "settings/SettingsManager.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QStandardPaths>

namespace tallowmere {

namespace {

/// "[jJ][pP][gG]": GTK's dialog and the portal's match letter for letter, and cameras write names in capitals. The
/// plain extension goes beside it, for a toolkit that turns letters into such sets by itself.
QString inAnyCase(const QString &extension)
{
    QString pattern;
    for (const QChar letter : extension)
        pattern += QLatin1Char('[') + letter + letter.toUpper() + QLatin1Char(']');
    return pattern;
}

} // namespace

QString openPanelNameFilter(const SettingsManager &settings)
{
    QStringList patterns;
    const auto add = [&patterns](const QString &extension) {
        patterns << QStringLiteral("*.") + extension << QStringLiteral("*.") + inAnyCase(extension);
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

QFileDialog *makeOpenPanel(QWidget *parent, const FileURL &folder)
{
    auto *panel = new QFileDialog(parent, QCoreApplication::translate("OpenPanel", "Open"));
    panel->setAttribute(Qt::WA_DeleteOnClose);
    panel->setModal(false);
    panel->setAcceptMode(QFileDialog::AcceptOpen);
    panel->setFileMode(QFileDialog::ExistingFile);
    panel->setOption(QFileDialog::HideNameFilterDetails);
    // A program that the bus has started runs in no folder of the user's.
    const QString pictures = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
    const QString first = QFileInfo(pictures).isDir() ? pictures : QDir::homePath();
    panel->setDirectory(folder.empty() ? first : QFile::decodeName(folder.path()));
    return panel;
}

} // namespace tallowmere
