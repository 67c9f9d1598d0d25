// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <mutex>

namespace tallowmere {

/// A connection to a service in another process, over which messages go.
class ServiceConnection
{
public:
    virtual ~ServiceConnection() = default;
    /// Ends the connection: what is under way is dropped and nothing more can be sent. Any thread.
    virtual void invalidate() = 0;
};

/// The client of an image service (see ImageProcessingProtocol): it owns the connection and ends it.
///
/// Nothing in the program makes one in this version: images are decoded in this process, whatever the settings say.
/// Threads: any; who creates or replaces the connection holds connectionLock meanwhile.
class XPCImageLoader final
{
public:
    XPCImageLoader() = default;
    /// Invalidates the connection, if there is one.
    ~XPCImageLoader();
    XPCImageLoader(const XPCImageLoader &) = delete;
    XPCImageLoader &operator=(const XPCImageLoader &) = delete;

    std::shared_ptr<ServiceConnection> connection; ///< null until connected; guarded by connectionLock
    std::mutex connectionLock;
};

} // namespace tallowmere
