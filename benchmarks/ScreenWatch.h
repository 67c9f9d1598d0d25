// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "benchmarks/Clock.h"
#include "tests/desktop/Screen.h"

#include <functional>
#include <optional>

namespace tallowmere::bench {

/// What watching costs the machine that is being measured.
struct WatchCost
{
    double interval = 0;    ///< ms from one look to the next
    double ownShare = 0;    ///< of one core
    double serverShare = 0; ///< of one core, in the X server
};

/// Looks at the pixel in the middle of the screen, again and again, until it has a colour.
///
/// A look asks the X server for one pixel. Between two looks it sleeps for 0.2 ms, or for 0.2 % of the time that has
/// passed if that is more: the watched program needs the cores.
class ScreenWatch final
{
public:
    /// @p desktop outlives it.
    explicit ScreenWatch(const desktop::VirtualDesktop &desktop);

    /// Milliseconds from @p since until the middle is first seen in @p colour; nothing after ten seconds, or once
    /// @p hopeless says so (asked now and then).
    [[nodiscard]] std::optional<double> until(const desktop::Colour &colour, Clock::time_point since,
                                              const std::function<bool()> &hopeless = {}) const;
    [[nodiscard]] bool shows(const desktop::Colour &colour) const;
    /// Watches for a second a colour that does not come. The screen should be at rest.
    [[nodiscard]] WatchCost cost() const;

private:
    const desktop::VirtualDesktop &m_desktop;
    const desktop::Screen m_screen;
    const desktop::Point m_middle;
};

} // namespace tallowmere::bench
