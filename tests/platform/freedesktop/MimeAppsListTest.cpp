// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "platform/freedesktop/MimeAppsList.h"

#include "tests/platform/freedesktop/GLibKeyFile.h"

#include <gtest/gtest.h>

#include <random>

namespace tallowmere {

namespace {

using test::GLibKeyFile;

const QByteArray kOurs = "own.desktop";
const QList<QByteArray> kTwoTypes{"image/jpeg", "image/png"};
constexpr const char *kGroup = "Default Applications";

QByteArray edited(const QByteArray &file)
{
    const QByteArray once = withDefaultApplication(file, kOurs, kTwoTypes);
    EXPECT_EQ(withDefaultApplication(once, kOurs, kTwoTypes), once) << "a second run changed something";
    return once;
}

struct Case
{
    const char *name;
    QByteArray before;
    QByteArray after;
};

class MimeAppsListCase : public testing::TestWithParam<Case>
{};

TEST_P(MimeAppsListCase, isEditedAsItShouldBe)
{
    EXPECT_EQ(edited(GetParam().before).toStdString(), GetParam().after.toStdString());
}

const std::vector<Case> kCases{
    {"emptyFile", "", "[Default Applications]\nimage/jpeg=own.desktop\nimage/png=own.desktop\n"},
    {"emptyGroup", "[Default Applications]\n",
     "[Default Applications]\nimage/jpeg=own.desktop\nimage/png=own.desktop\n"},
    {"olderOnesStayBehindUs", "[Default Applications]\nimage/jpeg=a.desktop;b.desktop;\nimage/png=c.desktop\n",
     "[Default Applications]\nimage/jpeg=own.desktop;a.desktop;b.desktop;\nimage/png=own.desktop;c.desktop\n"},
    {"weMoveToTheFront", "[Default Applications]\nimage/jpeg=a.desktop;own.desktop;b.desktop\nimage/png=own.desktop;\n",
     "[Default Applications]\nimage/jpeg=own.desktop;a.desktop;b.desktop\nimage/png=own.desktop;\n"},
    {"alreadyFirst", "[Default Applications]\nimage/png=own.desktop;x.desktop\nimage/jpeg=own.desktop\n",
     "[Default Applications]\nimage/png=own.desktop;x.desktop\nimage/jpeg=own.desktop\n"},
    {"emptyValue", "[Default Applications]\nimage/jpeg=\nimage/png=own.desktop",
     "[Default Applications]\nimage/jpeg=own.desktop\nimage/png=own.desktop"},
    {"emptyValueAtTheVeryEnd",
     "[Default Applications]\nimage/jpeg=", "[Default Applications]\nimage/jpeg=own.desktop\nimage/png=own.desktop"},
    {"spacesAroundTheEqualsSign", "  [Default Applications] \n  image/jpeg \t=  a.desktop \nimage/png=own.desktop\n",
     "  [Default Applications] \n  image/jpeg \t=  own.desktop;a.desktop \nimage/png=own.desktop\n"},
    {"newEntriesBeforeTheGroupsLastComment",
     "[Default Applications]\ntext/plain=e.desktop\n\n# about the next\n[Added Associations]\nimage/png=z.desktop\n",
     "[Default Applications]\ntext/plain=e.desktop\nimage/jpeg=own.desktop\nimage/png=own.desktop\n\n"
     "# about the next\n[Added Associations]\nimage/png=z.desktop\n"},
    {"otherGroupsStay",
     "[Removed Associations]\nimage/jpeg=own.desktop;\n\n[Added Associations]\nimage/png=a.desktop\n",
     "[Removed Associations]\nimage/jpeg=own.desktop;\n\n[Added Associations]\nimage/png=a.desktop\n\n"
     "[Default Applications]\nimage/jpeg=own.desktop\nimage/png=own.desktop\n"},
    {"noSecondBlankLine", "# mine\n\n",
     "# mine\n\n[Default Applications]\nimage/jpeg=own.desktop\nimage/png=own.desktop\n"},
    {"windowsLineEndings", "[Default Applications]\r\nimage/png=a.desktop\r\n\r\n[X]\r\ny=1\r\n",
     "[Default Applications]\r\nimage/png=own.desktop;a.desktop\r\nimage/jpeg=own.desktop\r\n\r\n[X]\r\ny=1\r\n"},
    {"windowsLineEndingsWithoutTheGroup", "[X]\r\ny=1",
     "[X]\r\ny=1\r\n\r\n[Default Applications]\r\nimage/jpeg=own.desktop\r\nimage/png=own.desktop"},
    {"noLastLineFeed", "[Default Applications]\nimage/jpeg=a.desktop",
     "[Default Applications]\nimage/jpeg=own.desktop;a.desktop\nimage/png=own.desktop"},
    {"noLastLineFeedAndNothingToAdd", "[Default Applications]\nimage/png=a.desktop\nimage/jpeg=a.desktop",
     "[Default Applications]\nimage/png=own.desktop;a.desktop\nimage/jpeg=own.desktop;a.desktop"},
    {"ofARepeatedKeyTheLast",
     "[Default Applications]\nimage/jpeg=a.desktop\nimage/jpeg=b.desktop\nimage/png=own.desktop\n",
     "[Default Applications]\nimage/jpeg=a.desktop\nimage/jpeg=own.desktop;b.desktop\nimage/png=own.desktop\n"},
    {"aRepeatedGroupIsOneGroup",
     "[Default Applications]\nimage/jpeg=a.desktop\n[X]\nimage/png=x\n[Default Applications]\nimage/jpeg=b.desktop\n",
     "[Default Applications]\nimage/jpeg=a.desktop\nimage/png=own.desktop\n[X]\nimage/png=x\n"
     "[Default Applications]\nimage/jpeg=own.desktop;b.desktop\n"},
    {"commentsAreNoEntries", "[Default Applications]\n#image/jpeg=a.desktop\nimage/png=own.desktop\n",
     "[Default Applications]\n#image/jpeg=a.desktop\nimage/png=own.desktop\nimage/jpeg=own.desktop\n"},
    {"translatedKeysAreOtherKeys", "[Default Applications]\nimage/png=own.desktop\nimage/jpeg[de]=a.desktop\n",
     "[Default Applications]\nimage/png=own.desktop\nimage/jpeg[de]=a.desktop\nimage/jpeg=own.desktop\n"},
    {"elementsThatNobodyCanReadGo",
     "[Default Applications]\nimage/jpeg=a\\x.desktop;b\\;c.desktop;\nimage/png=\xFF.desktop;d.desktop\n",
     "[Default Applications]\nimage/jpeg=own.desktop;b\\;c.desktop;\nimage/png=own.desktop;d.desktop\n"},
    {"emptyElementsStay", "[Default Applications]\nimage/jpeg=;a.desktop;;b.desktop\nimage/png=own.desktop;;\n",
     "[Default Applications]\nimage/jpeg=own.desktop;;a.desktop;;b.desktop\nimage/png=own.desktop;;\n"},
    {"nothingIsWrittenBehindALineThatEndsTheReading",
     "[Default Applications]\ntext/plain=e.desktop\nrubbish\nimage/jpeg=a.desktop\n",
     "[Default Applications]\ntext/plain=e.desktop\nimage/jpeg=own.desktop\nimage/png=own.desktop\nrubbish\n"
     "image/jpeg=a.desktop\n"},
    {"aGroupGoesInFrontOfALineThatEndsTheReading", "[X]\nrubbish\n",
     "[Default Applications]\nimage/jpeg=own.desktop\nimage/png=own.desktop\n\n[X]\nrubbish\n"},
};

INSTANTIATE_TEST_SUITE_P(MimeAppsList, MimeAppsListCase, testing::ValuesIn(kCases),
                         [](const auto &each) { return std::string(each.param.name); });

/// Random text of the pieces that such files are made of, and of some that they should not.
class RandomFiles
{
public:
    explicit RandomFiles(unsigned seed) : m_random(seed) {}

