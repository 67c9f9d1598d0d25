// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <optional>
#include <utility>

namespace tallowmere::test {

/// Sets one variable of the environment, or removes it, and puts the old value back at the end. Single-threaded.
class ScopedEnvironment final
{
public:
    ScopedEnvironment(QByteArray name, const std::optional<QByteArray> &value) : m_name(std::move(name))
    {
        if (qEnvironmentVariableIsSet(m_name.constData()))
            m_old = qgetenv(m_name.constData());
        set(value);
    }
    ~ScopedEnvironment() { set(m_old); }
    ScopedEnvironment(const ScopedEnvironment &) = delete;
    ScopedEnvironment &operator=(const ScopedEnvironment &) = delete;

private:
    void set(const std::optional<QByteArray> &value)
    {
        if (value)
            qputenv(m_name.constData(), *value);
        else
            qunsetenv(m_name.constData());
    }

    const QByteArray m_name;
    std::optional<QByteArray> m_old;
};

} // namespace tallowmere::test
