// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/Color.h"
#include "imaging/Image.h"
#include "support/FileURL.h"
#include "support/MemoryCache.h"
#include "support/Queues.h"

#include <QList>

#include <atomic>
#include <functional>
#include <memory>
#include <optional>

namespace tallowmere {

class ImageLoader;
class MemoryStatus;
class SecurityScope;

/// Keeps decoded images and their average colours, and decodes the neighbours of the current one ahead of time.
///
/// Made by std::make_shared, since background work holds it weakly. Look-ups and prefetch counts: any thread;
/// prefetchImages(): main thread.
class ImageCacheManager final : public std::enable_shared_from_this<ImageCacheManager>
{
public:
    static constexpr int maxCacheCount = 200;

    /// What the manager works with; tests put in stepped queues. All outlive the manager.
    struct Surroundings
    {
        MainQueue &mainQueue;
        SerialQueue &prefetchSyncQueue;
        OperationQueue &prefetchQueue;
        SecurityScope &scope;
        MemoryStatus &memory;
    };
    explicit ImageCacheManager(const Surroundings &surroundings);

    MemoryCache<Image> imageCache{maxCacheCount};
    MemoryCache<Color> averageColorCache{maxCacheCount};
    std::atomic<int> prefetchBefore{2};
    std::atomic<int> prefetchAfter{20};

    /// The loader that prefetches decode with; set once, before the first request.
    void setLoader(std::weak_ptr<ImageLoader> loader);
    /// Main thread. Puts @p image in the cache and, while memory is short, evicts down to the budget.
    void insertImage(const FileURL &file, ImagePtr image);
    /// Schedules the neighbours of @p currentIndex unless the request repeats the last one. Returns at once.
    void prefetchImages(const QList<FileURL> &fileURLs, qint64 currentIndex);
    /// Memory has become short: evicts the least recently used images down to @p bytes in all. Any thread.
    void shrinkTo(std::size_t bytes);
    /// Called on a worker with every image as soon as it is decoded, before it is delivered: the viewer makes its
    /// display copy there. Set once, before the first request.
    void setPreparation(std::function<void(const ImagePtr &)> prepare);

private:
    friend class PrefetchJob;
    const Surroundings m_with;
};

} // namespace tallowmere
