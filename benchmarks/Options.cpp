// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "benchmarks/Options.h"

#include <charconv>
#include <stdexcept>

namespace tallowmere::bench {
namespace {

int positiveNumber(const std::string &text)
{
    int number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size() || number < 1)
        throw std::runtime_error("not a number of rounds: " + text);
    return number;
}

} // namespace

Options parseOptions(const std::vector<std::string> &words)
{
    Options options;
    for (auto word = words.begin(); word != words.end(); ++word) {
        const auto value = [&]() -> const std::string & {
            if (word + 1 == words.end())
                throw std::runtime_error(*word + " needs a value");
            return *++word;
        };
        if (*word == "--rounds")
            options.rounds = positiveNumber(value());
        else if (*word == "--case")
            options.word = value();
        else if (*word == "--peers")
            options.peers = true;
        else if (*word == "--help" || *word == "-h")
            options.help = true;
        else
            throw std::runtime_error("unknown option: " + *word);
    }
    return options;
}

} // namespace tallowmere::bench
