// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "browsing/FileListManager.h"
#include "browsing/FolderAccess.h"
#include "imaging/ImageCacheManager.h"
#include "imaging/ImageLoader.h"
#include "platform/FileRevealer.h"
#include "platform/MemoryStatus.h"
#include "settings/SettingsManager.h"
#include "tests/doubles/MemoryDefaultsStore.h"
#include "tests/doubles/RecordingScope.h"
#include "tests/doubles/RecordingTrash.h"
#include "tests/doubles/StatedFileFacts.h"
#include "tests/doubles/SteppedQueues.h"
#include "tests/doubles/TestFolder.h"
#include "viewer/DraggableImageView.h"
#include "viewer/DraggableView.h"
#include "viewer/IdleScreen.h"
#include "viewer/Shell.h"
#include "viewer/ViewController.h"

#include <QMainWindow>

#include <gtest/gtest.h>

#include <memory>
#include <utility>
#include <vector>

namespace tallowmere::test {

/// An image all of one colour, with or without pixels.
[[nodiscard]] ImagePtr imageOf(std::uint32_t width, std::uint32_t height, std::uint32_t argb = 0xff336699);

class RecordingShell final : public Shell
{
public:
    void refreshMenuItems() override { ++menuRefreshes; }
    void refreshSettingsControls() override { ++settingsRefreshes; }
    void resizeWindowToImage() override { ++fitToggles; }
    void hideApplication() override { ++hides; }

    int menuRefreshes = 0;
    int settingsRefreshes = 0;
    int fitToggles = 0;
    int hides = 0;
};

class RecordingRevealer final : public FileRevealer
{
public:
    void reveal(const FileURL &file) override { revealed.push_back(file); }

    std::vector<FileURL> revealed;
};

/// Keeps the questions until the test answers them.
class PendingFolderAccess final : public FolderAccess
{
public:
    void requestAccess(const FileURL &folder, std::function<void(bool)> done) override
    {
        asked.push_back(folder);
        answers.push_back(std::move(done));
    }

    std::vector<FileURL> asked;
    std::vector<std::function<void(bool)>> answers;
};

/// A viewer in a window, over queues that run when the test says so.
class ViewerFixture : public ::testing::Test
{
protected:
    ViewerFixture();
    ~ViewerFixture() override;

    /// Creates the file and puts an image for it into the cache.
    FileURL cachedFile(const QByteArray &name, ImagePtr image = imageOf(300, 200));
    /// The same for several, of which none is shown yet.
    void fill(const std::vector<QByteArray> &names);
    /// Opens a cached file and brings the list in.
    void open(const FileURL &file);
    void press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void showWindow();

    [[nodiscard]] DraggableImageView *imageView() const;
    [[nodiscard]] IdleScreen *idleScreen() const;
    [[nodiscard]] QRectF frame() const { return window->frameGeometry(); }
    /// What the window has around the view.
    [[nodiscard]] QSize frameExtra() const { return window->frameGeometry().size() - controller->view()->size(); }
    [[nodiscard]] QRectF visibleFrame() const;

    TestFolder folder;
    SettingsManager settings{std::make_unique<MemoryDefaultsStore>()};
    SteppedMainQueue mainQueue;
    SteppedLauncher launcher;
    SteppedSerialQueue prefetchSync;
    SteppedOperationQueue prefetches;
    RecordingScope scope{false};
    PlentifulMemory memory;
    std::shared_ptr<ImageCacheManager> cache;
    std::shared_ptr<ImageLoader> loader;
    PendingFolderAccess folderAccess;
    RecordingRevealer revealer;
    RecordingTrash trash;
    StatedLabel labels;
    StatedAttributes attributes;
    RecordingShell shell;
    std::unique_ptr<QMainWindow> window;
    std::unique_ptr<ViewController> controller;
};

} // namespace tallowmere::test
