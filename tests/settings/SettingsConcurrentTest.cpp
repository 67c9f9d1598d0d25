// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "settings/IniDefaultsStore.h"
#include "settings/SettingsManager.h"
#include "tests/doubles/MemoryDefaultsStore.h"
#include "tests/doubles/ScopedEnvironment.h"
#include "tests/doubles/TestFolder.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

namespace tallowmere {
namespace {

void readWhileWriting(SettingsManager &settings)
{
    std::atomic<bool> stop{false};
    std::atomic<int> reads{0};
    std::vector<std::thread> readers;
    for (int i = 0; i < 3; ++i) {
        readers.emplace_back([&] {
            while (!stop) {
                EXPECT_FALSE(settings.showFileTag()) << "never written";
                (void)settings.showFileSize();
                EXPECT_GE(settings.enabledImageExtensions().size(), 6);
                ++reads;
            }
        });
    }
    for (int i = 0; i < 10 || reads < 50; ++i) {
        settings.setShowFileSize(i % 2 == 0);
        EXPECT_EQ(settings.showFileSize(), i % 2 == 0);
        settings.setPngSupportEnabled(i % 2 == 0);
    }
    stop = true;
    for (auto &reader : readers)
        reader.join();
}

TEST(SettingsConcurrently, backgroundThreadsReadTheFileWhileTheMainThreadWrites)
{
    const test::TestFolder folder;
    SettingsManager settings(std::make_unique<IniDefaultsStore>(folder.path() + "/tallowmere.ini"));
    readWhileWriting(settings);
}

TEST(SettingsConcurrently, theSharedInstanceIsOneHoweverManyAskFirst)
{
    const test::TestFolder folder;
    const test::ScopedEnvironment config("XDG_CONFIG_HOME", folder.path());
    std::vector<SettingsManager *> seen(8);
    std::vector<std::thread> threads;
    for (auto &place : seen)
        threads.emplace_back([&place] { place = &SettingsManager::shared(); });
    for (auto &thread : threads)
        thread.join();
    for (const auto *one : seen)
        EXPECT_EQ(one, &SettingsManager::shared());
    SettingsManager::shared().setShowFileTag(true);
    EXPECT_EQ(folder.read("tallowmere/tallowmere.ini"), "[General]\nShowFileTag=true\n");
}

} // namespace
} // namespace tallowmere
