// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "browsing/FolderAccessManager.h"

#include "browsing/FolderListing.h"
#include "platform/SecurityScope.h"
#include "support/Queues.h"

#include <utility>

namespace tallowmere {

using namespace Qt::Literals::StringLiterals;

namespace {

bool canBeListed(const FileURL &folder)
{
    return visibleNamesIn(folder.path()).has_value();
}

std::optional<FolderAccessManager::Surroundings> &surroundingsOfShared()
{
    static std::optional<FolderAccessManager::Surroundings> surroundings;
    return surroundings;
}

} // namespace

FolderAccessManager::FolderAccessManager(const Surroundings &surroundings) : m_with(surroundings) {}

void FolderAccessManager::setSurroundingsOfShared(const Surroundings &surroundings)
{
    surroundingsOfShared().emplace(surroundings);
}

const std::shared_ptr<FolderAccessManager> &FolderAccessManager::shared()
{
    static const auto *const instance = new auto(std::make_shared<FolderAccessManager>(surroundingsOfShared().value()));
    return *instance;
}

void FolderAccessManager::requestAccess(const FileURL &folder, std::function<void(bool granted)> done)
{
    m_with.mainQueue.async([weak = weak_from_this(), folder, done = std::move(done)] {
        if (const auto self = weak.lock())
            self->answer(folder, done);
        else
            done(false);
    });
}

void FolderAccessManager::answer(const FileURL &folder, const Completion &done)
{
    if (m_accessedDirectories.contains(folder.path()))
        return done(true);
    if (!canBeListed(folder))
        return askUser(folder, done);
    m_accessedDirectories.insert(folder.path());
    done(true);
}

void FolderAccessManager::askUser(const FileURL &folder, const Completion &done)
{
    const FolderPanel::Question question{.message = u"Tallowmere needs access to this folder to browse images.\n"
                                                    "Please select the folder and click 'Grant Access'."_s,
                                         .acceptTitle = u"Grant Access"_s,
                                         .startFolder = folder};
    m_with.panel.ask(question, [self = shared_from_this(), folder, done](const FileURL &chosen) {
        done(!chosen.empty() && self->adopt(chosen, folder));
    });
}

bool FolderAccessManager::adopt(const FileURL &chosen, const FileURL &requested)
{
    const bool started = m_with.scope.startAccessing(chosen);
    if (!canBeListed(chosen)) {
        if (started)
            m_with.scope.stopAccessing(chosen);
        return false;
    }
    if (started) {
        stopAccessingActiveDirectory();
        m_activeDirectoryURL = chosen;
        m_isAccessingSecurityScopedResource = true;
    }
    m_accessedDirectories.insert(chosen.path());
    m_accessedDirectories.insert(requested.path());
    return true;
}

void FolderAccessManager::stopAccessingActiveDirectory()
{
    if (!m_isAccessingSecurityScopedResource || !m_activeDirectoryURL)
        return;
    m_with.scope.stopAccessing(*m_activeDirectoryURL);
    m_isAccessingSecurityScopedResource = false;
    m_activeDirectoryURL.reset();
}

} // namespace tallowmere
