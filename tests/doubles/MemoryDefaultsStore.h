// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "settings/DefaultsStore.h"
#include "settings/IniDefaultsStore.h"

#include <QByteArray>
#include <QHash>

#include <mutex>

namespace tallowmere::test {

/// Stored text by key, for this process only. What it reads as is what the real store makes of the same text.
class MemoryDefaultsStore final : public DefaultsStore
{
public:
    [[nodiscard]] bool contains(QByteArrayView key) const override
    {
        const std::lock_guard lock(m_mutex);
        ++m_reads;
        return m_values.contains(key.toByteArray());
    }
    [[nodiscard]] bool boolForKey(QByteArrayView key) const override { return readsTrue(stringForKey(key)); }
    [[nodiscard]] QString stringForKey(QByteArrayView key) const override
    {
        const std::lock_guard lock(m_mutex);
        ++m_reads;
        return m_values.value(key.toByteArray());
    }
    void setBool(QByteArrayView key, bool value) override
    {
        setString(key, QString::fromLatin1(value ? "true" : "false"));
    }
    void setString(QByteArrayView key, const QString &value) override
    {
        const std::lock_guard lock(m_mutex);
        m_values.insert(key.toByteArray(), value);
    }

    [[nodiscard]] QList<QByteArray> keys() const
    {
        const std::lock_guard lock(m_mutex);
        return m_values.keys();
    }
    [[nodiscard]] int reads() const
    {
        const std::lock_guard lock(m_mutex);
        return m_reads;
    }

private:
    mutable std::mutex m_mutex;
    QHash<QByteArray, QString> m_values;
    mutable int m_reads = 0;
};

} // namespace tallowmere::test
