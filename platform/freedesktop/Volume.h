// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

namespace tallowmere {

/// What can be renamed into each other, as far as can be told without trying: a mount of a device. Bind mounts have
/// the device in common and the subvolumes of a btrfs the mount.
struct Volume
{
    quint64 device = 0;
    quint64 mount = 0; ///< 0 where the kernel doesn't tell

    /// Of an existing folder; nothing is at 0 when it can't be looked at.
    [[nodiscard]] static Volume of(const QByteArray &folder);
    /// Of the nearest folder above that exists; @p path is absolute.
    [[nodiscard]] static Volume wherePathWouldBe(QByteArray path);

    friend bool operator==(const Volume &, const Volume &) = default;
};

/// The highest folder above @p folder that is on the same volume. @p folder: absolute, without links.
[[nodiscard]] QByteArray topDirectoryOf(QByteArray folder);

} // namespace tallowmere