    QByteArray next(bool wild)
    {
        m_wild = wild;
        QByteArray file;
        const QByteArray ending = oneOf({"\n", "\r\n"});
        const int lines = below(14);
        for (int i = 0; i < lines; ++i)
            file += line() + (below(9) == 0 ? QByteArray("\n") : ending);
        if (below(3) == 0)
            file.chop(ending.size());
        return file;
    }

private:
    int below(int bound) { return std::uniform_int_distribution<int>(0, bound - 1)(m_random); }
    QByteArray oneOf(const QList<QByteArray> &choices) { return choices[below(static_cast<int>(choices.size()))]; }

    QByteArray line()
    {
        switch (below(m_wild ? 9 : 7)) {
        case 0:
            return oneOf({"[Default Applications]", " [Default Applications]\t", "[Added Associations]", "[Ä]"});
        case 1:
            return oneOf({"", "  ", "# a comment", "#image/png=x.desktop", "#[Default Applications]"});
        case 7:
            return oneOf({"rubbish", "[", "[]", "=x", "[a]b", "image/png[=x", "[a[b]", "[Default Applications] #",
                          "image/png[de]x=a", "\xEF\xBB\xBF[Default Applications]", "]=1", "a]=1", ";x",
                          QByteArray("\0x", 2), QByteArray("image/png\0=x", 11), "\v", "image/png\v=x"});
        case 8: {
            QByteArray noise;
            for (int i = below(20); i > 0; --i)
                noise += static_cast<char>(below(256));
            return noise;
        }
        default:
            return oneOf({"image/png", "image/jpeg", " image/png ", "image/jpeg\t", "text/plain", "image/png[de]"}) +
                   oneOf({"=", " = ", "=\t"}) + value();
        }
    }
    QByteArray value()
    {
        QByteArray text;
        for (int i = below(4); i > 0; --i) {
            text += oneOf({"own.desktop", "a.desktop", "b\\;c.desktop", "ü.desktop", "", "own.desktop ",
                           m_wild ? "\\" : "d", m_wild ? "\\q" : "e", m_wild ? "\xFF" : "f"});
            if (i > 1 || below(2) == 0)
                text += ';';
        }
        return text;
    }

