// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "CorpusTable.h"

#include <cstdlib>
#include <fstream>
#include <map>
#include <sstream>
#include <stdexcept>

namespace tallowmere {

namespace {

using Columns = std::map<std::string, std::size_t>;

std::vector<std::string> split(const std::string &text, char separator)
{
    std::vector<std::string> parts;
    std::size_t start = 0;
    for (std::size_t end = text.find(separator); end != std::string::npos; end = text.find(separator, start)) {
        parts.push_back(text.substr(start, end - start));
        start = end + 1;
    }
    parts.push_back(text.substr(start));
    return parts;
}

CorpusOutcome outcomeOf(const std::string &word)
{
    if (word == "ok")
        return CorpusOutcome::ok;
    if (word == "fail")
        return CorpusOutcome::fail;
    if (word == "either")
        return CorpusOutcome::either;
    throw std::runtime_error("expected.tsv: unknown outcome " + word);
}

CorpusRow rowOf(const std::vector<std::string> &cells, const Columns &columns)
{
    const auto cell = [&](const char *column) -> const std::string & { return cells.at(columns.at(column)); };
    CorpusRow row;
    row.path = cell("path");
    row.outcome = outcomeOf(cell("outcome"));
    if (cell("width") != "-" && cell("height") != "-") {
        row.displayed = PixelSize{static_cast<std::uint32_t>(std::stoul(cell("width"))),
                                  static_cast<std::uint32_t>(std::stoul(cell("height")))};
    }
    if (cell("alpha") != "-")
        row.alpha = cell("alpha") == "1";
    if (cell("mean_rgba") != "-") {
        const auto numbers = split(cell("mean_rgba"), ',');
        row.mean = {std::stod(numbers.at(0)), std::stod(numbers.at(1)), std::stod(numbers.at(2)),
                    std::stod(numbers.at(3))};
    }
    return row;
}

} // namespace

std::filesystem::path corpusFolder()
{
    const char *folder = std::getenv("TALLOWMERE_CORPUS");
    return folder ? folder : "";
}

std::vector<CorpusRow> readCorpusTable(const std::filesystem::path &folder)
{
    std::ifstream table(folder / "expected.tsv");
    std::string line;
    if (!std::getline(table, line))
        throw std::runtime_error("no expected.tsv in " + folder.string());
    Columns columns;
    const auto names = split(line, '\t');
    for (std::size_t i = 0; i < names.size(); ++i)
        columns[names[i]] = i;
    std::vector<CorpusRow> rows;
    while (std::getline(table, line)) {
        if (!line.empty())
            rows.push_back(rowOf(split(line, '\t'), columns));
    }
    return rows;
}

} // namespace tallowmere
