// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "viewer/ViewController.h"

#include "browsing/FileListManager.h"
#include "imaging/ImageCacheManager.h"
#include "imaging/ImageLoader.h"
#include "imaging/PrefetchPlan.h"
#include "viewer/AccessibleViews.h"
#include "viewer/CopiesAhead.h"
#include "viewer/DeferredListing.h"
#include "viewer/DisplayPreparation.h"
#include "viewer/DraggableImageView.h"
#include "viewer/DraggableView.h"
#include "viewer/IdleScreen.h"
#include "viewer/ProgressSign.h"
#include "viewer/Shell.h"
#include "viewer/WindowFrame.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace tallowmere {

namespace {

/// How far from the current file display copies are kept ready, files to either side.
constexpr qint64 kNeighboursKeptReady = 2;

} // namespace

ViewController::ViewController(const Surroundings &surroundings)
    : m_with(surroundings),
      m_fileListManager(std::make_unique<FileListManager>(surroundings.settings, surroundings.scope)),
      m_deferredListing(std::make_unique<DeferredListing>()),
      m_preparation(std::make_shared<DisplayPreparation>(surroundings.settings)),
      m_copiesAhead(std::make_unique<CopiesAhead>(m_preparation, surroundings.loader, surroundings.launcher))
{
    buildViews();
    m_with.loader->setPreparation(
        [preparation = m_preparation](const ImagePtr &image) { preparation->prepare(image); });
    m_with.loader->setPreviewSize(
        [preparation = m_preparation](PixelSize full) { return preparation->copySizeFor(full); });
    m_with.cache->setPreparation([preparation = m_preparation](const ImagePtr &image, const auto &cancelled) {
        preparation->prepareIfThereIsRoom(image, cancelled);
    });
    m_with.cache->setEvictionHandler([preparation = m_preparation] { preparation->copies().dropUseless(); });
}

ViewController::~ViewController()
{
    delete m_view;
}

void ViewController::buildViews()
{
    installAccessibleViews();
    m_view = new DraggableView;
    connect(m_view, &QObject::destroyed, this, [this] { m_view = nullptr; });
    m_view->setDraggingDelegate(this);
    m_view->setKeyHandler(this);
    m_imageView = new DraggableImageView(m_preparation, m_with.launcher, m_with.mainQueue, m_view);
    m_imageView->setPanningDelegate(this);
    m_idleScreen = new IdleScreen(m_view);
    m_progressSign = new ProgressSign(m_view);
    buildOverlayViews();

    connect(m_view, &DraggableView::resized, this, &ViewController::layOutSubviews);
    connect(m_view, &DraggableView::appeared, this, &ViewController::makeFirstResponder);
    connect(m_view, &DraggableView::appearanceChanged, this, [this] {
        m_with.mainQueue.async([self = QPointer(this)] {
            if (auto *controller = self.data())
                controller->appearanceChanged();
        });
    });
    connect(m_imageView, &DraggableImageView::imagePainted, this, &ViewController::listingMayStart);
    appearanceChanged();
}

void ViewController::layOutSubviews()
{
    m_imageView->setGeometry(m_view->rect());
    m_idleScreen->setGeometry(m_view->rect());
    m_progressSign->layOutIn(m_view->size());
    reapplyZoom();
    layOutOverlays();
    updateDisplayTarget();
}

DraggableView *ViewController::view() const
{
    return m_view;
}

FileURL ViewController::currentFile() const
{
    const FileListManager &list = fileListManager();
    const bool inRange = list.currentIndex >= 0 && list.currentIndex < list.fileURLs.size();
    return inRange ? list.fileURLs.at(list.currentIndex) : FileURL();
}

ImagePtr ViewController::currentImage() const
{
    return m_imageView->image();
}

FileListManager &ViewController::fileListManager() const
{
    m_deferredListing->finish();
    return *m_fileListManager;
}

