// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/ImageLoader.h"

#include "imaging/codecs/Decode.h"
#include "imaging/FileContents.h"
#include "imaging/ImageCacheManager.h"
#include "imaging/pixels/ScreenColours.h"
#include "imaging/SharedPipeline.h"
#include "platform/SecurityScope.h"

#include <algorithm>
#include <atomic>
#include <utility>
#include <variant>

namespace tallowmere {
namespace {

constexpr const char *kLabel = "com.tallowmere.imageLoading";
/// Below this, the whole decode takes about as long as a preview gains.
constexpr std::uint64_t kPixelsWorthAPreview = 4'000'000;

/// Nothing when the bytes are no picture, or when the decode was given up.
std::optional<DecodedImage> decodeForScreen(std::span<const std::byte> file, const DecodeLimits &limits)
{
    DecodeResult result = decodeImage(file, limits);
    auto *decoded = std::get_if<DecodedImage>(&result);
    if (!decoded || !convertToScreenColours(*decoded, limits.cancelled))
        return std::nullopt;
    return std::move(*decoded);
}

/// Brings a result home: into the cache, then to whoever asked.
/// Both completions, and what they hold, die there, too.
Job delivery(std::weak_ptr<ImageCacheManager> cache, FileURL file, ImagePtr image, ImageLoader::Completion completion,
             ImageLoader::Completion preview)
{
    return [cache = std::move(cache), file = std::move(file), image = std::move(image),
            completion = std::move(completion), preview = std::move(preview)] {
        if (const auto manager = cache.lock(); manager && image)
            manager->insertImage(file, image);
        completion(image);
    };
}

} // namespace

/// A decode that began before anybody asked. It outlives its loader while it runs, so that whoever took it over
/// gets an answer all the same.
struct ImageLoader::Preload
{
    Preload(FileURL url, int size) : file(std::move(url)), maxSize(size) {}

    const FileURL file;
    const int maxSize;
    std::atomic<bool> cancelled{false};
    DecodeProgress progress;

