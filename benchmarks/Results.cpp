// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "benchmarks/Results.h"

#include <algorithm>
#include <cmath>
#include <iomanip>
#include <sstream>

namespace tallowmere::bench {
namespace {

constexpr double kLow = 0.1;
constexpr double kHigh = 0.9;

std::string number(double value)
{
    std::ostringstream text;
    text << std::fixed << std::setprecision(value < 10 ? 2 : value < 1000 ? 1 : 0) << value;
    return text.str();
}

std::string spread(const Samples &samples)
{
    const auto low = samples.quantile(kLow);
    const auto high = samples.quantile(kHigh);
    return low && high ? number(*low) + " – " + number(*high) : std::string("–");
}

std::string middle(const Samples &samples)
{
    const auto median = samples.median();
    if (!median)
        return samples.failures > 0 ? "not shown" : "–";
    return number(*median) + (samples.failures > 0 ? " (" + std::to_string(samples.failures) + " × not shown)" : "");
}

std::string ratio(std::optional<double> value, std::optional<double> to)
{
    if (!value || !to || *to <= 0)
        return "–";
    std::ostringstream text;
    text << std::fixed << std::setprecision(2) << *value / *to << " ×";
    return text.str();
}

const Samples &column(const std::map<std::string, Samples> &columns, const std::string &name)
{
    static const Samples none;
    const auto found = columns.find(name);
    return found == columns.end() ? none : found->second;
}

} // namespace

std::optional<double> Samples::quantile(double share) const
{
    if (values.empty())
        return std::nullopt;
    auto sorted = values;
    std::ranges::sort(sorted);
    const double at = share * static_cast<double>(sorted.size() - 1);
    const auto below = static_cast<std::size_t>(at);
    const auto above = std::min(below + 1, sorted.size() - 1);
    return sorted[below] + (sorted[above] - sorted[below]) * (at - static_cast<double>(below));
}

bool Results::wants(const Row &row) const
{
    return row.name.find(m_word) != std::string::npos || row.section.find(m_word) != std::string::npos;
}

bool Results::wants(const Row &row, const std::string &name) const
{
    if (!wants(row))
        return false;
    for (const Line &line : m_lines) {
        if (line.row.section == row.section && line.row.name == row.name)
            return !column(line.columns, name).givenUp();
    }
    return true;
}

Results::Line &Results::lineFor(const Row &row)
{
    const auto found = std::ranges::find_if(
        m_lines, [&](const Line &line) { return line.row.section == row.section && line.row.name == row.name; });
    if (found != m_lines.end())
        return *found;
    m_lines.push_back({row, {}});
    return m_lines.back();
}

void Results::add(const Row &row, const std::string &name, std::optional<double> value)
{
    if (std::ranges::find(m_columns, name) == m_columns.end())
        m_columns.push_back(name);
    Samples &samples = lineFor(row).columns[name];
    if (value)
        samples.values.push_back(*value);
    else
        ++samples.failures;
}

void Results::discardValues()
{
    for (Line &line : m_lines) {
        for (auto &[name, samples] : line.columns)
            samples.values.clear();
    }
}

void Results::printSection(std::ostream &stream, const std::string &section) const
{
    stream << "\n### " << section << "\n\n"
           << "| | Tallowmere, median | p10 – p90 | floor, median | p10 – p90 | ratio of the medians |\n"
           << "|---|---:|---:|---:|---:|---:|\n";
    for (const Line &line : m_lines) {
        if (line.row.section != section)
            continue;
        const Samples &own = column(line.columns, kProgram);
        const Samples &floor = column(line.columns, kFloor);
        stream << "| " << line.row.name << ", " << line.row.unit << " | " << middle(own) << " | " << spread(own)
               << " | " << middle(floor) << " | " << spread(floor) << " | " << ratio(own.median(), floor.median())
               << " |\n";
    }
}

std::vector<std::string> Results::peers() const
{
    auto names = m_columns;
    std::erase_if(names, [](const std::string &name) { return name == kProgram || name == kFloor; });
    return names;
}

void Results::printPeers(std::ostream &stream) const
{
    const auto names = peers();
    if (names.empty())
        return;
    stream << "\n### Beside the peers: median (p10 – p90)\n\n| | Tallowmere |";
    for (const auto &name : names)
        stream << ' ' << name << " |";
    stream << " ratio to the best peer |\n|---|---:|";
    for (std::size_t i = 0; i < names.size(); ++i)
        stream << "---:|";
    stream << "---:|\n";
    for (const Line &line : m_lines) {
        std::optional<double> best;
        std::string cells;
        for (const auto &name : names) {
            const Samples &samples = column(line.columns, name);
            const auto median = samples.median();
            if (median)
                best = std::min(best.value_or(*median), *median);
            cells += ' ' + middle(samples) + (median ? " (" + spread(samples) + ")" : std::string()) + " |";
        }
        if (std::ranges::none_of(names, [&](const auto &name) { return line.columns.contains(name); }))
            continue;
        const Samples &own = column(line.columns, kProgram);
        stream << "| " << line.row.section << ": " << line.row.name << ", " << line.row.unit << " | " << middle(own)
               << " (" << spread(own) << ") |" << cells << ' ' << ratio(own.median(), best) << " |\n";
    }
}

void Results::print(std::ostream &stream) const
{
    std::vector<std::string> sections;
    for (const Line &line : m_lines) {
        if (std::ranges::find(sections, line.row.section) == sections.end())
            sections.push_back(line.row.section);
    }
    for (const auto &section : sections)
        printSection(stream, section);
    printPeers(stream);
}

} // namespace tallowmere::bench
