// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/app/ApplicationFixture.h"

#include "tests/doubles/TestImages.h"

#include <QApplication>
#include <QTest>

namespace tallowmere::test {

namespace {

constexpr int kLimit = 30'000; // ms

} // namespace

ApplicationFixture::ApplicationFixture()
    : cache(std::make_shared<ImageCacheManager>(
          ImageCacheManager::Surroundings{mainQueue, prefetchSync, prefetches, launcher, scope, memory})),
      loader(std::make_shared<ImageLoader>(ImageLoader::Surroundings{mainQueue, launcher, scope, cache}))
{
    cache->setLoader(loader);
    settings.setDefaultFileAssociationsSet(true); // most launches are not the first
    settings.setAutoResizeToImageSize(false);
    settings.setAutoResizeWithAnimation(false);
    delegate = std::make_unique<AppDelegate>(AppDelegate::Surroundings{settings, loader, cache, scope, folderAccess,
                                                                       revealer, trash, labels, attributes, mainQueue,
                                                                       launcher, fileAssociations});
}

ApplicationFixture::~ApplicationFixture()
{
    delegate.reset();
    settle();
}

void ApplicationFixture::launch()
{
    delegate->applicationDidFinishLaunching();
    settle();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window(), kLimit));
    settle();
}

void ApplicationFixture::settle()
{
    do {
        QCoreApplication::processEvents();
        mainQueue.runAll();
        launcher.runAll();
    } while (mainQueue.waiting() > 0);
}

FileURL ApplicationFixture::photo(const QByteArray &name, int width, int height)
{
    return folder.write(name, jpegOf(width, height, {200, 100, 50, 255}));
}

void ApplicationFixture::open(const FileURL &file)
{
    delegate->viewController()->openImage(file);
    settle();
    ASSERT_TRUE(delegate->viewController()->currentImage());
    ASSERT_EQ(delegate->viewController()->currentFile(), file);
}

bool ApplicationFixture::frameBecomes(QSize size) const
{
    return QTest::qWaitFor([this, size] { return window()->frameGeometry().size() == size; }, kLimit);
}

QColor ApplicationFixture::background() const
{
    return view()->findChild<DraggableImageView *>()->backgroundColor();
}

bool ApplicationFixture::showsIdleScreen() const
{
    return view()->findChild<IdleScreen *>()->isVisibleTo(view());
}

} // namespace tallowmere::test
