// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Trash.h"

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

private:
    const QByteArray m_dataHome;
};

} // namespace tallowmere
