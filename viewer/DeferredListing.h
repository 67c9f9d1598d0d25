// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "support/Queues.h"

#include <utility>

namespace tallowmere {

/// A listing of a folder that waits until the picture is on the screen. Main thread.
///
/// Whoever depends on it calls finish() first, so that nobody can tell that it was put off.
class DeferredListing final
{
public:
    void putOff(Job listing) { m_listing = std::move(listing); }
    [[nodiscard]] bool isPutOff() const { return m_listing != nullptr; }
    /// Runs what was put off, if anything was.
    void finish()
    {
        if (m_listing)
            std::exchange(m_listing, nullptr)();
    }

private:
    Job m_listing;
};

} // namespace tallowmere
