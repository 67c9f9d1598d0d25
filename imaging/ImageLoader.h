// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/codecs/DecodeProgress.h"
#include "imaging/Color.h"
#include "imaging/DecodePriority.h"
#include "imaging/Image.h"
#include "support/FileURL.h"
#include "support/Queues.h"

#include <functional>
#include <list>
#include <memory>
#include <mutex>
#include <optional>
#include <span>

namespace tallowmere {

class ImageCacheManager;
class SecurityScope;

/// Turns image files into displayable images in the background.
///
/// Made by std::make_shared, since background work holds it weakly.
class ImageLoader final : public std::enable_shared_from_this<ImageLoader>
{
public:
    using Completion = std::function<void(ImagePtr)>; ///< null: no image
    using PreviewSize = std::function<PixelSize(PixelSize full)>;

    struct Surroundings
    {
        MainQueue &mainQueue;
        Launcher &launcher;
        SecurityScope &scope;
        std::shared_ptr<ImageCacheManager> cache;
    };
    /// What pictures are decoded to, in pixels of the longer side; every caller in the program asks for this.
    static constexpr int kMaxPixelSize = 4000;

    explicit ImageLoader(Surroundings surroundings);
    ~ImageLoader();
    ImageLoader(const ImageLoader &) = delete;
    ImageLoader &operator=(const ImageLoader &) = delete;
    /// The process's own, see SharedPipeline. Any thread.
    [[nodiscard]] static const std::shared_ptr<ImageLoader> &shared();

    /// Main thread. A cached image is handed to @p completion before this returns; otherwise it is decoded on a
    /// thread of its own, cached, and delivered on the main thread. Never cancelled; loads that overlap run in
    /// parallel; a failure gives null and is not remembered. @p maxSize: pixels, the longer side. Answers how far the
    /// decode is, from now on; null for a cached image.
    /// A preview (see setPreviewSize()) goes to @p preview (may be empty) on the main thread, before @p completion.
    std::shared_ptr<const DecodeProgress> loadImage(const FileURL &file, int maxSize, Completion completion,
                                                    Completion preview = {});
    /// For images that nobody waits for yet: pauses while one that was asked for by loadImage() or preload() is being
    /// decoded. Null when the bytes are no picture or there is no room for it. Any thread.
    [[nodiscard]] ImagePtr decodeImage(std::span<const std::byte> file, int maxPixelSize) const;
    /// Returns when none that was asked for by loadImage() or preload() is being decoded; answers whether one was. Any
    /// thread.
    bool letUrgentPass() const { return m_priority.letUrgentPass(); }
    /// Nothing for an image without a bitmap. Any thread.
    [[nodiscard]] std::optional<Color> calculateAverageColor(const Image &image) const;

    /// Begins to read and decode @p file before anybody asks for it (at start, while the window system is still
    /// being connected). The next loadImage() of the same file with the same size takes that decode over; its
    /// completion comes through the main queue as ever. A failure before that is not remembered. Any thread.
    void preload(const FileURL &file, int maxSize);
    /// Drops every decode that preload() began and nobody took over: it ends at its next row. Any thread.
    void dropPreload();
    /// Called on the decoding thread with every image, previews included, before it is delivered. Set before the first
    /// load; images that preload() has decoded by then go without. Any thread.
    void setPreparation(std::function<void(const ImagePtr &)> prepare);
    /// Large pictures that can be had at a fraction of their size are decoded twice from now on: first at the size
    /// that @p sizeOnScreen gives, for the eye, and then in full. Called on the decoding thread with the size that the
    /// picture is going to have; answers device pixels, empty for no preview. Previews are never cached, and a decode
    /// that preload() began makes one, too. Any thread.
    void setPreviewSize(PreviewSize sizeOnScreen);

private:
    struct Preload;
    using Cancelled = std::function<bool()>;

    [[nodiscard]] ImagePtr decode(std::span<const std::byte> file, int maxPixelSize, const Cancelled &cancelled,
                                  DecodeProgress *progress) const;
    [[nodiscard]] ImagePtr decodePreview(std::span<const std::byte> file, int maxSize,
                                         const Cancelled &cancelled) const;
    /// @p preview (may be empty) is called in this thread, before the full decode, with the preview if there is one.
    [[nodiscard]] ImagePtr readAndDecode(const FileURL &file, int maxSize, const Cancelled &cancelled,
                                         DecodeProgress &progress, const Completion &preview) const;
    void forget(const std::shared_ptr<Preload> &preload);
    /// Null when there is none, and @p completion is still the caller's.
    [[nodiscard]] std::shared_ptr<const DecodeProgress> takeOverPreload(const FileURL &file, int maxSize,
                                                                        Completion &completion, Completion &preview);

    const Surroundings m_with;
    mutable DecodePriority m_priority;
    mutable std::mutex m_mutex; ///< guards what follows
    std::function<void(const ImagePtr &)> m_prepare;
    PreviewSize m_previewSize;
    std::list<std::shared_ptr<Preload>> m_preloads; ///< those that nobody has taken over
};

} // namespace tallowmere
