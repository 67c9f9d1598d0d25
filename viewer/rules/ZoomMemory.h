// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "viewer/rules/ZoomKey.h"

#include <QHash>
#include <QPointF>

#include <optional>

namespace tallowmere {

/// The zoom and the pan of every file that was zoomed or moved, per window size.
///
/// Offsets are in points of the unscaled image, y upwards. "No key" stands for no current file or no window:
/// look-ups then give the defaults, changes do nothing. One thread.
class ZoomMemory final
{
public:
    using Key = std::optional<ZoomKey>;

    /// 1 when nothing is remembered.
    [[nodiscard]] double zoomScale(const Key &key) const;
    void setZoomScale(const Key &key, double zoom);
    /// (0, 0) when nothing is remembered.
    [[nodiscard]] QPointF panOffset(const Key &key) const;
    void setPanOffset(const Key &key, QPointF offset);
    void removePanOffset(const Key &key);
    /// Whatever the size of the window was.
    void forget(const FileURL &file);
    /// Zoom 1 and no offset, from now on. Keeps no entry: a file only shown must not cost forget() anything.
    void reset(const Key &key);

private:
    QHash<ZoomKey, double> m_imageZoomScales;
    QHash<ZoomKey, QPointF> m_imagePanOffsets;
};

} // namespace tallowmere
