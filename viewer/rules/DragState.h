// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "support/FileURL.h"

#include <cstdint>
#include <optional>

namespace tallowmere {

/// What a drag may do here.
enum class DragOperation : std::uint64_t
{
    none = 0,
    copy = 1
};

/// What becomes of the idle screen while a drag hovers over the window, and when it leaves. Main thread.
class DragState final
{
public:
    struct Hover
    {
        DragOperation operation = DragOperation::none;
        bool hidesIdleScreen = false;   ///< the logo and the instruction are to be hidden
        std::optional<FileURL> prepare; ///< to be decoded ahead, so that the drop shows it at once
    };

    /// The drag arrived or moved. @p file: the first one it carries that is accepted, if any. @p hasCurrentFile,
    /// @p logoVisible: the viewer's state now.
    [[nodiscard]] Hover hovered(const std::optional<FileURL> &file, bool hasCurrentFile, bool logoVisible);

    /// The drag left without a drop. True: the viewer is to return to its idle state.
    [[nodiscard]] bool exited();

    /// The file to open, if the drop is accepted. Read anew by the caller: the settings may have changed on the way.
    [[nodiscard]] std::optional<FileURL> dropped(const std::optional<FileURL> &file);

private:
    std::optional<FileURL> m_draggedFileURL;
    bool m_logoWasHiddenDuringDrag = false;
    bool m_hadLoadedFileBeforeDrag = false;
};

} // namespace tallowmere
