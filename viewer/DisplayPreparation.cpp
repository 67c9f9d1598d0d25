// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "viewer/DisplayPreparation.h"

#include "settings/SettingsManager.h"
#include "viewer/ImagePlacement.h"

namespace tallowmere {

PixelSize DisplayTarget::copySizeFor(PixelSize image, bool followsImage) const
{
    if (!followsImage || !screen)
        return ImagePlacement::of(image, viewSize, scale).copySize();
    // Windows have whole points.
    const QSizeF content = WindowGeometry::fittedImageSize(image, *screen, frameExtra).toSize();
    return ImagePlacement::of(image, content, scale).copySize();
}

DisplayPreparation::DisplayPreparation(const SettingsManager &settings, std::size_t byteBudget)
    : m_settings(settings), m_copies(byteBudget)
{}

void DisplayPreparation::setTarget(const DisplayTarget &target)
{
    const std::lock_guard lock(m_mutex);
    m_target = target;
}

PixelSize DisplayPreparation::copySizeFor(PixelSize image) const
{
    const bool followsImage = m_settings.autoResizeToImageSize();
    const std::lock_guard lock(m_mutex);
    return m_target.copySizeFor(image, followsImage);
}

void DisplayPreparation::prepare(const ImagePtr &image, const Cancelled &cancelled)
{
    if (image && image->hasBitmap())
        m_copies.make(image, copySizeFor(*image), cancelled);
}

void DisplayPreparation::prepareIfThereIsRoom(const ImagePtr &image, const Cancelled &cancelled)
{
    if (image && image->hasBitmap() && m_copies.hasRoomFor(copySizeFor(*image)))
        prepare(image, cancelled);
}

bool DisplayPreparation::isPrepared(const ImagePtr &image)
{
    if (!image || !image->hasBitmap())
        return true;
    const PixelSize size = copySizeFor(*image);
    return size.empty() || m_copies.find(image, size);
}

} // namespace tallowmere
