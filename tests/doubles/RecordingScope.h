// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/SecurityScope.h"

#include <QByteArray>

#include <mutex>
#include <vector>

namespace tallowmere::test {

/// Writes down every start and stop as "start PATH" and "stop PATH". Any thread.
class RecordingScope final : public SecurityScope
{
public:
    /// @p grants: what startAccessing() answers.
    explicit RecordingScope(bool grants = true) : m_grants(grants) {}

    [[nodiscard]] bool startAccessing(const FileURL &url) override
    {
        const std::lock_guard lock(m_mutex);
        m_log.push_back("start " + url.path());
        return m_grants;
    }
    void stopAccessing(const FileURL &url) override
    {
        const std::lock_guard lock(m_mutex);
        m_log.push_back("stop " + url.path());
    }
    [[nodiscard]] std::vector<QByteArray> log() const
    {
        const std::lock_guard lock(m_mutex);
        return m_log;
    }

private:
    const bool m_grants;
    mutable std::mutex m_mutex;
    std::vector<QByteArray> m_log;
};

} // namespace tallowmere::test
