// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "browsing/FolderAccess.h"
#include "platform/FolderPanel.h"

#include <QByteArray>
#include <QSet>

#include <memory>
#include <optional>

namespace tallowmere {

class MainQueue;
class SecurityScope;

/// Obtains the right to list a folder: from memory, by trying, and at last from the user, who is asked to pick it.
///
/// Main thread only. Nothing is saved: the next run asks again. Made by std::make_shared, since a request waits in the
/// main queue without keeping it alive; an open panel does keep it.
class FolderAccessManager final : public FolderAccess, public std::enable_shared_from_this<FolderAccessManager>
{
public:
    /// What the manager works with; everything referred to outlives it.
    struct Surroundings
    {
        MainQueue &mainQueue;
        SecurityScope &scope;
        FolderPanel &panel;
    };
    explicit FolderAccessManager(const Surroundings &surroundings);
    FolderAccessManager(const FolderAccessManager &) = delete;
    FolderAccessManager &operator=(const FolderAccessManager &) = delete;

    /// What shared() is to be made with. Once, before its first use.
    static void setSurroundingsOfShared(const Surroundings &surroundings);
    /// The process's own, made on first use and never destroyed.
    [[nodiscard]] static const std::shared_ptr<FolderAccessManager> &shared();

    /// Each request that comes to asking the user shows a panel of its own. The user's choice is trusted: any folder
    /// that can be listed counts as leave for @p folder, too.
    void requestAccess(const FileURL &folder, std::function<void(bool granted)> done) override;
    /// Gives up the access to the folder picked last. Nothing when none is held.
    void stopAccessingActiveDirectory();

    /// The folder whose access is held open; nothing when there is none.
    [[nodiscard]] const std::optional<FileURL> &activeDirectoryURL() const { return m_activeDirectoryURL; }
    [[nodiscard]] bool isAccessingSecurityScopedResource() const { return m_isAccessingSecurityScopedResource; }
    /// Paths, without a slash at the end, of the folders that could be listed in this run. It only grows.
    [[nodiscard]] const QSet<QByteArray> &accessedDirectories() const { return m_accessedDirectories; }

private:
    using Completion = std::function<void(bool granted)>;

    void answer(const FileURL &folder, const Completion &done);
    void askUser(const FileURL &folder, const Completion &done);
    [[nodiscard]] bool adopt(const FileURL &chosen, const FileURL &requested);

    const Surroundings m_with;
    std::optional<FileURL> m_activeDirectoryURL;
    bool m_isAccessingSecurityScopedResource = false;
    QSet<QByteArray> m_accessedDirectories;
};

} // namespace tallowmere
