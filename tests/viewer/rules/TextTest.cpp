// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/doubles/ScopedEnvironment.h"
#include "viewer/rules/ByteCountText.h"
#include "viewer/rules/DateText.h"

#include <gtest/gtest.h>

#include <limits>

namespace tallowmere {
namespace {

using namespace Qt::Literals::StringLiterals;

struct SizeRow
{
    qint64 bytes;
    const char *text;
};

constexpr SizeRow kSizes[] = {
    {0, "Zero KB"},
    {-1, "Zero KB"},
    {std::numeric_limits<qint64>::min(), "Zero KB"},
    {1, "1 byte"},
    {2, "2 bytes"},
    {999, "999 bytes"},
    {1000, "1 KB"},
    {1499, "1 KB"},
    {1500, "2 KB"},
    {17'300, "17 KB"},
    {999'499, "999 KB"},
    {999'500, "1 MB"},
    {1'000'000, "1 MB"},
    {1'049'999, "1 MB"},
    {1'050'000, "1.1 MB"},
    {1'250'000, "1.3 MB"},
    {2'000'000, "2 MB"},
    {2'400'000, "2.4 MB"},
    {999'949'999, "999.9 MB"},
    {999'950'000, "1 GB"},
    {1'500'000'000, "1.5 GB"},
    {1'254'000'000, "1.25 GB"},
    {1'255'000'000, "1.26 GB"},
    {3'000'000'000'000, "3 TB"},
    {4'560'000'000'000'000, "4.56 PB"},
    {std::numeric_limits<qint64>::max(), "9.22 EB"},
};

TEST(ByteCountText, countsAsFileManagersDo)
{
    for (const SizeRow &row : kSizes)
        EXPECT_EQ(byteCountText(row.bytes, QLocale::c()).toStdString(), row.text) << row.bytes;
}

TEST(ByteCountText, writesNumbersAsTheLocaleDoes)
{
    EXPECT_EQ(byteCountText(1'500'000'000, QLocale(QLocale::German)), u"1,5 GB"_s);
    EXPECT_EQ(byteCountText(2'000'000, QLocale(QLocale::German)), u"2 MB"_s);
    EXPECT_EQ(byteCountText(2'400'000, QLocale(QLocale::French)), u"2,4 MB"_s);
    EXPECT_EQ(byteCountText(12, QLocale(QLocale::Arabic, QLocale::Egypt)), u"\u0661\u0662 bytes"_s);
}

TEST(ByteCountText, neverShowsAThousandOfAUnit)
{
    for (qint64 unit = 1000; unit <= 1'000'000'000'000'000; unit *= 1000) {
        for (qint64 below = 1; below < unit; below *= 10)
            EXPECT_FALSE(byteCountText(unit * 1000 - below, QLocale::c()).startsWith(u"1000"_s))
                << unit << " " << below;
    }
}

/// 5 January 2024, 15:04:05.678 UTC.
const FileTime kAfternoon{std::chrono::milliseconds(1'704'467'045'678)};

struct DateRow
{
    const char *locale;
    const char *zone;
    const char16_t *text;
};

// The narrow no-break space U+202F is how Unicode's English separates the hour from AM and PM.
constexpr DateRow kDates[] = {
    {"en_US.UTF-8", "UTC", u"Jan 5, 2024, 3:04\u202FPM"},
    {"en_US", "Asia/Tokyo", u"Jan 6, 2024, 12:04\u202FAM"},
    {"en_GB.UTF-8", "UTC", u"5 Jan 2024, 15:04"},
    {"de_DE.UTF-8", "Europe/Berlin", u"05.01.2024, 16:04"},
    {"de_DE@euro", "Europe/Berlin", u"05.01.2024, 16:04"},
    {"de", "Europe/Berlin", u"05.01.2024, 16:04"},
    {"ja_JP.UTF-8", "Asia/Tokyo", u"2024/01/06 0:04"},
    {"C", "UTC", u"Jan 5, 2024, 3:04\u202FPM"},
    {"C.UTF-8", "UTC", u"Jan 5, 2024, 3:04\u202FPM"},
    {"POSIX", "UTC", u"Jan 5, 2024, 3:04\u202FPM"},
    {"", "UTC", u"Jan 5, 2024, 3:04\u202FPM"},
};

TEST(DateText, hasAMediumDateAndAShortTimeInTheLocaleAndZone)
{
    for (const DateRow &row : kDates) {
        const QString text = dateText(kAfternoon, {row.locale, row.zone});
        EXPECT_EQ(text, QString::fromUtf16(row.text)) << row.locale << ": " << text.toStdString();
    }
}

TEST(DateText, keepsSummerTimeOfTheDayItShows)
{
    const FileTime july{std::chrono::milliseconds(1'720'191'845'000)}; // 5 July 2024, 15:04:05 UTC
    EXPECT_EQ(dateText(july, {"de_DE.UTF-8", "Europe/Berlin"}), u"05.07.2024, 17:04"_s);
}

TEST(DateText, reachesBackBeforeTheEpoch)
{
    EXPECT_EQ(dateText(FileTime(std::chrono::milliseconds(-1000)), {"de_DE", "UTC"}), u"31.12.1969, 23:59"_s);
}

TEST(DateText, isUnknownWithoutADate)
{
    EXPECT_EQ(dateText(std::nullopt, {"de_DE", "UTC"}), u"Unknown"_s);
}

TEST(DateText, survivesALocaleAndAZoneThatDoNotExist)
{
    EXPECT_FALSE(dateText(kAfternoon, {"not a locale;;@@=\xff", "Nowhere/AtAll"}).isEmpty());
    EXPECT_FALSE(dateText(kAfternoon, {QByteArray(5000, 'x'), QByteArray(5000, 'x')}).isEmpty());
}

TEST(DateStyle, ofTheUserPrefersTheMostDecisiveVariable)
{
    using test::ScopedEnvironment;
    const ScopedEnvironment language("LANG", "de_DE.UTF-8");
    {
        const ScopedEnvironment all("LC_ALL", std::nullopt);
        const ScopedEnvironment time("LC_TIME", std::nullopt);
        EXPECT_EQ(DateStyle::ofUser().locale, "de_DE.UTF-8");
    }
    {
        const ScopedEnvironment all("LC_ALL", "");
        const ScopedEnvironment time("LC_TIME", "en_GB.UTF-8");
        EXPECT_EQ(DateStyle::ofUser().locale, "en_GB.UTF-8");
    }
    const ScopedEnvironment all("LC_ALL", "ja_JP.UTF-8");
    const ScopedEnvironment time("LC_TIME", "en_GB.UTF-8");
    EXPECT_EQ(DateStyle::ofUser().locale, "ja_JP.UTF-8");
}

} // namespace
} // namespace tallowmere
