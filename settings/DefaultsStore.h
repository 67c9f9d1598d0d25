// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArrayView>
#include <QString>

namespace tallowmere {

/// A persistent store of named values, without knowledge of what they mean.
///
/// An absent key is told apart from a stored false. Threads: reads from any thread while the main thread writes.
class DefaultsStore
{
public:
    virtual ~DefaultsStore() = default;
    [[nodiscard]] virtual bool contains(QByteArrayView key) const = 0;
    /// false when absent or not a boolean (true/false, YES/NO, 1/0; case ignored).
    [[nodiscard]] virtual bool boolForKey(QByteArrayView key) const = 0;
    /// A null string when absent.
    [[nodiscard]] virtual QString stringForKey(QByteArrayView key) const = 0;
    /// Main thread. A store that can't be written keeps the value for this run.
    virtual void setBool(QByteArrayView key, bool value) = 0;
    virtual void setString(QByteArrayView key, const QString &value) = 0;
};

} // namespace tallowmere
