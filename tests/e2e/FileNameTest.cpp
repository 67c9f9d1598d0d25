// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/e2e/E2ETest.h"

namespace tallowmere {

namespace key = desktop::key;

struct NameCase
{
    const char *testName;
    std::string name;
    /// As it stands in the title.
    std::string shown;
};

/// GoogleTest names each case after this.
void PrintTo(const NameCase &each, std::ostream *stream)
{
    *stream << each.testName;
}

/// Names are bytes: each opens, is stepped away from and back to, and is shown as text.
class FileNameTest : public E2ETest, public testing::WithParamInterface<NameCase>
{};

TEST_P(FileNameTest, opensStepsAndShowsInTheTitle)
{
    const auto &[testName, name, shown] = GetParam();
    addPicture(name, kBlue);
    addPicture("zz.jpg", kGreen);
    start({name});
    EXPECT_TRUE(waitForPicture(shown, kBlue)) << situation();
    EXPECT_TRUE(program->waitForOutput("✅ Successfully loaded 2 files from directory\n")) << situation();
    input.press(key::kLeft);
    EXPECT_TRUE(waitForPicture("zz.jpg", kGreen)) << situation();
    input.press(key::kLeft);
    EXPECT_TRUE(waitForPicture(shown, kBlue)) << situation();
}

TEST_P(FileNameTest, isHandedOverToARunningProgram)
{
    const auto &[testName, name, shown] = GetParam();
    addPicture(name, kBlue);
    start();
    const auto second = launch({name});
    EXPECT_EQ(second->waitForExit(), 0) << second->errors();
    EXPECT_TRUE(waitForPicture(shown, kBlue)) << situation();
}

INSTANTIATE_TEST_SUITE_P(
    Names, FileNameTest,
    testing::Values(NameCase{"blanks", "a  b c.jpg", "a  b c.jpg"}, NameCase{"hash", "a#b.jpg", "a#b.jpg"},
                    NameCase{"percent", "100%25 a%.jpg", "100%25 a%.jpg"}, NameCase{"lineFeed", "a\nb.jpg", "a b.jpg"},
                    NameCase{"brackets", "a[*]b.jpg", "a[*]b.jpg"}, NameCase{"markup", "<b>x<b>.jpg", "<b>x<b>.jpg"},
                    NameCase{"umlaut", "Käse ß.jpg", "Käse ß.jpg"},
                    NameCase{"latin1", "na\xEFve.jpg", "na\xEF\xBF\xBDve.jpg"},
                    NameCase{"bytes255", std::string(251, 'n') + ".jpg", std::string(251, 'n') + ".jpg"}),
    [](const auto &each) { return each.param.testName; });

} // namespace tallowmere
