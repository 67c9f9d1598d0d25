// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

namespace tallowmere::bench {

/// The names of the two columns that every table has; another column is a peer, called by its name.
inline constexpr const char *kProgram = "Tallowmere";
inline constexpr const char *kFloor = "floor";

/// What one program did in one row, round after round.
struct Samples
{
    std::vector<double> values;
    int failures = 0; ///< how often it did not come to an end

    /// Not asked again: each failure costs ten seconds.
    [[nodiscard]] bool givenUp() const { return failures >= 3; }

    /// @p share from 0 to 1, interpolated between neighbours; nothing without values.
    [[nodiscard]] std::optional<double> quantile(double share) const;
    [[nodiscard]] std::optional<double> median() const { return quantile(0.5); }
};

/// A line of the report.
struct Row
{
    std::string section;
    std::string name;
    std::string unit = "ms";
};

/// Collects samples by row and column, in the order in which they first come, and prints them as Markdown.
class Results final
{
public:
    /// @p word: rows whose section or name do not contain it are not wanted. Empty: all are.
    explicit Results(std::string word) : m_word(std::move(word)) {}

    /// Asked before anything is started.
    [[nodiscard]] bool wants(const Row &row) const;
    [[nodiscard]] bool wants(const Row &row, const std::string &column) const;
    /// Nothing means that it failed.
    void add(const Row &row, const std::string &column, std::optional<double> value);
    /// Forgets all values, and keeps what failed: the first round only warms the caches.
    void discardValues();

    void print(std::ostream &stream) const;

private:
    struct Line
    {
        Row row;
        std::map<std::string, Samples> columns;
    };

    void printSection(std::ostream &stream, const std::string &section) const;
    void printPeers(std::ostream &stream) const;
    [[nodiscard]] Line &lineFor(const Row &row);
    [[nodiscard]] std::vector<std::string> peers() const;

    const std::string m_word;
    std::vector<Line> m_lines;
    std::vector<std::string> m_columns;
};

} // namespace tallowmere::bench
