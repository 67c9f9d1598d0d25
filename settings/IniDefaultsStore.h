// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "settings/DefaultsStore.h"

#include <QByteArray>

#include <memory>

namespace tallowmere {

/// The user's preferences in an INI file, entries in its [General] group.
///
/// Each write goes to the disk at once, each read looks whether another process has written since (one stat()).
/// When the disk is full or read-only, values live on for this run and the next write tries again. A file that is no
/// INI file reads as far as it makes sense. Threads: reads from any, writes and the destructor on the one that made it.
class IniDefaultsStore final : public DefaultsStore
{
public:
    /// @p path: bytes, absolute; the file and its folder come into being with the first write. An empty path gives a
    /// store that forgets at the end of the run.
    explicit IniDefaultsStore(const QByteArray &path);
    ~IniDefaultsStore() override;
    IniDefaultsStore(const IniDefaultsStore &) = delete;
    IniDefaultsStore &operator=(const IniDefaultsStore &) = delete;

    /// tallowmere/tallowmere.ini in the user's configuration folder; empty when there is no such folder.
    [[nodiscard]] static QByteArray userPath();

    [[nodiscard]] bool contains(QByteArrayView key) const override;
    [[nodiscard]] bool boolForKey(QByteArrayView key) const override;
    [[nodiscard]] QString stringForKey(QByteArrayView key) const override;
    void setBool(QByteArrayView key, bool value) override;
    void setString(QByteArrayView key, const QString &value) override;

private:
    class File;
    const std::unique_ptr<File> m_file;
};

/// The boolean reading of stored text: true, yes and 1 in any case are true, all else is false.
[[nodiscard]] bool readsTrue(const QString &text);

} // namespace tallowmere
