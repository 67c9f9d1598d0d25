// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Trash.h"

#include <functional>
#include <optional>
#include <utility>
#include <vector>

namespace tallowmere::test {

/// Answers as it is told to and moves nothing by itself.
class RecordingTrash final : public Trash
{
public:
    Moved trashItem(const FileURL &file) override
    {
        trashed.push_back(file);
        if (whenTrashing)
            whenTrashing(file);
        return answer;
    }
    std::optional<QString> restoreItem(const FileURL &from, const FileURL &to) override
    {
        restored.emplace_back(from, to);
        if (whenRestoring)
            whenRestoring(from, to);
        return restoreAnswer;
    }

    Moved answer;
    std::optional<QString> restoreAnswer;
    std::function<void(const FileURL &)> whenTrashing;
    std::function<void(const FileURL &from, const FileURL &to)> whenRestoring;
    std::vector<FileURL> trashed;
    std::vector<std::pair<FileURL, FileURL>> restored;
};

} // namespace tallowmere::test
