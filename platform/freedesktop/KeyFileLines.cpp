// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "platform/freedesktop/KeyFileLines.h"

#include <QUtf8StringView>

#include <algorithm>

namespace tallowmere {

namespace {

bool isSpace(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\f' || c == '\r';
}

bool isControl(char c)
{
    return static_cast<unsigned char>(c) < 0x20 || c == 0x7F;
}

bool isLocaleCharacter(char c)
{
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '-' || c == '_' ||
           c == '.' || c == '@' || static_cast<unsigned char>(c) >= 0x80;
}

QByteArrayView withoutLeadingSpace(QByteArrayView text)
{
    while (!text.isEmpty() && isSpace(text.front()))
        text = text.sliced(1);
    return text;
}

QByteArrayView withoutTrailingSpace(QByteArrayView text)
{
    while (!text.isEmpty() && isSpace(text.back()))
        text.chop(1);
    return text;
}

/// "key" or "key[locale]".
bool isKey(QByteArrayView name)
{
    const qsizetype bracket = std::min(
        name.size(),
        static_cast<qsizetype>(std::ranges::find_if(name, [](char c) { return c == '[' || c == ']'; }) - name.begin()));
    if (bracket == 0 || name[bracket - 1] == ' ')
        return false;
    if (bracket == name.size())
        return true;
    const QByteArrayView locale = name.sliced(bracket);
    return locale.size() >= 2 && locale.front() == '[' && locale.back() == ']' &&
           std::ranges::all_of(locale.sliced(1).chopped(1), isLocaleCharacter);
}

/// The name between the brackets; nothing when @p text is no group's header.
std::optional<QByteArrayView> headerName(QByteArrayView text)
{
    const qsizetype end = text.indexOf(']');
    if (!text.startsWith('[') || end < 0)
        return std::nullopt;
    const bool nothingAfter = std::ranges::all_of(text.sliced(end + 1), [](char c) { return c == ' ' || c == '\t'; });
    return nothingAfter ? std::optional(text.first(end).sliced(1)) : std::nullopt;
}

void classify(KeyFileLine &line, QByteArrayView text)
{
    using Kind = KeyFileLine::Kind;
    // Readers take lines for C strings.
    if (const qsizetype end = text.indexOf('\0'); end >= 0)
        text = text.first(end);
    text = withoutLeadingSpace(text);
    if (text.isEmpty() || text.startsWith('#'))
        return;
    line.kind = Kind::unreadable;
    if (const auto name = headerName(text)) {
        if (!name->isEmpty() && std::ranges::none_of(*name, [](char c) { return c == '[' || isControl(c); })) {
            line.kind = Kind::group;
            line.name = *name;
        }
        return;
    }
    const qsizetype equals = text.indexOf('=');
    if (equals <= 0)
        return;
    line.name = withoutTrailingSpace(text.first(equals));
    line.value = withoutLeadingSpace(text.sliced(equals + 1));
    if (isKey(line.name))
        line.kind = Kind::entry;
}

} // namespace

std::optional<KeyFileLine> KeyFileLines::next()
{
    if (m_rest.isEmpty())
        return std::nullopt;
    KeyFileLine line;
    const qsizetype feed = m_rest.indexOf('\n');
    line.whole = feed < 0 ? m_rest : m_rest.first(feed + 1);
    m_rest = m_rest.sliced(line.whole.size());
    // A carriage return that no line feed follows belongs to the text.
    const qsizetype endingSize = feed < 0 ? 0 : (line.whole.endsWith("\r\n") ? 2 : 1);
    line.ending = line.whole.last(endingSize);
    classify(line, line.whole.chopped(endingSize));
    if (line.kind == KeyFileLine::Kind::group)
        m_insideGroup = true;
    else if (line.kind == KeyFileLine::Kind::entry && !m_insideGroup)
        line.kind = KeyFileLine::Kind::unreadable;
    return line;
}

QList<QByteArrayView> keyFileElements(QByteArrayView value)
{
    QList<QByteArrayView> elements;
    qsizetype begin = 0;
    for (qsizetype i = 0; i < value.size(); ++i) {
        if (value[i] == '\\') {
            ++i;
        } else if (value[i] == ';') {
            elements.append(value.sliced(begin, i - begin));
            begin = i + 1;
        }
    }
    if (begin < value.size())
        elements.append(value.sliced(begin));
    return elements;
}

bool isReadableKeyFileElement(QByteArrayView element)
{
    constexpr QByteArrayView kEscapes("sntr\\;");
    for (qsizetype i = 0; i < element.size(); ++i) {
        if (element[i] == '\\' && (++i == element.size() || !kEscapes.contains(element[i])))
            return false;
    }
    return QUtf8StringView(element).isValidUtf8();
}

} // namespace tallowmere
