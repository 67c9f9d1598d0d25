// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "viewer/rules/DateText.h"

#include <QList>

#include <unicode/datefmt.h>
#include <unicode/locid.h>
#include <unicode/timezone.h>
#include <unicode/unistr.h>

#include <cstdlib>
#include <memory>

namespace tallowmere {

using namespace Qt::Literals::StringLiterals;

namespace {

icu::Locale icuLocale(const QByteArray &posixName)
{
    const QByteArray withoutCharset = posixName.split('.').constFirst();
    // ICU reads "C" as a computer's English; the rest of the program speaks a person's.
    if (withoutCharset.isEmpty() || withoutCharset == "C" || withoutCharset == "POSIX")
        return icu::Locale::getEnglish();
    const icu::Locale locale = icu::Locale::createCanonical(posixName.constData());
    return locale.isBogus() ? icu::Locale::getEnglish() : locale;
}

icu::TimeZone *newTimeZone(const QByteArray &name)
{
    return name.isEmpty() ? icu::TimeZone::createDefault()
                          : icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(name.constData()));
}

} // namespace

DateStyle DateStyle::ofUser()
{
    for (const char *variable : {"LC_ALL", "LC_TIME", "LANG"}) {
        if (const QByteArray value = qgetenv(variable); !value.isEmpty())
            return {value, {}};
    }
    return {};
}

QString dateText(std::optional<FileTime> date, const DateStyle &style)
{
    const QString unknown = u"Unknown"_s;
    if (!date)
        return unknown;
    const std::unique_ptr<icu::DateFormat> format(icu::DateFormat::createDateTimeInstance(
        icu::DateFormat::kMedium, icu::DateFormat::kShort, icuLocale(style.locale)));
    if (!format)
        return unknown;
    format->adoptTimeZone(newTimeZone(style.timeZone));
    icu::UnicodeString text;
    format->format(static_cast<UDate>(date->time_since_epoch().count()), text);
    return QString::fromUtf16(text.getBuffer(), text.length());
}

} // namespace tallowmere
