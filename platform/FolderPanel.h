// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "support/FileURL.h"

#include <QString>

#include <functional>

namespace tallowmere {

/// Asks the user to pick a folder. Main thread.
class FolderPanel
{
public:
    struct Question
    {
        QString message;     ///< may have several lines
        QString acceptTitle; ///< of the button that picks
        FileURL startFolder;
    };

    virtual ~FolderPanel() = default;
    /// Shows a panel of its own for each call and returns at once. @p done runs once, later, with the folder, or with
    /// an empty one when the user declined; never when the program ends first.
    virtual void ask(const Question &question, std::function<void(const FileURL &folder)> done) = 0;
};

} // namespace tallowmere
