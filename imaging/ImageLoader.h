// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/Color.h"
#include "imaging/Image.h"
#include "support/FileURL.h"
#include "support/Queues.h"

#include <functional>
#include <memory>
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

    struct Surroundings
    {
        MainQueue &mainQueue;
        Launcher &launcher;
        SecurityScope &scope;
        std::shared_ptr<ImageCacheManager> cache;
    };
    explicit ImageLoader(Surroundings surroundings);
    ~ImageLoader();

    /// Main thread. A cached image is handed to @p completion before this returns; otherwise it is decoded on a
    /// thread of its own, cached, and delivered on the main thread.
    void loadImage(const FileURL &file, int maxSize, Completion completion);
    /// Null when the bytes are no picture. Any thread.
    [[nodiscard]] ImagePtr decodeImage(std::span<const std::byte> file, int maxPixelSize) const;
    /// Nothing for an image without a bitmap. Any thread.
    [[nodiscard]] std::optional<Color> calculateAverageColor(const Image &image) const;

    /// Begins to read and decode @p file before anybody asks for it (at start, while the window system is still
    /// being connected). The next loadImage() of the same file with the same size takes that decode over. Any thread.
    void preload(const FileURL &file, int maxSize);
    /// Drops every decode that preload() began and nobody took over: it ends at its next row. Any thread.
    void dropPreload();
    /// Called on the decoding thread with every image before it is delivered. Set once, before the first load.
    void setPreparation(std::function<void(const ImagePtr &)> prepare);
};

} // namespace tallowmere
