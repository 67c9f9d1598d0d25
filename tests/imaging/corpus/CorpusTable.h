// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/pixels/PixelSize.h"

#include <array>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace tallowmere {

enum class CorpusOutcome
{
    ok,
    fail,
    either
};

/// One row of expected.tsv: what a correct decoder makes of one file.
struct CorpusRow
{
    std::string path; ///< relative to the corpus
    CorpusOutcome outcome = CorpusOutcome::ok;
    std::optional<PixelSize> displayed;
    std::optional<bool> alpha;
    std::optional<std::array<double, 4>> mean; ///< R, G, B, A of the straight stored pixels

    [[nodiscard]] std::string folder() const { return path.substr(0, path.find('/')); }
};

/// The folder named by TALLOWMERE_CORPUS; empty when the variable isn't set.
[[nodiscard]] std::filesystem::path corpusFolder();

/// All rows of the table in @p folder. Throws std::runtime_error when the table can't be read or understood: a row
/// that is skipped in silence would be worse.
[[nodiscard]] std::vector<CorpusRow> readCorpusTable(const std::filesystem::path &folder);

} // namespace tallowmere