    std::mutex mutex; ///< guards the rest
    bool takenOver = false;
    bool finished = false;
    ImagePtr preview;             ///< once there is one and nobody has taken over
    ImagePtr image;               ///< once finished and not taken over
    Completion completion;        ///< once taken over, as the next
    Completion previewCompletion; ///< may be empty
};

ImageLoader::ImageLoader(Surroundings surroundings) : m_with(std::move(surroundings)) {}

ImageLoader::~ImageLoader()
{
    dropPreload();
}

const std::shared_ptr<ImageLoader> &ImageLoader::shared()
{
    return SharedPipeline::instance().imageLoader;
}

void ImageLoader::setPreparation(std::function<void(const ImagePtr &)> prepare)
{
    const std::lock_guard lock(m_mutex);
    m_prepare = std::move(prepare);
}

void ImageLoader::setPreviewSize(PreviewSize sizeOnScreen)
{
    const std::lock_guard lock(m_mutex);
    m_previewSize = std::move(sizeOnScreen);
}

std::shared_ptr<const DecodeProgress> ImageLoader::loadImage(const FileURL &file, int maxSize, Completion completion,
                                                             Completion preview)
{
    if (const ImagePtr cached = m_with.cache->imageCache.find(file)) {
        completion(cached);
        return nullptr;
    }
    if (auto begun = takeOverPreload(file, maxSize, completion, preview))
        return begun;

    auto progress = std::make_shared<DecodeProgress>();
    m_with.launcher.launch(kLabel, QualityOfService::userInitiated,
                           [weak = weak_from_this(), cache = std::weak_ptr(m_with.cache), &mainQueue = m_with.mainQueue,
                            file, maxSize, progress, completion = std::move(completion),
                            preview = std::move(preview)]() mutable {
        ImagePtr image;
        if (const auto self = weak.lock()) {
            Completion showPreview;
            if (preview)
                showPreview = [&](ImagePtr quick) {
                    mainQueue.async([preview, quick = std::move(quick)] { preview(quick); });
                };
            image = self->readAndDecode(file, maxSize, {}, *progress, showPreview);
        }
        mainQueue.async(
            delivery(std::move(cache), std::move(file), std::move(image), std::move(completion), std::move(preview)));
    });
    return progress;
}

ImagePtr ImageLoader::decodeImage(std::span<const std::byte> file, int maxPixelSize) const
{
    const auto wait = [this] {
        letUrgentPass();
        return false;
    };
    return decode(file, maxPixelSize, wait, nullptr);
}

ImagePtr ImageLoader::decode(std::span<const std::byte> file, int maxPixelSize, const Cancelled &cancelled,
                             DecodeProgress *progress) const
{
    if (maxPixelSize <= 0)
        return nullptr;
    DecodeLimits limits;
    limits.maxSide = static_cast<std::uint32_t>(maxPixelSize);
    limits.cancelled = cancelled;
    limits.progress = progress;
    auto decoded = decodeForScreen(file, limits);
    return decoded ? std::make_shared<const Image>(std::move(*decoded)) : nullptr;
}

/// Null when there is none to be had, or the whole picture would hardly take longer.
ImagePtr ImageLoader::decodePreview(std::span<const std::byte> file, int maxSize, const Cancelled &cancelled) const
{
    PreviewSize sizeOnScreen;
    {
        const std::lock_guard lock(m_mutex);
        sizeOnScreen = m_previewSize;
    }
    if (!sizeOnScreen || maxSize <= 0)
        return nullptr;
    const auto stored = sizeOfScalable(file);
    if (!stored || stored->pixels() < kPixelsWorthAPreview)
        return nullptr;
    const PixelSize full = stored->fittedTo(static_cast<std::uint32_t>(maxSize));
    const PixelSize shown = sizeOnScreen(full);
    DecodeLimits limits;
    limits.cancelled = cancelled;
    limits.maxSide = shown.longerSide();
    // The screen may round the other side up.
    const PixelSize fitted = stored->fittedTo(limits.maxSide);
    if (fitted.width < shown.width || fitted.height < shown.height)
        ++limits.maxSide;
    if (shown.empty() || limits.maxSide > stored->longerSide() / 2)
        return nullptr;
    auto decoded = decodeForScreen(file, limits);
    return decoded ? std::make_shared<const Image>(std::move(*decoded), full) : nullptr;
}

ImagePtr ImageLoader::readAndDecode(const FileURL &file, int maxSize, const Cancelled &cancelled,
                                    DecodeProgress &progress, const Completion &preview) const
{
    std::function<void(const ImagePtr &)> prepare;
    {
        const std::lock_guard lock(m_mutex);
        prepare = m_prepare;
    }
    std::optional<DecodePriority::Urgent> urgent;
    ImagePtr image;
    {
        const ScopedAccess access(m_with.scope, file);
        if (const auto contents = FileContents::read(file)) {
            // Not before: a file on a dead mount would keep all others from being decoded ahead.
            urgent.emplace(m_priority);
            if (const ImagePtr quick = preview ? decodePreview(contents->bytes(), maxSize, cancelled) : nullptr) {
                if (prepare)
                    prepare(quick);
                preview(quick);
            }
            image = decode(contents->bytes(), maxSize, cancelled, &progress);
        }
    }
    if (image && prepare)
        prepare(image);
    return image;
}

std::optional<Color> ImageLoader::calculateAverageColor(const Image &image) const
{
    if (!image.hasBitmap())
        return std::nullopt;
    const DecodedImage &decoded = image.decoded();
    const auto [red, green, blue, alpha] =
        decoded.storedAverage ? *decoded.storedAverage : averageColour(decoded.pixels);
    return Color{red / 255.0, green / 255.0, blue / 255.0, alpha / 255.0};
}

void ImageLoader::preload(const FileURL &file, int maxSize)
{
    if (m_with.cache->imageCache.contains(file))
        return;
    const auto preload = std::make_shared<Preload>(file, maxSize);
    {
        const std::lock_guard lock(m_mutex);
        const auto isTheSame = [&](const auto &each) { return each->file == file && each->maxSize == maxSize; };
        if (std::ranges::any_of(m_preloads, isTheSame))
            return;
        m_preloads.push_back(preload);
    }
    m_with.launcher.launch(
        kLabel, QualityOfService::userInitiated,
        [weak = weak_from_this(), cache = std::weak_ptr(m_with.cache), &mainQueue = m_with.mainQueue, preload] {
        const auto cancelled = [&] { return preload->cancelled.load(std::memory_order_relaxed); };
        const auto self = weak.lock();
        ImagePtr image;
        const auto showPreview = [&](ImagePtr quick) {
            const std::lock_guard lock(preload->mutex);
            if (!preload->takenOver)
                preload->preview = std::move(quick);
            else if (preload->previewCompletion)
                mainQueue.async([show = preload->previewCompletion, quick = std::move(quick)] { show(quick); });
        };
        if (self && !cancelled())
            image = self->readAndDecode(preload->file, preload->maxSize, cancelled, preload->progress, showPreview);
        std::unique_lock lock(preload->mutex);
        preload->finished = true;
        preload->preview.reset();
        if (preload->takenOver) {
            mainQueue.async(delivery(cache, preload->file, std::move(image), std::move(preload->completion),
                                     std::move(preload->previewCompletion)));
            return;
        }
        preload->image = image;
        lock.unlock();
        if (!image && self)
            self->forget(preload);
        });
}

void ImageLoader::forget(const std::shared_ptr<Preload> &preload)
{
    const std::lock_guard lock(m_mutex);
    m_preloads.remove(preload);
}

std::shared_ptr<const DecodeProgress> ImageLoader::takeOverPreload(const FileURL &file, int maxSize,
                                                                   Completion &completion, Completion &preview)
{
    std::shared_ptr<Preload> preload;
    {
        const std::lock_guard lock(m_mutex);
        const auto found = std::find_if(m_preloads.begin(), m_preloads.end(), [&](const auto &candidate) {
            return candidate->file == file && candidate->maxSize == maxSize;
        });
        if (found == m_preloads.end())
            return nullptr;
        preload = std::move(*found);
        m_preloads.erase(found);
    }
    const std::lock_guard lock(preload->mutex);
    if (preload->finished && !preload->image)
        return nullptr;
    preload->takenOver = true;
    if (preload->finished)
        m_with.mainQueue.async(delivery(m_with.cache, file, std::move(preload->image), std::move(completion), {}));
    else
        preload->completion = std::move(completion);
    if (preload->preview && preview)
        m_with.mainQueue.async([show = preview, quick = std::move(preload->preview)] { show(quick); });
    preload->previewCompletion = std::move(preview);
    return {preload, &preload->progress};
}

void ImageLoader::dropPreload()
{
    std::list<std::shared_ptr<Preload>> dropped;
    const std::lock_guard lock(m_mutex);
    dropped.swap(m_preloads);
    for (const auto &preload : dropped)
        preload->cancelled = true;
}

} // namespace tallowmere
