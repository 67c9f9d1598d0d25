// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "app/BundleInformation.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

namespace tallowmere {

namespace {

QByteArray compiledIn()
{
    QFile file(QStringLiteral(":/bundle-information.json"));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

BundleInformation::BundleInformation(const QByteArray &json)
    : m_entries(QJsonDocument::fromJson(json).object().toVariantHash())
{}

const BundleInformation &BundleInformation::main()
{
    static const BundleInformation information(compiledIn());
    return information;
}

std::optional<QString> BundleInformation::string(const QString &key) const
{
    const QVariant entry = m_entries.value(key);
    if (entry.typeId() != QMetaType::QString)
        return std::nullopt;
    return entry.toString();
}

} // namespace tallowmere
