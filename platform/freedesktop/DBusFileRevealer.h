// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/FileRevealer.h"

#include <QByteArray>
#include <QSet>

#include <chrono>
#include <memory>
#include <mutex>

namespace tallowmere {

class Launcher;

/// Asks the desktop's file manager (org.freedesktop.FileManager1) to show a file; where there is none, the desktop
/// portal to show its folder; where there is no portal, xdg-open to open the folder.
///
/// Each request runs on a thread of its own with a connection of its own, since starting a file manager may take
/// seconds. A repeated request for a file that is still under way is dropped: a held key must not open fifty windows.
class DBusFileRevealer final : public FileRevealer
{
public:
    struct Options
    {
        QByteArray address; ///< of the bus; empty: the session's own
        std::chrono::milliseconds connectTimeout{1000};
        std::chrono::milliseconds callTimeout{5000}; ///< covers the start of a file manager
        QByteArray folderOpener = "xdg-open";        ///< called with the folder's path
    };

    DBusFileRevealer(Launcher &launcher, Options options);

    void reveal(const FileURL &file) override;

private:
    struct UnderWay
    {
        std::mutex mutex;
        QSet<FileURL> files;
    };

    Launcher &m_launcher;
    const Options m_options;
    const std::shared_ptr<UnderWay> m_underWay; ///< shared with the threads, which may outlive this
};

} // namespace tallowmere
