// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "support/FileURL.h"

namespace tallowmere {

/// Permission that a sandbox grants for one file or folder, asked for around each read. Any thread.
class SecurityScope
{
public:
    virtual ~SecurityScope() = default;
    /// False: access was not started, so it must not be stopped. That is no error; the read is tried anyway.
    [[nodiscard]] virtual bool startAccessing(const FileURL &url) = 0;
    virtual void stopAccessing(const FileURL &url) = 0;
};

/// Outside a sandbox there is nothing to start.
class NoSecurityScope final : public SecurityScope
{
public:
    [[nodiscard]] bool startAccessing(const FileURL &) override { return false; }
    void stopAccessing(const FileURL &) override {}
};

/// Access to one URL for the length of a scope.
class ScopedAccess final
{
public:
    ScopedAccess(SecurityScope &scope, FileURL url)
        : m_scope(scope), m_url(std::move(url)), m_started(scope.startAccessing(m_url))
    {}
    ~ScopedAccess()
    {
        if (m_started)
            m_scope.stopAccessing(m_url);
    }
    ScopedAccess(const ScopedAccess &) = delete;
    ScopedAccess &operator=(const ScopedAccess &) = delete;

private:
    SecurityScope &m_scope;
    const FileURL m_url;
    const bool m_started;
};

} // namespace tallowmere
