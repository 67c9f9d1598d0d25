// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "viewer/DisplayCopies.h"
#include "viewer/WindowGeometry.h"

#include <QSizeF>

#include <functional>
#include <mutex>
#include <optional>

namespace tallowmere {

class SettingsManager;

/// What the next image will be shown in, as far as one can tell.
struct DisplayTarget
{
    QSizeF viewSize;                  ///< points; empty: unknown
    double scale = 1.0;               ///< device pixels per point
    std::optional<ScreenArea> screen; ///< absent: the window won't follow the image
    QSizeF frameExtra;                ///< points

    /// @p followsImage: the window is going to be fitted to the image. Empty when there is no telling.
    [[nodiscard]] PixelSize copySizeFor(PixelSize image, bool followsImage) const;
};

/// Makes display copies before they are asked for, at the size they are going to be shown at.
///
/// Threads: any; the target is set by the main thread.
class DisplayPreparation final
{
public:
    /// @p settings outlives this.
    explicit DisplayPreparation(const SettingsManager &settings, std::size_t byteBudget = DisplayCopies::kByteBudget);

    void setTarget(const DisplayTarget &target);
    using Cancelled = std::function<bool()>;

    /// Null images and those that need no copy are passed over. Takes as long as the scaling does, unless @p cancelled
    /// says true.
    void prepare(const ImagePtr &image, const Cancelled &cancelled = {});
    /// The same for an image that may never be shown: it takes the place of no copy that is favoured.
    void prepareIfThereIsRoom(const ImagePtr &image, const Cancelled &cancelled = {});
    /// Whether prepare() would have nothing to do.
    [[nodiscard]] bool isPrepared(const ImagePtr &image);
    /// The size prepare() would make; empty when there is no telling, or no bitmap.
    [[nodiscard]] PixelSize copySizeFor(const Image &image) const { return copySizeFor(image.pixelSize()); }
    [[nodiscard]] PixelSize copySizeFor(PixelSize image) const;

    [[nodiscard]] DisplayCopies &copies() { return m_copies; }

private:
    const SettingsManager &m_settings;
    DisplayCopies m_copies;
    mutable std::mutex m_mutex;
    DisplayTarget m_target;
};

} // namespace tallowmere
