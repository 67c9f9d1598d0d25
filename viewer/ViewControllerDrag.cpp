// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/ImageCacheManager.h"
#include "imaging/ImageLoader.h"
#include "viewer/IdleScreen.h"
#include "viewer/rules/DraggingInfo.h"
#include "viewer/ViewController.h"

namespace tallowmere {

DragOperation ViewController::draggingEntered(const DraggingInfo &info)
{
    return draggingUpdated(info);
}

DragOperation ViewController::draggingUpdated(const DraggingInfo &info)
{
    const auto file = info.firstAcceptableFile(m_with.settings.enabledImageExtensions());
    const DragState::Hover hover = m_dragState.hovered(file, !currentFile().empty(), !m_idleScreen->isHidden());
    if (hover.hidesIdleScreen)
        m_idleScreen->hide();
    if (hover.prepare)
        prepareDraggedFile(*hover.prepare);
    return hover.operation;
}

bool ViewController::performDragOperation(const DraggingInfo &info)
{
    const auto file = m_dragState.dropped(info.firstAcceptableFile(m_with.settings.enabledImageExtensions()));
    if (!file)
        return false;
    openImage(*file);
    return true;
}

void ViewController::draggingExited()
{
    // A file may have been opened by other means while the drag hovered: it stays.
    if (m_dragState.exited() && isIdle())
        showIdleState();
}

/// Decoded, and its average colour known, by the time it is dropped. Its folder is listed only then: that is quick
/// beside a decode, and a list of another folder must not replace the one in use while the drag may still leave.
void ViewController::prepareDraggedFile(const FileURL &file)
{
    m_with.loader->loadImage(file, ImageLoader::kMaxPixelSize, [self = QPointer(this), file](const ImagePtr &image) {
        auto *controller = self.data();
        if (controller && image && !controller->m_with.cache->averageColorCache.contains(file))
            controller->storeAverageColor(file, image, {});
    });
}

} // namespace tallowmere
