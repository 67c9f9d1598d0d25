// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "platform/freedesktop/TrashInfo.h"

#include "support/FileURL.h"

#include <algorithm>

namespace tallowmere {
namespace {

/// What is left of @p text when at most @p bytes of it fit: no UTF-8 character is cut in two.
QByteArray shortened(const QByteArray &text, qsizetype bytes)
{
    if (text.size() <= bytes)
        return text;
    qsizetype end = std::max<qsizetype>(bytes, 0);
    while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U)
        --end;
    // Bytes that are no UTF-8 may all look like the inside of a character.
    return text.first(end > 0 ? end : std::max<qsizetype>(bytes, 0));
}

} // namespace

QByteArray trashInfoText(const QByteArray &path, const QDateTime &deleted)
{
    const bool relative = !path.startsWith('/');
    const QByteArray uri = FileURL::fromPath(relative ? '/' + path : path).encoded();
    const QByteArray encoded = uri.sliced(sizeof "file://" - 1 + (relative ? 1 : 0));
    return "[Trash Info]\nPath=" + encoded +
           "\nDeletionDate=" + deleted.toString(QStringLiteral("yyyy-MM-dd'T'hh:mm:ss")).toLatin1() + '\n';
}

QByteArray trashInfoName(const QByteArray &trashedName)
{
    return trashedName + ".trashinfo";
}

QByteArray nameInTrash(const QByteArray &name, quint64 number, qsizetype longest)
{
    const qsizetype dot = name.lastIndexOf('.');
    const qsizetype stemSize = dot > 0 ? dot : name.size(); // a leading dot hides a file, it begins no extension
    const QByteArray counter = number > 1 ? '.' + QByteArray::number(number) : QByteArray();
    // An extension that leaves no room for anything else is none.
    const bool hasExtension = name.size() - stemSize + counter.size() < longest;
    const QByteArray ending = counter + (hasExtension ? name.sliced(stemSize) : QByteArray());
    const QByteArray stem = hasExtension ? name.first(stemSize) : name;
    return shortened(stem, longest - ending.size()) + ending;
}

} // namespace tallowmere
