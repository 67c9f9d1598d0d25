// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "viewer/rules/ZoomMemory.h"

namespace tallowmere {

double ZoomMemory::zoomScale(const Key &key) const
{
    return key ? m_imageZoomScales.value(*key, 1.0) : 1.0;
}

void ZoomMemory::setZoomScale(const Key &key, double zoom)
{
    if (key)
        m_imageZoomScales.insert(*key, zoom);
}

QPointF ZoomMemory::panOffset(const Key &key) const
{
    return key ? m_imagePanOffsets.value(*key) : QPointF();
}

void ZoomMemory::setPanOffset(const Key &key, QPointF offset)
{
    if (key)
        m_imagePanOffsets.insert(*key, offset);
}

void ZoomMemory::removePanOffset(const Key &key)
{
    if (key)
        m_imagePanOffsets.remove(*key);
}

void ZoomMemory::forget(const FileURL &file)
{
    const auto isOfFile = [&file](auto entry) { return entry.key().fileURL == file; };
    m_imageZoomScales.removeIf(isOfFile);
    m_imagePanOffsets.removeIf(isOfFile);
}

void ZoomMemory::reset(const Key &key)
{
    if (key)
        m_imageZoomScales.remove(*key);
    removePanOffset(key);
}

} // namespace tallowmere
