// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/FolderPanel.h"

namespace tallowmere {

/// Asks with the toolkit's own file dialog: the desktop's have no room for a message.
///
/// The panels belong to no window and delete themselves when answered.
class QtFolderPanel final : public FolderPanel
{
public:
    void ask(const Question &question, std::function<void(const FileURL &folder)> done) override;
};

} // namespace tallowmere
