// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "viewer/rules/DragState.h"

#include <utility>

namespace tallowmere {

DragState::Hover DragState::hovered(const std::optional<FileURL> &file, bool hasCurrentFile, bool logoVisible)
{
    if (!file)
        return {};
    if (file == m_draggedFileURL)
        return {.operation = DragOperation::copy, .hidesIdleScreen = false, .prepare = {}};
    m_draggedFileURL = file;
    m_hadLoadedFileBeforeDrag = hasCurrentFile;
    if (logoVisible)
        m_logoWasHiddenDuringDrag = true;
    return {.operation = DragOperation::copy, .hidesIdleScreen = true, .prepare = file};
}

bool DragState::exited()
{
    const DragState before = std::exchange(*this, {});
    return !before.m_hadLoadedFileBeforeDrag && before.m_logoWasHiddenDuringDrag;
}

std::optional<FileURL> DragState::dropped(const std::optional<FileURL> &file)
{
    if (file)
        *this = {};
    return file;
}

} // namespace tallowmere
