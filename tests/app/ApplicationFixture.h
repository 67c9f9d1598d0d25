// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "app/AppDelegate.h"
#include "app/DefaultFileAssociationManager.h"
#include "app/MainMenu.h"
#include "app/MainWindow.h"
#include "browsing/FolderAccess.h"
#include "imaging/ImageCacheManager.h"
#include "imaging/ImageLoader.h"
#include "platform/FileRevealer.h"
#include "platform/MemoryStatus.h"
#include "settings/SettingsManager.h"
#include "tests/doubles/MemoryDefaultsStore.h"
#include "tests/doubles/RecordingHandlerRegistry.h"
#include "tests/doubles/RecordingScope.h"
#include "tests/doubles/RecordingTrash.h"
#include "tests/doubles/StatedFileFacts.h"
#include "tests/doubles/SteppedQueues.h"
#include "tests/doubles/TestFolder.h"
#include "viewer/DraggableImageView.h"
#include "viewer/DraggableView.h"
#include "viewer/IdleScreen.h"
#include "viewer/ViewController.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace tallowmere::test {

class RevealerDouble final : public FileRevealer
{
public:
    void reveal(const FileURL &file) override { revealed.push_back(file); }

    std::vector<FileURL> revealed;
};

/// Nobody is asked and nothing is granted.
class NoFolderAccess final : public FolderAccess
{
public:
    explicit NoFolderAccess(MainQueue &mainQueue) : m_mainQueue(mainQueue) {}
    void requestAccess(const FileURL &, std::function<void(bool granted)> done) override
    {
        m_mainQueue.async([done = std::move(done)] { done(false); });
    }

private:
    MainQueue &m_mainQueue;
};

/// The whole application but its process: real windows and images over queues that run when the test says so.
class ApplicationFixture : public ::testing::Test
{
protected:
    ApplicationFixture();
    ~ApplicationFixture() override;

    /// The launch sequence, until the window is on screen.
    void launch();
    /// Runs everything that waits in a queue, and what that posts.
    void settle();
    /// Creates a file with a picture in it.
    FileURL photo(const QByteArray &name, int width = 300, int height = 200);
    /// Opens @p file and brings its image in.
    void open(const FileURL &file);
    /// Waits for an animated resize to arrive at a frame of @p size.
    [[nodiscard]] bool frameBecomes(QSize size) const;

    [[nodiscard]] QColor background() const;
    [[nodiscard]] bool showsIdleScreen() const;
    [[nodiscard]] QWidget *view() const { return delegate->viewController()->view(); }
    [[nodiscard]] MainWindow *window() const { return delegate->window(); }
    [[nodiscard]] MainMenu *menu() const { return delegate->menu(); }

    TestFolder folder;
    SettingsManager settings{std::make_unique<MemoryDefaultsStore>()};
    SteppedMainQueue mainQueue;
    SteppedLauncher launcher;
    SteppedSerialQueue prefetchSync;
    SteppedOperationQueue prefetches;
    RecordingScope scope{true};
    PlentifulMemory memory;
    std::shared_ptr<ImageCacheManager> cache;
    std::shared_ptr<ImageLoader> loader;
    NoFolderAccess folderAccess{mainQueue};
    RevealerDouble revealer;
    RecordingTrash trash;
    StatedLabel labels;
    StatedAttributes attributes;
    RecordingHandlerRegistry registry;
    DefaultFileAssociationManager fileAssociations{settings, registry};
    std::unique_ptr<AppDelegate> delegate;
};

} // namespace tallowmere::test
