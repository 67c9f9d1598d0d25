// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/ColourSchemeWatcher.h"

#include <QByteArray>

#include <memory>
#include <thread>

namespace tallowmere {

class MainQueue;

/// The desktop portal's colour scheme (org.freedesktop.portal.Settings, key "color-scheme" of
/// org.freedesktop.appearance).
///
/// It has a thread and a connection of its own: starting a portal may take seconds, and nobody waits for it.
class PortalColourScheme final : public ColourSchemeWatcher
{
public:
    /// @p busAddress empty: the session's own bus. @p mainQueue outlives this.
    explicit PortalColourScheme(MainQueue &mainQueue, QByteArray busAddress = {});
    ~PortalColourScheme() override;
    PortalColourScheme(const PortalColourScheme &) = delete;
    PortalColourScheme &operator=(const PortalColourScheme &) = delete;

    void start(Changed changed) override;

private:
    class Session;

    MainQueue &m_mainQueue;
    const QByteArray m_busAddress;
    const int m_stopFd;
    std::shared_ptr<Changed> m_changed; ///< posted calls hold it weakly: none comes after the destruction
    std::thread m_thread;
};

} // namespace tallowmere
