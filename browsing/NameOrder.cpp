// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "browsing/NameOrder.h"

#include <QString>

#include <unicode/ucol.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>

namespace tallowmere {
namespace {

using CollatorHandle = std::unique_ptr<UCollator, decltype(&ucol_close)>;

CollatorHandle openCollator(const QByteArray &locale)
{
    UErrorCode status = U_ZERO_ERROR;
    CollatorHandle collator(ucol_open(locale.isEmpty() ? "" : locale.constData(), &status), &ucol_close);
    if (U_FAILURE(status)) // nonsense in the environment must not cost the order of numbers
        return locale.isEmpty() ? CollatorHandle(nullptr, &ucol_close) : openCollator({});
    ucol_setAttribute(collator.get(), UCOL_NUMERIC_COLLATION, UCOL_ON, &status);
    ucol_setStrength(collator.get(), UCOL_SECONDARY);
    if (U_FAILURE(status))
        return {nullptr, &ucol_close};
    return collator;
}

/// The collation keys of many names in one block of memory.
class CollationKeys
{
public:
    CollationKeys(const UCollator *collator, const std::vector<QByteArray> &names)
    {
        m_starts.reserve(names.size());
        m_bytes.reserve(names.size() * kUsualKeyBytes);
        for (const QByteArray &name : names)
            append(collator, QString::fromUtf8(name));
    }

    /// Keys end with a zero byte and hold none before.
    [[nodiscard]] const char *operator[](std::size_t index) const
    {
        return reinterpret_cast<const char *>(m_bytes.data() + m_starts[index]);
    }

private:
    static constexpr std::size_t kUsualKeyBytes = 40;

    void append(const UCollator *collator, const QString &text)
    {
        const std::size_t start = m_bytes.size();
        m_starts.push_back(start);
        const auto *characters = reinterpret_cast<const UChar *>(text.utf16());
        const auto length = static_cast<std::int32_t>(text.size());
        std::int32_t room = kUsualKeyBytes;
        while (true) {
            m_bytes.resize(start + static_cast<std::size_t>(room));
            const std::int32_t needed = ucol_getSortKey(collator, characters, length, m_bytes.data() + start, room);
            if (needed <= 0)
                m_bytes[start] = 0; // no key: an empty one, and byte order decides
            if (needed <= room) {
                m_bytes.resize(start + static_cast<std::size_t>(std::max(needed, 1)));
                return;
            }
            room = needed;
        }
    }

    std::vector<std::uint8_t> m_bytes;
    std::vector<std::size_t> m_starts;
};

} // namespace

void sortByName(std::vector<QByteArray> &names, const QByteArray &locale)
{
    const CollatorHandle collator = openCollator(locale);
    if (!collator) {
        std::sort(names.begin(), names.end());
        return;
    }
    const CollationKeys keys(collator.get(), names);
    std::vector<std::size_t> order(names.size());
    for (std::size_t i = 0; i < order.size(); ++i)
        order[i] = i;
    std::sort(order.begin(), order.end(), [&](std::size_t left, std::size_t right) {
        const int byKey = std::strcmp(keys[left], keys[right]);
        return byKey != 0 ? byKey < 0 : names[left] < names[right];
    });
    std::vector<QByteArray> sorted;
    sorted.reserve(names.size());
    for (const std::size_t index : order)
        sorted.push_back(std::move(names[index]));
    names = std::move(sorted);
}

void sortByName(std::vector<QByteArray> &names)
{
    sortByName(names, collationLocale(qgetenv("LC_ALL"), qgetenv("LC_COLLATE"), qgetenv("LANG")));
}

QByteArray collationLocale(const QByteArray &lcAll, const QByteArray &lcCollate, const QByteArray &lang)
{
    const QByteArray &chosen = !lcAll.isEmpty() ? lcAll : !lcCollate.isEmpty() ? lcCollate : lang;
    qsizetype end = 0;
    while (end < chosen.size() && chosen[end] != '.' && chosen[end] != '@')
        ++end;
    const QByteArray name = chosen.first(end);
    return name == "C" || name == "POSIX" ? QByteArray() : name;
}

} // namespace tallowmere
