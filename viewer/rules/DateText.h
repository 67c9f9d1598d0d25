// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/FileAttributes.h"

#include <QByteArray>
#include <QString>

namespace tallowmere {

/// For whom a date is written. A value.
struct DateStyle
{
    QByteArray locale;   ///< as POSIX names it: "de_DE.UTF-8"; empty or "C": English
    QByteArray timeZone; ///< as the tz database names it; empty: this machine's

    /// LC_ALL, LC_TIME or LANG, whichever is set first; this machine's time zone.
    [[nodiscard]] static DateStyle ofUser();
};

/// Date and time by Unicode CLDR, the date of medium length, the time short. "Unknown" when there is no date. Any
/// thread.
[[nodiscard]] QString dateText(std::optional<FileTime> date, const DateStyle &style = DateStyle::ofUser());

} // namespace tallowmere
