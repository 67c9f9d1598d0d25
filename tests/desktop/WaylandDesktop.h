// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "tests/desktop/Folders.h"
#include "tests/desktop/Process.h"
#include "tests/desktop/Screen.h"

#include <memory>
#include <string>

namespace tallowmere::desktop {

/// A private Wayland compositor without a screen. Ends with this object.
///
/// Nobody can be asked there where a window is; what it shows can be looked at. Throws std::runtime_error when the
/// compositor does not come up.
class WaylandDesktop final
{
public:
    enum class Shell
    {
        desktop, ///< windows have the sizes they ask for
        kiosk    ///< every window fills the output, whatever it asks for
    };

    /// @p runtimeFolder: the XDG_RUNTIME_DIR of the programs to be shown.
    explicit WaylandDesktop(const std::filesystem::path &runtimeFolder, Shell shell = Shell::desktop);

    /// For WAYLAND_DISPLAY.
    [[nodiscard]] static std::string name() { return "tallowmere-wayland"; }
    /// The whole output, 1280 x 800.
    [[nodiscard]] Picture capture() const;

private:
    UserFolders m_folders;
    Environment m_environment;
    std::unique_ptr<Process> m_compositor;
};

} // namespace tallowmere::desktop
