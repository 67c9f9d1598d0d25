// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "app/CommandLine.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tallowmere {

namespace {

struct Row
{
    std::string name;
    std::vector<const char *> words;
    QList<QByteArray> files;
    QList<QByteArray> toolkit;
    int refusals = 0;
    bool nothingLeft = false;
};

class CommandLineWords : public ::testing::TestWithParam<Row>
{};

const std::vector<Row> kRows{
    {"nothing", {}, {}, {}},
    {"oneFile", {"/a.jpg"}, {"/a.jpg"}, {}},
    {"severalFilesKeepTheirOrder", {"/b.jpg", "/a.jpg"}, {"/b.jpg", "/a.jpg"}, {}},
    {"anEmptyWordIsNothing", {""}, {}, {}},
    {"blanksPercentHashLineFeed", {"/a b%20#?\n.jpg"}, {"/a b%20#?\n.jpg"}, {}},
    {"bytesThatAreNoText", {"/\xff\xe9.jpg"}, {"/\xff\xe9.jpg"}, {}},
    {"aColonIsPartOfAName", {"/12:30.jpg", "/a:b"}, {"/12:30.jpg", "/a:b"}, {}},
    {"fileAddress", {"file:///a%20b%E9.jpg"}, {"/a b\xe9.jpg"}, {}},
    {"fileAddressInCapitals", {"FILE:///a.jpg"}, {"/a.jpg"}, {}},
    {"fileAddressOfThisMachine", {"file://localhost/a.jpg"}, {"/a.jpg"}, {}},
    {"fileAddressOfAnotherMachine", {"file://elsewhere/a.jpg"}, {}, {}, 1, true},
    {"brokenFileAddress", {"file:///a%2.jpg"}, {}, {}, 1, true},
    {"webAddress", {"https://example.org/a.jpg"}, {}, {}, 1, true},
    {"trashAddress", {"trash:///a.jpg"}, {}, {}, 1, true},
    {"phoneAddressBesideAFile", {"mtp://phone/a.jpg", "/b.jpg"}, {"/b.jpg"}, {}, 1, false},
    {"aDashWord", {"-x"}, {}, {}, 1, true},
    {"aLoneDash", {"-"}, {}, {}, 1, true},
    {"help", {"--help"}, {}, {}, 1, true},
    {"version", {"--version"}, {}, {}, 1, true},
    {"aDashWordBesideAFile", {"-x", "/a.jpg"}, {"/a.jpg"}, {}, 1, false},
    {"twoDashWords", {"-x", "--y"}, {}, {}, 2, true},
    {"behindTwoDashesEverythingIsAFile", {"--", "/-", "/--help"}, {"/-", "/--help"}, {}},
    {"behindTwoDashesAlsoQtsOwnWords", {"--", "/x/-style"}, {"/x/-style"}, {}},
    {"twoDashesAlone", {"--"}, {}, {}},
    {"refusedBeforeTwoDashes", {"-x", "--"}, {}, {}, 1, true},
    {"platform", {"-platform", "offscreen", "/a.jpg"}, {"/a.jpg"}, {"-platform", "offscreen"}},
    {"platformWithTwoDashes", {"--platform", "xcb"}, {}, {"--platform", "xcb"}},
    {"style", {"-style", "fusion"}, {}, {"-style", "fusion"}},
    {"styleWithEqualsSign", {"-style=fusion"}, {}, {"-style=fusion"}},
    {"geometryBehindTheFile", {"/a.jpg", "-geometry", "800x600+0+0"}, {"/a.jpg"}, {"-geometry", "800x600+0+0"}},
    {"display", {"--display", ":1"}, {}, {"--display", ":1"}},
    {"aFlagOfQtTakesNoValue", {"-reverse", "/a.jpg"}, {"/a.jpg"}, {"-reverse"}},
    {"anOptionOfQtWithoutItsValue", {"-platform"}, {}, {}, 1, true},
    {"anEqualsSignQtDoesNotKnow", {"-platform=xcb"}, {}, {}, 1, true},
};

} // namespace

TEST_P(CommandLineWords, areSorted)
{
    const Row &row = GetParam();
    const CommandLine line = parseCommandLine(row.words);
    QList<QByteArray> files;
    for (const FileURL &file : line.files)
        files.append(file.path());
    EXPECT_EQ(files, row.files);
    EXPECT_EQ(line.toolkitArguments, row.toolkit);
    EXPECT_EQ(line.refusals.size(), row.refusals);
    EXPECT_EQ(line.nothingLeft(), row.nothingLeft);
}

INSTANTIATE_TEST_SUITE_P(CommandLine, CommandLineWords, ::testing::ValuesIn(kRows),
                         [](const auto &row) { return row.param.name; });

TEST(CommandLine, relativeNamesAreTakenFromTheWorkingDirectory)
{
    const std::vector<const char *> words{"a.jpg", "--", "-b.jpg"};
    const CommandLine line = parseCommandLine(words);
    EXPECT_EQ(line.files, (QList<FileURL>{FileURL::fromPath("a.jpg"), FileURL::fromPath("-b.jpg")}));
    EXPECT_TRUE(line.files.first().path().startsWith('/'));
}

TEST(CommandLine, aRefusalSaysWhichWord)
{
    const std::vector<const char *> words{"--help", "http://example.org/a.jpg"};
    EXPECT_EQ(
        parseCommandLine(words).refusals,
        (QList<QByteArray>{"there is no option --help", "not a file on this computer: http://example.org/a.jpg"}));
}

} // namespace tallowmere
