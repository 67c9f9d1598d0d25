// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

namespace tallowmere {

/// What the viewer asks of the application around it. Main thread.
class Shell
{
public:
    virtual ~Shell() = default;
    /// A setting or the current file changed: bring check marks and enabling up to date.
    virtual void refreshMenuItems() = 0;
    /// Bring the Settings window's controls up to date; nothing when there is none.
    virtual void refreshSettingsControls() = 0;
    /// The "Fit to Image" command: toggles automatic resizing.
    virtual void resizeWindowToImage() = 0;
    /// Minimises every window of the program.
    virtual void hideApplication() = 0;
};

} // namespace tallowmere
