// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "viewer/rules/DraggingInfo.h"

namespace tallowmere {

namespace {

std::optional<FileURL> acceptableFile(QByteArrayView line, const QList<QByteArray> &extensions)
{
    if (line.isEmpty() || line.startsWith('#')) // a comment
        return std::nullopt;
    auto file = FileURL::fromEncoded(line.toByteArray());
    if (!file || !extensions.contains(file->lowercasedPathExtension()))
        return std::nullopt;
    return file;
}

std::optional<FileURL> firstAcceptable(QByteArrayView list, const QList<QByteArray> &extensions)
{
    while (list.endsWith('\0')) // some senders end the text as C does
        list.chop(1);
    while (!list.isEmpty()) {
        const qsizetype end = list.indexOf('\n'); // lines should end in CR LF; many senders leave the CR out
        const QByteArrayView line = (end < 0 ? list : list.first(end)).trimmed();
        list = end < 0 ? QByteArrayView() : list.sliced(end + 1);
        if (auto file = acceptableFile(line, extensions))
            return file;
    }
    return std::nullopt;
}

} // namespace

std::optional<FileURL> DraggingInfo::firstAcceptableFile(const QList<QByteArray> &enabledExtensions) const
{
    if (m_askedWith != enabledExtensions) {
        m_answer = firstAcceptable(m_uriList, enabledExtensions);
        m_askedWith = enabledExtensions;
    }
    return m_answer;
}

} // namespace tallowmere
