// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/freedesktop/FreedesktopTrash.h"
#include "tests/doubles/TestFolder.h"

#include <QList>

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <filesystem>

namespace tallowmere::test {

[[nodiscard]] inline QList<QByteArray> namesIn(const QByteArray &folder)
{
    QList<QByteArray> names;
    std::error_code ignored;
    for (const auto &each : std::filesystem::directory_iterator(folder.toStdString(), ignored))
        names.append(QByteArray::fromStdString(each.path().filename().string()));
    std::sort(names.begin(), names.end());
    return names;
}

/// Nothing is at 0.
[[nodiscard]] inline mode_t modeOf(const QByteArray &path)
{
    struct stat found
    {};
    return ::lstat(path.constData(), &found) == 0 ? found.st_mode : 0;
}

/// A folder of pictures and a home trash, both in one temporary folder.
struct TrashFolders
{
    TrashFolders() { (void)folder.makeFolder("pictures"); }

    [[nodiscard]] FileURL add(const QByteArray &name, const QByteArray &contents = "picture") const
    {
        return folder.write("pictures/" + name, contents);
    }
    [[nodiscard]] QList<QByteArray> pictures() const { return namesIn(folder.at("pictures").path()); }
    [[nodiscard]] QList<QByteArray> binned() const { return namesIn(folder.at("data/Trash/files").path()); }
    [[nodiscard]] QList<QByteArray> notes() const { return namesIn(folder.at("data/Trash/info").path()); }
    [[nodiscard]] QByteArray note(const QByteArray &name) const
    {
        return folder.read("data/Trash/info/" + name + ".trashinfo");
    }
    [[nodiscard]] QByteArray contents(const FileURL &file) const
    {
        return folder.read(file.path().sliced(folder.path().size() + 1));
    }

    TestFolder folder;
    FreedesktopTrash trash{folder.at("data").path()};
};

class TrashTest : public ::testing::Test, protected TrashFolders
{};

} // namespace tallowmere::test
