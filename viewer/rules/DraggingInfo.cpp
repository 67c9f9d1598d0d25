// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "viewer/rules/DraggingInfo.h"

#include <algorithm>

namespace tallowmere {

namespace {

/// Whether the bytes at the end of @p line say that the file has none of the @p extensions. False: they don't say.
///
/// To read a line in full takes about a microsecond, and a drag may carry many thousands of files.
bool isRefusedByItsEnd(QByteArrayView line, const QList<QByteArray> &extensions)
{
    const QByteArrayView name = line.sliced(line.lastIndexOf('/') + 1);
    const qsizetype dot = name.lastIndexOf('.');
    const QByteArrayView extension = dot < 0 ? name : name.sliced(dot + 1);
    // Encoded, the dot may come later; with nothing at the end, the name may be another part of the path.
    if (extension.isEmpty() || extension.contains('%'))
        return false;
    if (dot < 0)
        return !extensions.contains(QByteArray());
    return std::none_of(extensions.begin(), extensions.end(), [extension](const QByteArray &each) {
        return each.compare(extension, Qt::CaseInsensitive) == 0;
    });
}

std::optional<FileURL> acceptableFile(QByteArrayView line, const QList<QByteArray> &extensions)
{
    if (line.isEmpty() || line.startsWith('#')) // a comment
        return std::nullopt;
    if (isRefusedByItsEnd(line, extensions))
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