void ViewController::displayImage(const FileURL &file)
{
    m_isIdle = false;
    ++m_displays;
    m_displayedFile = file;
    m_handCursor.reset();
    showHandCursor();
    updateDisplayTarget();
    updateFileNameDisplay(file);
    updateFileInfo(file);
    updateFileTag(file);
    m_idleScreen->hide();
    const bool averageApplied = applyBackgroundFor(file);

    if (const ImagePtr cached = m_with.cache->imageCache.find(file)) {
        m_progressSign->stop();
        m_arrived = m_displays;
        showImage(file, cached, averageApplied);
        return;
    }
    m_imageView->setImage(nullptr);
    updateTransparencyBackground();
    load(file, averageApplied);
}

void ViewController::load(const FileURL &file, bool averageApplied)
{
    const auto wasSeen = std::make_shared<bool>(false);
    const auto preview = [self = QPointer(this), file, wasSeen, display = m_displays](const ImagePtr &image) {
        auto *controller = self.data();
        if (controller && display == controller->m_displays)
            *wasSeen = controller->showPreview(file, image);
    };
    const auto completion = [self = QPointer(this), file, averageApplied, wasSeen](const ImagePtr &image) {
        auto *controller = self.data();
        if (!controller)
            return;
        // Left and come back to in the meantime: the picture awaited comes with whichever decode ends first.
        const bool isAwaited = !controller->isIdle() && file == controller->m_displayedFile;
        if (isAwaited && controller->m_arrived == controller->m_displays)
            return;
        // Who has seen it and gone on does not want it back, and an emptied window stays empty.
        if (image && !isAwaited && (*wasSeen || controller->isIdle()))
            return;
        if (isAwaited)
            controller->m_progressSign->stop();
        if (image && isAwaited)
            controller->m_arrived = controller->m_displays;
        if (image && isAwaited && controller->showsPreviewOf(image))
            return controller->replacePreview(file, image, averageApplied);
        if (image)
            return controller->showImage(file, image, averageApplied);
        if (const ImagePtr &shown = controller->m_imageView->image(); isAwaited && shown && shown->isPreview())
            controller->m_imageView->setImage(nullptr);
        controller->listingMayStart();
    };
    if (auto progress = m_with.loader->loadImage(file, ImageLoader::kMaxPixelSize, completion, preview))
        m_progressSign->start(std::move(progress));
}

void ViewController::showImage(const FileURL &file, const ImagePtr &image, bool averageApplied)
{
    m_imageView->setImage(image);
    m_idleScreen->hide();
    updateTransparencyBackground();
    updateOverlayVisibility();
    showAverageOf(file, image, averageApplied);
    fitToNewImage(file, image);
    m_imageView->wantCopy(m_preparation->copySizeFor(*image));
    // At once: a key that is held down would otherwise keep the picture waiting behind the next key press.
    if (m_view->isVisible())
        m_imageView->repaint();
    else
        listingMayStart();
    prepareNeighbours();
}

void ViewController::showAverageOf(const FileURL &file, const ImagePtr &image, bool wasApplied)
{
    if (!wasApplied && !applyBackgroundFor(file) && m_with.settings.autoResizeToImageSize())
        computeAverageColor(file, image);
}

void ViewController::fitToNewImage(const FileURL &file, const ImagePtr &image)
{
    if (m_with.settings.autoResizeToImageSize()) {
        fitWindowToImage(m_with.settings.autoResizeWithAnimation(), [self = QPointer(this), file] {
            auto *controller = self.data();
            if (!controller)
                return;
            controller->resetZoomAfterAutoResize(file);
            controller->reapplyZoom();
        });
    } else {
        applyZoom(image);
    }
}

/// The picture as far as the eye is concerned. What is computed from pixels waits for all of them. Answers whether it
/// is shown.
bool ViewController::showPreview(const FileURL &file, const ImagePtr &image)
{
    // The screen may have turned out larger than it looked when the decode began: rather later than blurred.
    const PixelSize wanted = m_preparation->copySizeFor(*image);
    const PixelSize had = image->decoded().pixels.size();
    const bool isMagnified = !m_with.settings.autoResizeToImageSize() && currentZoomScale() > 1.0;
    if (isMagnified || wanted.width > had.width || wanted.height > had.height)
        return false;
    m_progressSign->stop();
    m_imageView->setImage(image);
    updateTransparencyBackground();
    updateOverlayVisibility();
    fitToNewImage(file, image);
    if (m_view->isVisible())
        m_imageView->repaint();
    return true;
}

