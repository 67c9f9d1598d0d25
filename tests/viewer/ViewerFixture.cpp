// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/viewer/ViewerFixture.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QScreen>
#include <QTest>
#include <QWindow>

#include <algorithm>

namespace tallowmere::test {

ImagePtr imageOf(std::uint32_t width, std::uint32_t height, std::uint32_t argb)
{
    DecodedImage decoded;
    decoded.pixels = PixelBuffer::allocate({width, height});
    decoded.storedSize = {width, height};
    decoded.hasAlpha = (argb >> 24) != 0xff;
    for (std::uint32_t y = 0; y < height; ++y) {
        auto *row = reinterpret_cast<std::uint32_t *>(decoded.pixels.row(y));
        std::fill(row, row + width, argb);
    }
    return std::make_shared<const Image>(std::move(decoded));
}

ViewerFixture::ViewerFixture()
    : cache(std::make_shared<ImageCacheManager>(
          ImageCacheManager::Surroundings{mainQueue, prefetchSync, prefetches, launcher, scope, memory})),
      loader(std::make_shared<ImageLoader>(ImageLoader::Surroundings{mainQueue, launcher, scope, cache})),
      window(std::make_unique<QMainWindow>())
{
    cache->setLoader(loader);
    // Animations have tests of their own.
    settings.setAutoResizeWithAnimation(false);
    settings.setAutoResizeToImageSize(false);
    controller = std::make_unique<ViewController>(ViewController::Surroundings{
        settings, loader, cache, scope, folderAccess, revealer, trash, labels, attributes, mainQueue, launcher, shell});
    window->setCentralWidget(controller->view());
    window->resize(600, 400);
}

ViewerFixture::~ViewerFixture()
{
    controller.reset();
    mainQueue.runAll();
}

FileURL ViewerFixture::cachedFile(const QByteArray &name, ImagePtr image)
{
    const FileURL file = folder.write(name);
    cache->insertImage(file, std::move(image));
    return file;
}

void ViewerFixture::fill(const std::vector<QByteArray> &names)
{
    for (const QByteArray &name : names)
        (void)cachedFile(name);
}

void ViewerFixture::open(const FileURL &file)
{
    controller->openImage(file);
    (void)controller->fileListManager();
}

void ViewerFixture::press(int key, Qt::KeyboardModifiers modifiers)
{
    QKeyEvent event(QEvent::KeyPress, key, modifiers);
    QCoreApplication::sendEvent(controller->view(), &event);
}

void ViewerFixture::showWindow()
{
    window->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(window.get(), 30'000));
}

DraggableImageView *ViewerFixture::imageView() const
{
    return controller->view()->findChild<DraggableImageView *>();
}

IdleScreen *ViewerFixture::idleScreen() const
{
    return controller->view()->findChild<IdleScreen *>();
}

QRectF ViewerFixture::visibleFrame() const
{
    return window->screen()->availableGeometry();
}

} // namespace tallowmere::test
