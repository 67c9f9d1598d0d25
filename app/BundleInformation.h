// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QVariant>

#include <optional>

namespace tallowmere {

/// What the program knows of itself: names, version, rights. Immutable; any thread.
class BundleInformation final
{
public:
    /// From a JSON object; empty when @p json is none.
    explicit BundleInformation(const QByteArray &json);

    /// That of the running program, compiled in.
    [[nodiscard]] static const BundleInformation &main();

    /// Nothing when the entry is missing or no string.
    [[nodiscard]] std::optional<QString> string(const QString &key) const;

private:
    QHash<QString, QVariant> m_entries;
};

} // namespace tallowmere