bool ViewController::showsPreviewOf(const ImagePtr &image) const
{
    const ImagePtr shown = m_imageView->image();
    return shown && shown->isPreview() && shown->pixelSize() == image->pixelSize();
}

/// The window has the size of the picture or is on its way there, and the user may have zoomed in since: only the
/// pixels change.
void ViewController::replacePreview(const FileURL &file, const ImagePtr &image, bool averageApplied)
{
    m_imageView->setImage(image);
    updateTransparencyBackground();
    showAverageOf(file, image, averageApplied);
    m_imageView->wantCopy(m_preparation->copySizeFor(*image));
    if (!m_view->isVisible())
        listingMayStart();
    prepareNeighbours();
}

void ViewController::showIdleState()
{
    m_isIdle = true;
    ++m_displays; // no preview of what is still being decoded
    m_deferredListing->finish();
    m_progressSign->stop();
    m_imageView->setImage(nullptr);
    updateTransparencyBackground();
    m_idleScreen->show();
    m_fileListManager->fileURLs.clear();
    m_fileListManager->currentIndex = 0;
    updateFileNameDisplay({});
    applyFileInfo({});
    updateFileTag({});
    applyBackgroundColor(windowBackgroundColor());
    m_with.shell.refreshMenuItems();
    takeIdleSize();
}

void ViewController::showEarlierInList()
{
    step(&FileListManager::previousFileURL);
}

void ViewController::showLaterInList()
{
    step(&FileListManager::nextFileURL);
}

void ViewController::step(FileURL (FileListManager::*move)())
{
    const FileURL file = (fileListManager().*move)();
    if (file.empty())
        return;
    updateDisplayTarget();
    prefetchAroundCurrentFile();
    displayImage(file);
}

void ViewController::prefetchAroundCurrentFile()
{
    if (!m_fileListManager->fileURLs.isEmpty())
        m_with.cache->prefetchImages(m_fileListManager->fileURLs, m_fileListManager->currentIndex);
}

/// Copies made when the neighbours were decoded may have been evicted since, or be for another window size. Those of
/// what has been left behind make room first.
void ViewController::prepareNeighbours()
{
    if (m_deferredListing->isPutOff())
        return; // the list is still that of another folder
    const QList<FileURL> &files = m_fileListManager->fileURLs;
    const qint64 current = m_fileListManager->currentIndex;
    std::vector<ImagePtr> near{m_imageView->image()};
    const auto addIfDecoded = [&](qint64 index) {
        const bool isDecoded = index >= 0 && m_with.cache->imageCache.contains(files.at(index));
        if (isDecoded)
            near.push_back(m_with.cache->imageCache.find(files.at(index)));
        return isDecoded;
    };
    const auto noneLeftOut = [](std::int64_t) { return false; };
    for (const PlannedPrefetch &planned :
         prefetchPlan(files.size(), current, m_with.cache->prefetchBefore, m_with.cache->prefetchAfter, noneLeftOut))
        addIfDecoded(planned.index);
    std::vector<ImagePtr> missing;
    const qint64 reach = std::min<qint64>(kNeighboursKeptReady, files.size() / 2);
    for (qint64 distance = 1; distance <= reach; ++distance) {
        for (const qint64 offset : {-distance, distance}) {
            // Unlike what is decoded ahead, stepping goes round at the ends.
            if (addIfDecoded((current + offset + files.size()) % files.size()) &&
                !m_preparation->isPrepared(near.back()))
                missing.push_back(near.back());
        }
    }
    m_preparation->copies().favour(near);
    m_copiesAhead->want(std::move(missing));
}

const std::optional<UndoState> &ViewController::undoState() const
{
    return m_undoState;
}

void ViewController::setUndoState(std::optional<UndoState> state)
{
    m_undoState = std::move(state);
    Q_EMIT undoStateChanged();
}

} // namespace tallowmere