    std::mt19937 m_random;
    bool m_wild = false;
};

/// @p file without its lines that speak of our types or open the group, and without blank ones and line endings.
QList<QByteArray> otherLines(const QByteArray &file)
{
    QList<QByteArray> lines;
    for (const QByteArray &line : file.split('\n')) {
        const QByteArray text = line.trimmed();
        const bool mayChange = text.startsWith("image/png") || text.startsWith("image/jpeg") ||
                               text == "[Default Applications]" || text.isEmpty();
        if (!mayChange)
            lines.append(line);
    }
    return lines;
}

/// Whether @p part comes out of @p whole by leaving bytes out.
bool isContainedInOrder(const QByteArray &part, const QByteArray &whole)
{
    qsizetype found = 0;
    for (const char byte : whole)
        found += found < part.size() && part[found] == byte ? 1 : 0;
    return found == part.size();
}

} // namespace

TEST(MimeAppsList, inRandomFilesAllOtherLinesSurviveByteForByteAndASecondRunChangesNothing)
{
    RandomFiles files(20260301);
    for (int i = 0; i < 2000; ++i) {
        const QByteArray before = files.next(i % 2 == 0);
        const QByteArray after = edited(before);
        ASSERT_FALSE(HasFailure()) << before.toPercentEncoding(" =;/[]\n\r#\\").constData();
        QList<QByteArray> kept = otherLines(after);
        QList<QByteArray> had = otherLines(before);
        // What ended the file without a line feed may have got one, in the file's own manner.
        if (!had.isEmpty() && kept.size() == had.size() && kept.last() == had.last() + '\r')
            kept.last().chop(1);
        ASSERT_EQ(kept, had) << before.toPercentEncoding(" =;/[]\n\r#\\").constData();
    }
}

TEST(MimeAppsList, inRandomOrdinaryFilesNothingIsLostAtAll)
{
    RandomFiles files(20260302);
    for (int i = 0; i < 2000; ++i) {
        QByteArray before = files.next(false);
        const QByteArray after = edited(before);
        before.replace("own.desktop;", "").replace("own.desktop", ""); // we move to the front
        QByteArray rest = after;
        rest.replace("own.desktop;", "").replace("own.desktop", "");
        // A list that we alone ended has lost the semicolon before us.
        before.replace(";\n", "\n").replace(";\r\n", "\r\n");
        if (before.endsWith(';'))
            before.chop(1);
        ASSERT_TRUE(isContainedInOrder(before, rest)) << before.toStdString() << "\n---\n" << after.toStdString();
    }
}

TEST(MimeAppsList, inRandomFilesGLibReadsUsFirstAndTheOthersInTheirOrder)
{
    RandomFiles files(20260303);
    for (int i = 0; i < 2000; ++i) {
        const QByteArray before = files.next(i % 2 == 0);
        const QByteArray after = edited(before);
        const GLibKeyFile was(before);
        const GLibKeyFile is(after);
        for (const QByteArray &type : kTwoTypes) {
            QList<QByteArray> expected = was.list(kGroup, type).value_or(QList<QByteArray>());
            auto list = is.list(kGroup, type);
            ASSERT_TRUE(list && list->first() == kOurs) << before.toPercentEncoding(" =;/[]\n\r#\\").constData();
            if (expected.isEmpty())
                continue; // there was none, or none that could be read
            // Others are what they were; we are where we were when that was the first place.
            if (expected.first() != kOurs) {
                expected.removeAll(kOurs);
                expected.prepend(kOurs);
            }
            // A semicolon behind a last element that is empty makes one more of these: nobody's name.
            expected.removeAll("");
            list->removeAll("");
            ASSERT_EQ(*list, expected) << before.toPercentEncoding(" =;/[]\n\r#\\").constData();
        }
        for (const char *group : {kGroup, "Added Associations"}) {
            // Entries that stood in no group, which ends the reading, may have come into ours.
            const auto others = was.list(group, "image/png[de]");
            if (others || was.readWholly()) {
                ASSERT_EQ(is.list(group, "image/png[de]"), others);
            }
        }
    }
}

TEST(MimeAppsList, aRepeatedTypeIsWrittenOnce)
{
    EXPECT_EQ(withDefaultApplication("", kOurs, {"image/png", "image/png"}),
              "[Default Applications]\nimage/png=own.desktop\n");
}

TEST(MimeAppsList, withoutTypesNothingChanges)
{
    EXPECT_EQ(withDefaultApplication("[X]\ny=1", kOurs, {}), "[X]\ny=1");
    EXPECT_EQ(withDefaultApplication("", kOurs, {}), "");
}

} // namespace tallowmere
