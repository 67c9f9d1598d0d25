// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/ImageCacheManager.h"

#include "imaging/codecs/Decode.h"
#include "imaging/FileContents.h"
#include "imaging/ImageLoader.h"
#include "imaging/PrefetchPlan.h"
#include "imaging/SharedPipeline.h"
#include "platform/MemoryStatus.h"
#include "platform/SecurityScope.h"

#include <utility>

namespace tallowmere {
namespace {

// Decodes of this size and more may each take the whole working limit; three at once would be too much for a small
// machine. The user's own load never waits here.
constexpr std::uint64_t kLargeDecodePixels = 64'000'000;
// Asking the system reads a handful of small files: cheap beside decoding this much, not beside a cached icon.
constexpr std::size_t kAskAfterBytes = std::size_t{16} << 20;

} // namespace

ImageCacheManager::ImageCacheManager(const Surroundings &surroundings) : m_with(surroundings) {}

const std::shared_ptr<ImageCacheManager> &ImageCacheManager::shared()
{
    return SharedPipeline::instance().imageCacheManager;
}

void ImageCacheManager::setLoader(std::weak_ptr<ImageLoader> loader)
{
    m_loader = std::move(loader);
}

void ImageCacheManager::setPreparation(
    std::function<void(const ImagePtr &, const std::function<bool()> &cancelled)> prepare)
{
    m_prepare = std::move(prepare);
}

void ImageCacheManager::setEvictionHandler(Job evicted)
{
    m_evicted = std::move(evicted);
}

void ImageCacheManager::insertImage(const FileURL &file, ImagePtr image)
{
    const std::size_t bytes = image->bytes();
    freeInBackground(imageCache.insert(file, std::move(image), bytes), {});
    m_bytesSinceAsked += bytes;
    // The first image is on its way to the screen and would not be evicted anyway.
    if (imageCache.count() <= 1 || (!m_wasShort && m_bytesSinceAsked < kAskAfterBytes))
        return;
    m_bytesSinceAsked = 0;
    const auto budget = m_with.memory.cacheBudget();
    m_wasShort = budget.has_value();
    if (budget)
        shrinkTo(*budget);
}

void ImageCacheManager::shrinkTo(std::size_t bytes)
{
    freeInBackground(imageCache.shrinkTo(bytes), m_evicted);
}

/// Giving pages back to the kernel takes up to 4 ms an image: a frame's time, were it done where frames are painted.
void ImageCacheManager::freeInBackground(MemoryCache<Image>::Dropped dropped, const Job &afterwards)
{
    if (dropped.empty())
        return;
    m_with.launcher.launch("com.tallowmere.eviction", QualityOfService::utility,
                           [dropped = std::move(dropped), afterwards]() mutable {
        dropped.clear();
        if (afterwards)
            afterwards();
    });
}

void ImageCacheManager::prefetchImages(const QList<FileURL> &fileURLs, qint64 currentIndex)
{
    bool repeat = true;
    m_with.prefetchSyncQueue.sync([&repeat, weak = weak_from_this(), &fileURLs, currentIndex] {
        const auto self = weak.lock();
        repeat = !self || self->repeatsLastRequest(fileURLs, currentIndex);
    });
    if (repeat)
        return;
    m_with.prefetchSyncQueue.async([weak = weak_from_this(), fileURLs, currentIndex] {
        if (const auto self = weak.lock())
            self->schedule(fileURLs, currentIndex);
    });
}

bool ImageCacheManager::repeatsLastRequest(const QList<FileURL> &fileURLs, qint64 currentIndex)
{
    if (m_lastIndex == currentIndex && m_lastURLs == fileURLs)
        return true;
    m_lastIndex = currentIndex;
    m_lastURLs = fileURLs;
    return false;
}

void ImageCacheManager::schedule(const QList<FileURL> &fileURLs, qint64 currentIndex)
{
    m_with.prefetchQueue.cancelAllOperations();
    const unsigned request = ++m_request;
    const auto cached = [&](qint64 index) { return imageCache.contains(fileURLs[index]); };
    for (const auto &[index, quality] :
         prefetchPlan(fileURLs.size(), currentIndex, prefetchBefore, prefetchAfter, cached)) {
        m_with.prefetchQueue.addOperation(quality, [weak = weak_from_this(), file = fileURLs[index], request] {
            if (const auto self = weak.lock())
                self->prefetch(file, request);
        });
    }
}

void ImageCacheManager::prefetch(const FileURL &file, unsigned request)
{
    const auto loader = m_loader.lock();
    if (!loader)
        return;
    // The queue counts it as begun, but while it waits it has read nothing: a later request drops it all the same.
    if (loader->letUrgentPass() && request != m_request)
        return;
    const ImagePtr image = readAndDecode(file, *loader);
    if (!image)
        return;
    if (m_prepare)
        m_prepare(image, [&] {
            loader->letUrgentPass();
            return false;
        });
    m_with.mainQueue.async([weak = weak_from_this(), file, image] {
        if (const auto self = weak.lock())
            self->insertImage(file, image);
    });
    loader->letUrgentPass();
    const auto colour = loader->calculateAverageColor(*image);
    if (!colour)
        return;
    m_with.mainQueue.async([weak = weak_from_this(), file, colour] {
        if (const auto self = weak.lock())
            self->averageColorCache.insert(file, std::make_shared<const Color>(*colour), sizeof(Color));
    });
}

ImagePtr ImageCacheManager::readAndDecode(const FileURL &file, const ImageLoader &loader)
{
    const ScopedAccess access(m_with.scope, file);
    const auto contents = FileContents::read(file);
    if (!contents)
        return nullptr;
    std::unique_lock oneLargeDecode(m_oneLargeDecode, std::defer_lock);
    const auto size = storedSize(contents->bytes());
    if (size && size->pixels() >= kLargeDecodePixels)
        oneLargeDecode.lock();
    return loader.decodeImage(contents->bytes(), ImageLoader::kMaxPixelSize);
}

} // namespace tallowmere
