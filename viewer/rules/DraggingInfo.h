// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "support/FileURL.h"

#include <QByteArray>
#include <QList>

#include <optional>

namespace tallowmere {

/// The files of one drag, as the other program announced them.
///
/// Looked through once and only as far as the first file that is accepted, however often it is asked: a drag asks
/// with every move of the pointer, and may carry thousands of files. One thread.
class DraggingInfo final
{
public:
    /// @p uriList: what "text/uri-list" holds (RFC 2483). Anything but a local file in it is passed over.
    explicit DraggingInfo(QByteArray uriList) : m_uriList(std::move(uriList)) {}

    /// The first file with one of the @p enabledExtensions (lower case); the file's own are lower-cased first.
    /// Nothing when there is none. The disk is not asked: a folder is judged by its name, too.
    [[nodiscard]] std::optional<FileURL> firstAcceptableFile(const QList<QByteArray> &enabledExtensions) const;

private:
    QByteArray m_uriList;
    mutable std::optional<QList<QByteArray>> m_askedWith; ///< what m_answer holds for; nothing: not asked yet
    mutable std::optional<FileURL> m_answer;
};

} // namespace tallowmere
