// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "settings/PrefetchCountText.h"

#include <QList>

#include <algorithm>

namespace tallowmere::PrefetchCountText {

namespace {

/// By code points: the digits of some scripts take two UTF-16 units.
QString numbersIn(const QString &text)
{
    QString numbers;
    for (const uint character : text.toUcs4()) {
        if (QChar::isNumber(character))
            numbers += QChar::fromUcs4(character);
    }
    return numbers;
}

} // namespace

Typed withNumbersOnly(const Typed &typed)
{
    return {numbersIn(typed.text), static_cast<int>(numbersIn(typed.text.left(typed.cursor)).size())};
}

std::optional<int> parse(const QString &text)
{
    const bool hasSign = text.startsWith(u'+') || text.startsWith(u'-');
    const QList<uint> digits = text.mid(hasSign ? 1 : 0).toUcs4();
    if (digits.isEmpty())
        return std::nullopt;
    int magnitude = 0;
    for (const uint digit : digits) {
        if (QChar::category(digit) != QChar::Number_DecimalDigit)
            return std::nullopt;
        // One past the end is as good as any larger number, and can't overflow.
        magnitude = std::min(magnitude * 10 + QChar::digitValue(digit), kMostImages + 1);
    }
    const int count = text.startsWith(u'-') ? -magnitude : magnitude;
    return count >= 0 && count <= kMostImages ? std::optional(count) : std::nullopt;
}

} // namespace tallowmere::PrefetchCountText
