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
#include <mutex>
#include <optional>

namespace tallowmere {

class ImageLoader;
class MemoryStatus;
class SecurityScope;

/// Keeps decoded images and their average colours, and decodes the neighbours of the current one ahead of time.
///
/// Made by std::make_shared, since background work holds it weakly. Look-ups and prefetch counts: any thread;
/// prefetchImages(): main thread. Images are bounded by count, and by bytes only while memory is short.
class ImageCacheManager final : public std::enable_shared_from_this<ImageCacheManager>
{
public:
    static constexpr int maxCacheCount = 200;
    static constexpr int maxConcurrentPrefetches = 3;

    /// What the manager works with; tests put in stepped queues. All outlive the manager.
    struct Surroundings
    {
        MainQueue &mainQueue;
        SerialQueue &prefetchSyncQueue;
        OperationQueue &prefetchQueue;
        Launcher &launcher;
        SecurityScope &scope;
        MemoryStatus &memory;
    };
    explicit ImageCacheManager(const Surroundings &surroundings);
    /// The process's own, see SharedPipeline. Any thread.
    [[nodiscard]] static const std::shared_ptr<ImageCacheManager> &shared();

    MemoryCache<Image> imageCache{maxCacheCount};
    MemoryCache<Color> averageColorCache{maxCacheCount};
    std::atomic<int> prefetchBefore{2};
    std::atomic<int> prefetchAfter{20};

    /// The loader that prefetches decode with; set once, before the first request. Main thread.
    void setLoader(std::weak_ptr<ImageLoader> loader);
    /// Main thread. Puts @p image in the cache and, while memory is short, evicts down to the budget.
    void insertImage(const FileURL &file, ImagePtr image);
    /// Schedules the neighbours of @p currentIndex unless the request repeats the last one: the same list and index.
    /// The counts are read when the work is scheduled, soon after. Returns at once.
    void prefetchImages(const QList<FileURL> &fileURLs, qint64 currentIndex);
    /// Memory has become short: evicts the least recently used images down to @p bytes in all. Any thread.
    void shrinkTo(std::size_t bytes);
    /// Called on a worker with every image as soon as it is decoded, before it is delivered: the viewer makes its
    /// display copy there. @p cancelled is for makeDisplayCopy(): it lets urgent decodes pass and answers false. Set
    /// once, before the first request. Main thread.
    void setPreparation(std::function<void(const ImagePtr &, const std::function<bool()> &cancelled)> prepare);
    /// Called on a worker when memory has been short and images have gone: what belongs to them may go, too. Set once,
    /// before the first request. Main thread.
    void setEvictionHandler(Job evicted);

private:
    [[nodiscard]] bool repeatsLastRequest(const QList<FileURL> &fileURLs, qint64 currentIndex);
    void schedule(const QList<FileURL> &fileURLs, qint64 currentIndex);
    void prefetch(const FileURL &file, unsigned request);
    [[nodiscard]] ImagePtr readAndDecode(const FileURL &file, const ImageLoader &loader);
    void freeInBackground(MemoryCache<Image>::Dropped dropped, const Job &afterwards);

    const Surroundings m_with;
    std::weak_ptr<ImageLoader> m_loader;
    std::function<void(const ImagePtr &, const std::function<bool()> &cancelled)> m_prepare;
    Job m_evicted;
    std::atomic<unsigned> m_request{0}; ///< the latest
    std::mutex m_oneLargeDecode;
    std::size_t m_bytesSinceAsked = 0; ///< main thread, as the next
    bool m_wasShort = false;
    std::optional<qint64> m_lastIndex; ///< on prefetchSyncQueue, as the next
    std::optional<QList<FileURL>> m_lastURLs;
};

} // namespace tallowmere
