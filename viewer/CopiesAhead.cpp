// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "viewer/CopiesAhead.h"

#include "imaging/ImageLoader.h"
#include "support/Queues.h"
#include "viewer/DisplayPreparation.h"

#include <algorithm>
#include <atomic>
#include <mutex>
#include <utility>

namespace tallowmere {

struct CopiesAhead::Work
{
    std::mutex mutex; ///< guards what follows but the flag
    std::vector<ImagePtr> wanted;
    ImagePtr current; ///< no longer among those wanted
    bool isRunning = false;
    std::atomic<bool> isOutdated = false; ///< the current one

    /// Null when there is nothing more to do.
    ImagePtr next()
    {
        const std::lock_guard lock(mutex);
        isRunning = !wanted.empty();
        current = isRunning ? wanted.front() : nullptr;
        if (isRunning)
            wanted.erase(wanted.begin());
        isOutdated = false;
        return current;
    }
};

CopiesAhead::CopiesAhead(std::shared_ptr<DisplayPreparation> preparation, std::shared_ptr<const ImageLoader> loader,
                         Launcher &launcher)
    : m_preparation(std::move(preparation)), m_loader(std::move(loader)), m_launcher(launcher),
      m_work(std::make_shared<Work>())
{}

CopiesAhead::~CopiesAhead()
{
    want({});
}

void CopiesAhead::want(std::vector<ImagePtr> images)
{
    {
        const std::lock_guard lock(m_work->mutex);
        if (m_work->current && std::erase(images, m_work->current) == 0)
            m_work->isOutdated = true;
        m_work->wanted = std::move(images);
        if (m_work->isRunning || m_work->wanted.empty())
            return;
        m_work->isRunning = true;
    }
    m_launcher.launch("com.tallowmere.displayCopy", QualityOfService::utility,
                      [work = m_work, preparation = m_preparation, loader = m_loader] {
        while (const ImagePtr image = work->next()) {
            preparation->prepare(image, [&] {
                loader->letUrgentPass();
                return work->isOutdated.load();
            });
        }
    });
}

} // namespace tallowmere
