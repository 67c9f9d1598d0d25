// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/ImageCacheManager.h"
#include "imaging/ImageLoader.h"
#include "platform/MemoryStatus.h"
#include "tests/doubles/RecordingScope.h"
#include "tests/doubles/SteppedQueues.h"
#include "tests/doubles/TestFolder.h"
#include "tests/doubles/TestImages.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <vector>

namespace tallowmere::test {

/// Says what the test has put in.
class PlannedMemory final : public MemoryStatus
{
public:
    std::optional<std::size_t> budget;
    int asked = 0;

    [[nodiscard]] std::optional<std::size_t> cacheBudget() override
    {
        ++asked;
        return budget;
    }
};

/// A loader and a cache over queues that the test steps by hand.
class SteppedPipeline : public testing::Test
{
protected:
    static constexpr int kMaxSize = 4000;

    SteppedPipeline() { m_cache->setLoader(m_loader); }

    /// A small valid picture.
    FileURL picture(const QByteArray &name, Rgba colour = {200, 100, 50, 255}) const
    {
        return m_folder.write(name, pngOf(8, 6, colour));
    }
    /// Without reading any file.
    static ImagePtr anyImage() { return std::make_shared<const Image>(QSizeF(1, 1)); }
    static std::span<const std::byte> bytes(const QByteArray &file)
    {
        return std::as_bytes(std::span(file.constData(), static_cast<std::size_t>(file.size())));
    }

    const TestFolder m_folder;
    SteppedMainQueue m_main;
    SteppedSerialQueue m_sync;
    SteppedOperationQueue m_operations;
    SteppedLauncher m_launcher;
    RecordingScope m_scope;
    PlannedMemory m_memory;
    std::shared_ptr<ImageCacheManager> m_cache = std::make_shared<ImageCacheManager>(
        ImageCacheManager::Surroundings{m_main, m_sync, m_operations, m_launcher, m_scope, m_memory});
    std::shared_ptr<ImageLoader> m_loader =
        std::make_shared<ImageLoader>(ImageLoader::Surroundings{m_main, m_launcher, m_scope, m_cache});
};

/// What came of one load: how often, and the last image.
struct Delivered
{
    int times = 0;
    ImagePtr image;

    [[nodiscard]] ImageLoader::Completion completion()
    {
        return [this](ImagePtr delivered) {
            ++times;
            image = std::move(delivered);
        };
    }
};

} // namespace tallowmere::test
