// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "settings/PrefetchCountText.h"

#include <gtest/gtest.h>

namespace tallowmere {
namespace {

using namespace Qt::Literals::StringLiterals;
using PrefetchCountText::parse;
using PrefetchCountText::Typed;
using PrefetchCountText::withNumbersOnly;

TEST(PrefetchCountText, allFromZeroToAHundredAreCounts)
{
    for (int count = 0; count <= 100; ++count)
        EXPECT_EQ(parse(QString::number(count)), count);
}

TEST(PrefetchCountText, whatIsOutOfRangeIsNoCount)
{
    for (const QString &text : {u"101"_s, u"150"_s, u"1000"_s, u"-1"_s, u"-100"_s})
        EXPECT_EQ(parse(text), std::nullopt) << qPrintable(text);
}

TEST(PrefetchCountText, aNumberTooLargeForAnyIntegerIsNoCount)
{
    for (const QString &text :
         {u"4294967297"_s, u"18446744073709551617"_s, QString(10'000, u'9'), u"-"_s + QString(10'000, u'9')})
        EXPECT_EQ(parse(text), std::nullopt);
}

TEST(PrefetchCountText, oneSignMayLead)
{
    EXPECT_EQ(parse(u"+5"_s), 5);
    EXPECT_EQ(parse(u"+100"_s), 100);
    EXPECT_EQ(parse(u"+0"_s), 0);
    EXPECT_EQ(parse(u"-0"_s), 0);
    for (const QString &text : {u"++5"_s, u"+-5"_s, u"--0"_s, u"5+"_s, u"+"_s, u"-"_s})
        EXPECT_EQ(parse(text), std::nullopt) << qPrintable(text);
}

TEST(PrefetchCountText, leadingZerosDontMatter)
{
    EXPECT_EQ(parse(u"007"_s), 7);
    EXPECT_EQ(parse(QString(10'000, u'0') + u'9'), 9);
}

TEST(PrefetchCountText, whatIsNoWholeDecimalNumberIsNoCount)
{
    for (const QString &text : {u""_s, QString(), u" "_s, u" 5"_s, u"5 "_s, u"1 0"_s, u"5.0"_s, u"1e1"_s, u"0x10"_s,
                                u"five"_s, u"½"_s, u"5²"_s, u"Ⅳ"_s, u"五"_s})
        EXPECT_EQ(parse(text), std::nullopt) << qPrintable(text);
}

TEST(PrefetchCountText, theDigitsOfAnyScriptCount)
{
    EXPECT_EQ(parse(u"١٢"_s), 12);
    EXPECT_EQ(parse(u"४२"_s), 42);
    EXPECT_EQ(parse(u"９９"_s), 99);
    EXPECT_EQ(parse(u"𝟏𝟎𝟎"_s), 100);
    EXPECT_EQ(parse(u"١٥٠"_s), std::nullopt);
}

TEST(PrefetchCountText, typingLeavesOnlyNumbers)
{
    EXPECT_EQ(withNumbersOnly({u"1a2 b3-"_s, 7}), (Typed{u"123"_s, 3}));
    EXPECT_EQ(withNumbersOnly({u"abc"_s, 3}), (Typed{u""_s, 0}));
    EXPECT_EQ(withNumbersOnly({u""_s, 0}), (Typed{u""_s, 0}));
    EXPECT_EQ(withNumbersOnly({u"42"_s, 1}), (Typed{u"42"_s, 1}));
}

TEST(PrefetchCountText, theCursorStaysBetweenTheSameDigits)
{
    EXPECT_EQ(withNumbersOnly({u"1x2"_s, 2}), (Typed{u"12"_s, 1}));
    EXPECT_EQ(withNumbersOnly({u"x12"_s, 1}), (Typed{u"12"_s, 0}));
    EXPECT_EQ(withNumbersOnly({u"12x"_s, 1}), (Typed{u"12"_s, 1}));
    EXPECT_EQ(withNumbersOnly({u"1abc2"_s, 4}), (Typed{u"12"_s, 1}));
}

TEST(PrefetchCountText, numbersOfOtherScriptsMayBeTyped)
{
    EXPECT_EQ(withNumbersOnly({u"١x٢"_s, 2}), (Typed{u"١٢"_s, 1}));
    EXPECT_EQ(withNumbersOnly({u"½²Ⅳ"_s, 3}), (Typed{u"½²Ⅳ"_s, 3}));
    // Two units each.
    EXPECT_EQ(withNumbersOnly({u"𝟏😀𝟐"_s, 4}), (Typed{u"𝟏𝟐"_s, 2}));
}

TEST(PrefetchCountText, halfACharacterIsNoNumber)
{
    const QString half(QChar(0xD835));
    EXPECT_EQ(withNumbersOnly({u"1"_s + half + u"2"_s, 2}), (Typed{u"12"_s, 1}));
    EXPECT_EQ(parse(half), std::nullopt);
}

} // namespace
} // namespace tallowmere
