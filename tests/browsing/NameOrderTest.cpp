// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "browsing/NameOrder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace tallowmere {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using Names = std::vector<QByteArray>;

Names sorted(Names names, const QByteArray &locale = "")
{
    sortByName(names, locale);
    return names;
}

TEST(NameOrder, comparesDigitsByTheirValue)
{
    EXPECT_THAT(sorted({"img10.jpg", "img2.jpg", "img1.jpg", "img100.jpg"}),
                ElementsAre("img1.jpg", "img2.jpg", "img10.jpg", "img100.jpg"));
    EXPECT_THAT(sorted({"12345678901234567890124.jpg", "12345678901234567890123.jpg", "9.jpg"}),
                ElementsAre("9.jpg", "12345678901234567890123.jpg", "12345678901234567890124.jpg"));
}

TEST(NameOrder, ignoresCase)
{
    EXPECT_THAT(sorted({"b.jpg", "C.jpg", "A.jpg"}), ElementsAre("A.jpg", "b.jpg", "C.jpg"));
}

TEST(NameOrder, tellsAccentsApartButKeepsThemByTheirLetter)
{
    EXPECT_THAT(sorted({"z.jpg", "é.jpg", "e.jpg", "f.jpg"}), ElementsAre("e.jpg", "é.jpg", "f.jpg", "z.jpg"));
}

TEST(NameOrder, namesThatCompareEqualComeInByteOrderWhateverTheListingsOrder)
{
    Names names{"a.jpg", "A.jpg", "img2.jpg", "img002.jpg", "IMG2.jpg", "img02.jpg"};
    std::sort(names.begin(), names.end());
    do {
        ASSERT_THAT(sorted(names), ElementsAre("A.jpg", "a.jpg", "IMG2.jpg", "img002.jpg", "img02.jpg", "img2.jpg"));
    } while (std::next_permutation(names.begin(), names.end()));
}

TEST(NameOrder, followsTheUsersLanguage)
{
    EXPECT_THAT(sorted({"z.jpg", "ö.jpg", "o.jpg"}, "de_DE"), ElementsAre("o.jpg", "ö.jpg", "z.jpg"));
    EXPECT_THAT(sorted({"z.jpg", "ö.jpg", "o.jpg"}, "sv_SE"), ElementsAre("o.jpg", "z.jpg", "ö.jpg"));
}

TEST(NameOrder, anUnknownLanguageStillOrdersNumbers)
{
    EXPECT_THAT(sorted({"img10.jpg", "img2.jpg"}, "xx_YY"), ElementsAre("img2.jpg", "img10.jpg"));
    EXPECT_THAT(sorted({"img10.jpg", "img2.jpg"}, "not a locale at all"), ElementsAre("img2.jpg", "img10.jpg"));
}

TEST(NameOrder, bytesThatAreNoTextAreSortedAllTheSame)
{
    const Names names = sorted({"z.jpg", "gr\xFC\xDF.jpg", "\xFF", "a.jpg", ""});
    EXPECT_EQ(names.size(), 5U);
    EXPECT_EQ(names.front(), "");
    EXPECT_LT(std::find(names.begin(), names.end(), "a.jpg"), std::find(names.begin(), names.end(), "gr\xFC\xDF.jpg"));
    EXPECT_LT(std::find(names.begin(), names.end(), "gr\xFC\xDF.jpg"), std::find(names.begin(), names.end(), "z.jpg"));
    Names turned(names.rbegin(), names.rend());
    EXPECT_THAT(sorted(turned), ElementsAreArray(names));
}

TEST(NameOrder, longNamesAreComparedToTheirEnd)
{
    const QByteArray longName(250, 'x');
    EXPECT_THAT(sorted({longName + "2", longName + "10", longName + "1"}),
                ElementsAre(longName + "1", longName + "2", longName + "10"));
}

TEST(CollationLocale, theFirstVariableThatIsNotEmptyCounts)
{
    EXPECT_EQ(collationLocale("de_DE.UTF-8", "sv_SE.UTF-8", "fr_FR.UTF-8"), "de_DE");
    EXPECT_EQ(collationLocale("", "sv_SE.UTF-8", "fr_FR.UTF-8"), "sv_SE");
    EXPECT_EQ(collationLocale("", "", "fr_FR@euro"), "fr_FR");
    EXPECT_EQ(collationLocale("", "", ""), "");
}

TEST(CollationLocale, cAndPosixGiveTheRootLocale)
{
    for (const char *none : {"C", "POSIX", "C.UTF-8", "C.utf8"})
        EXPECT_EQ(collationLocale("", "", none), "") << none;
}

} // namespace
} // namespace tallowmere
