// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "benchmarks/Clock.h"
#include "benchmarks/Measurements.h"
#include "browsing/FileListManager.h"
#include "platform/SecurityScope.h"
#include "settings/IniDefaultsStore.h"
#include "settings/SettingsManager.h"

#include <dirent.h>

namespace tallowmere::bench {
namespace {

std::optional<double> timeListing(const std::filesystem::path &folder, int count)
{
    // A store without a file: the settings as they come.
    const SettingsManager settings(std::make_unique<IniDefaultsStore>(QByteArray()));
    NoSecurityScope scope;
    FileListManager list(settings, scope);
    const FileURL url = FileURL::fromPath(QByteArray::fromStdString(folder.string()));
    bool listed = false;
    const double passed = timeOf([&] { listed = list.reloadFiles(url); });
    return listed && list.fileURLs.size() == count ? std::optional(passed) : std::nullopt;
}

std::optional<double> timeReading(const std::filesystem::path &folder, int count)
{
    int entries = 0;
    const double passed = timeOf([&] {
        DIR *directory = ::opendir(folder.c_str());
        while (directory && ::readdir(directory))
            ++entries;
        if (directory)
            ::closedir(directory);
    });
    return entries >= count ? std::optional(passed) : std::nullopt;
}

} // namespace

void measureListing(const PhotoStore &store, Results &results)
{
    constexpr int kCounts[] = {20'000, 100'000};
    for (const int count : kCounts) {
        const Row row{"Listing and sorting a folder", std::to_string(count) + " names"};
        if (!results.wants(row))
            continue;
        const auto folder = store.folderOfNames(count);
        results.add(row, kProgram, timeListing(folder, count));
        results.add(row, kFloor, timeReading(folder, count));
    }
}

} // namespace tallowmere::bench
