// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "support/FileURL.h"

#include <QByteArray>
#include <QList>

#include <span>

namespace tallowmere {

/// What the words behind the program's name ask for. There are no options of our own: words are files, as bytes.
struct CommandLine
{
    QList<FileURL> files;
    QList<QByteArray> refusals;         ///< one line for standard error each
    QList<QByteArray> toolkitArguments; ///< Qt's own options with their values, for QApplication

    /// Words were refused and nothing is left to open: say so and exit with status 2.
    [[nodiscard]] bool nothingLeft() const { return files.isEmpty() && !refusals.isEmpty(); }
};

/// @p words without the program's name. Behind "--" every word is a file.
[[nodiscard]] CommandLine parseCommandLine(std::span<const char *const> words);

} // namespace tallowmere
