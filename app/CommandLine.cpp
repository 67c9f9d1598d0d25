// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "app/CommandLine.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace tallowmere {

namespace {

/// What Qt takes off the command line, without the leading dashes: one or two, both count.
constexpr std::array<std::string_view, 15> kToolkitOptionsWithValue{
    "display",         "geometry",           "icon",          "name",
    "platform",        "platformpluginpath", "platformtheme", "plugin",
    "qwindowgeometry", "qwindowicon",        "qwindowtitle",  "session",
    "style",           "stylesheet",         "title"};
constexpr std::array<std::string_view, 5> kToolkitFlags{"dograb", "nograb", "reverse", "sync", "widgetcount"};
/// The only ones whose value may follow an equals sign.
constexpr std::array<std::string_view, 3> kToolkitPrefixes{"qmljsdebugger=", "style=", "stylesheet="};

enum class Option
{
    unknown,
    flag,
    withValue
};

Option toolkitOption(std::string_view word)
{
    std::string_view name = word.substr(1);
    if (name.starts_with('-'))
        name.remove_prefix(1);
    if (std::ranges::find(kToolkitOptionsWithValue, name) != kToolkitOptionsWithValue.end())
        return Option::withValue;
    const bool flag =
        std::ranges::find(kToolkitFlags, name) != kToolkitFlags.end() ||
        std::ranges::any_of(kToolkitPrefixes, [name](std::string_view prefix) { return name.starts_with(prefix); });
    return flag ? Option::flag : Option::unknown;
}

/// "scheme://": nobody's file name, and a launcher that was given a web address says it like this.
bool looksLikeURL(std::string_view word)
{
    const auto isLetter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); };
    const std::size_t end = word.find("://");
    if (end == std::string_view::npos || end == 0 || !isLetter(word.front()))
        return false;
    return std::ranges::all_of(word.substr(0, end), [&](char c) {
        return isLetter(c) || (c >= '0' && c <= '9') || c == '+' || c == '-' || c == '.';
    });
}

bool startsWithFileScheme(std::string_view word)
{
    constexpr std::string_view kScheme = "file:/";
    return word.size() >= kScheme.size() &&
           std::ranges::equal(word.substr(0, kScheme.size()), kScheme, [](char given, char lower) {
               return (given >= 'A' && given <= 'Z' ? given + ('a' - 'A') : given) == lower;
           });
}

void takeFile(CommandLine &line, const QByteArray &word)
{
    if (startsWithFileScheme(word.toStdString())) {
        if (const auto file = FileURL::fromEncoded(word)) {
            line.files.append(*file);
            return;
        }
    }
    if (looksLikeURL(word.toStdString()))
        line.refusals.append("not a file on this computer: " + word);
    else if (!word.isEmpty())
        line.files.append(FileURL::fromPath(word));
}

} // namespace

CommandLine parseCommandLine(std::span<const char *const> words)
{
    CommandLine line;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::string_view word = words[i];
        if (word == "--") {
            for (const char *file : words.subspan(i + 1)) {
                if (*file != '\0')
                    line.files.append(FileURL::fromPath(file));
            }
            break;
        }
        if (!word.starts_with('-')) {
            takeFile(line, words[i]);
            continue;
        }
        const Option option = toolkitOption(word);
        if (option == Option::flag) {
            line.toolkitArguments.append(words[i]);
        } else if (option == Option::withValue && i + 1 < words.size()) {
            line.toolkitArguments.append(words[i]);
            line.toolkitArguments.append(words[++i]);
        } else {
            line.refusals.append(QByteArray("there is no option ") + words[i]);
        }
    }
    return line;
}

} // namespace tallowmere
