// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <thread>

namespace tallowmere {

/// Has the font library read its configuration while the window system is being connected: a third of what the main
/// thread would otherwise do before the first window.
class FontWarmUp final
{
public:
    FontWarmUp();
    /// Waits for it: a second reading beside the first would take longer.
    ~FontWarmUp();
    FontWarmUp(const FontWarmUp &) = delete;
    FontWarmUp &operator=(const FontWarmUp &) = delete;

private:
    std::thread m_thread;
};

} // namespace tallowmere
