// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Trash.h"

#include <chrono>
#include <shared_mutex>

namespace tallowmere {

/// The Trash of the freedesktop Trash specification 1.0: the home trash, and one on each other volume.
///
/// Files are only ever renamed, never copied: where no Trash can be made on a file's own volume, binning it fails.
class FreedesktopTrash final : public Trash
{
public:
    /// Main thread: reads the environment.
    FreedesktopTrash();
    /// @p dataHome: the folder of the home trash; empty for none.
    explicit FreedesktopTrash(const QByteArray &dataHome);

    [[nodiscard]] Moved trashItem(const FileURL &file) override;
    [[nodiscard]] std::optional<QString> restoreItem(const FileURL &trashed, const FileURL &original) override;
    /// For the program's end: what is under way comes to its own, within @p patience, and nothing begins any more.
    void finish(std::chrono::milliseconds patience);

private:
    [[nodiscard]] Moved moveToTrash(const FileURL &file) const;
    [[nodiscard]] static std::optional<QString> takeBack(const FileURL &trashed, const FileURL &original);

    const QByteArray m_dataHome;
    std::shared_timed_mutex m_working; ///< shared by those at work
};

} // namespace tallowmere
