// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "viewer/rules/ByteCountText.h"

#include <array>

namespace tallowmere {

using namespace Qt::Literals::StringLiterals;

namespace {

struct Unit
{
    quint64 bytes;
    int decimals;
    QLatin1StringView name;
};

constexpr quint64 kThousand = 1000;

constexpr std::array<Unit, 6> kUnits{{
    {kThousand, 0, "KB"_L1},
    {kThousand * kThousand, 1, "MB"_L1},
    {kThousand * kThousand * kThousand, 2, "GB"_L1},
    {kThousand * kThousand * kThousand * kThousand, 2, "TB"_L1},
    {kThousand * kThousand * kThousand * kThousand * kThousand, 2, "PB"_L1},
    {kThousand * kThousand * kThousand * kThousand * kThousand * kThousand, 2, "EB"_L1},
}};

quint64 powerOfTen(int exponent)
{
    quint64 power = 1;
    for (int i = 0; i < exponent; ++i)
        power *= 10;
    return power;
}

/// How often the last decimal of @p unit goes into @p bytes. Whole numbers: a double would round 1.25 either way.
quint64 inLastDecimals(quint64 bytes, const Unit &unit)
{
    const quint64 step = unit.bytes / powerOfTen(unit.decimals);
    return (bytes + step / 2) / step;
}

QString withoutTrailingZeros(quint64 value, int decimals, QLocale locale)
{
    while (decimals > 0 && value % 10 == 0) {
        value /= 10;
        --decimals;
    }
    locale.setNumberOptions(locale.numberOptions() | QLocale::OmitGroupSeparator);
    return locale.toString(static_cast<double>(value) / static_cast<double>(powerOfTen(decimals)), 'f', decimals);
}

} // namespace

QString byteCountText(qint64 bytes, const QLocale &locale)
{
    if (bytes <= 0)
        return u"Zero KB"_s;
    if (bytes == 1)
        return u"1 byte"_s;
    const auto count = static_cast<quint64>(bytes);
    if (count < kThousand)
        return locale.toString(count) + u" bytes"_s;
    for (const Unit &unit : kUnits) {
        const quint64 value = inLastDecimals(count, unit);
        // Asked after rounding: 999,999 bytes are 1 MB, never 1000 KB.
        if (value < kThousand * powerOfTen(unit.decimals))
            return withoutTrailingZeros(value, unit.decimals, locale) + u' ' + unit.name;
    }
    Q_UNREACHABLE(); // 63 bits hold less than 10 EB
}

} // namespace tallowmere
