// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/Image.h"

#include <QImage>

#include <cstddef>
#include <functional>
#include <list>
#include <memory>
#include <mutex>
#include <vector>

namespace tallowmere {

/// Pixels ready for the screen; shared, never written again.
struct DisplayBitmap
{
    std::shared_ptr<const PixelBuffer> pixels;
    bool hasAlpha = false;

    /// The image's own; it must have a bitmap.
    [[nodiscard]] static DisplayBitmap of(const ImagePtr &image);
    explicit operator bool() const { return pixels != nullptr; }
    /// A view of the pixels, not a copy: valid as long as they live.
    [[nodiscard]] QImage view() const;
};

/// Keeps images scaled for the screen, at exact device sizes: reduced by a proper filter, enlarged linearly.
///
/// Bounded by bytes: what was used longest ago goes first, favoured copies last, and what belongs to an image nobody
/// holds any more goes with it. Of one image only the last few sizes are kept: a window that is dragged to another size
/// passes through hundreds. Threads: any.
class DisplayCopies final
{
public:
    static constexpr std::size_t kByteBudget = std::size_t{256} << 20;

    explicit DisplayCopies(std::size_t byteBudget = kByteBudget);

    /// Null when there is no copy of exactly @p size. At its own size an image stands for its copy.
    [[nodiscard]] DisplayBitmap find(const ImagePtr &image, PixelSize size);
    /// The copy best suited to be scaled to @p size in a hurry; null when there is none at all.
    [[nodiscard]] DisplayBitmap findSimilar(const ImagePtr &image, PixelSize size);
    /// Finds or makes. Null when @p cancelled (may be empty) said true or there is no room.
    DisplayBitmap make(const ImagePtr &image, PixelSize size, const std::function<bool()> &cancelled = {});

    /// Favours the copies of @p images and those made from now on; all others are the first to go.
    void favour(const std::vector<ImagePtr> &images);
    /// Whether a copy of @p size could be added without dropping one that is favoured.
    [[nodiscard]] bool hasRoomFor(PixelSize size);
    /// Drops what belongs to images that nobody holds any more.
    void dropUseless();
    [[nodiscard]] std::size_t bytes() const;

private:
    struct Entry
    {
        std::weak_ptr<const Image> image;
        const Image *key; ///< compared, never followed
        PixelSize size;
        std::shared_ptr<const PixelBuffer> pixels;
        bool isFavoured = true;
    };

    [[nodiscard]] bool belongsTo(const Entry &entry, const ImagePtr &image) const;
    void insert(const ImagePtr &image, PixelSize size, std::shared_ptr<const PixelBuffer> pixels);

    /// Under the lock.
    [[nodiscard]] std::size_t favouredBytes() const;

    using Dropped = std::vector<std::shared_ptr<const PixelBuffer>>;
    /// Takes out what @p condition says. What is returned is to be freed outside the lock: unmapping takes its time.
    [[nodiscard]] Dropped drop(const std::function<bool(const Entry &)> &condition);

    const std::size_t m_byteBudget;
    mutable std::mutex m_mutex;
    std::list<Entry> m_entries; ///< most recently used first
    std::size_t m_bytes = 0;
};

} // namespace tallowmere
