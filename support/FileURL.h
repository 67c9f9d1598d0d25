// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QHashFunctions>
#include <QString>

#include <optional>
#include <utility>

namespace tallowmere {

/// The place of a file on this machine, as the bytes the kernel knows it by.
///
/// A file name need not be valid text; text is made for display only. Two URLs
/// are equal when their bytes are. Threads: a value, any.
class FileURL final
{
public:
    /// No file; empty() is true.
    FileURL() = default;
    /// @p path is made absolute against the working directory; "." and ".." segments and doubled
    /// slashes are resolved by text, links are not followed. An empty path gives the empty URL.
    [[nodiscard]] static FileURL fromPath(const QByteArray &path);
    /// Nothing for another scheme, another host, a relative path or a broken percent code. This machine's own
    /// name is no other host. "?" and "#" are taken as part of the name: senders often forget to encode them.
    [[nodiscard]] static std::optional<FileURL> fromEncoded(const QByteArray &uri);

    [[nodiscard]] bool empty() const { return m_path.isEmpty(); }
    [[nodiscard]] const QByteArray &path() const { return m_path; }
    [[nodiscard]] QByteArray lastPathComponent() const;
    /// The last path component as text; bytes that are not UTF-8 become U+FFFD.
    [[nodiscard]] QString displayName() const;
    /// What follows the last dot of the name; empty when there is none. ASCII letters in lower case.
    [[nodiscard]] QByteArray lowercasedPathExtension() const;
    /// The same of a bare name, as a folder listing gives it.
    [[nodiscard]] static QByteArray lowercasedPathExtension(QByteArrayView name);
    [[nodiscard]] FileURL deletingLastPathComponent() const;
    [[nodiscard]] FileURL appending(const QByteArray &name) const;
    /// "file:///…", every byte outside RFC 3986's unreserved set and "/" percent-encoded.
    [[nodiscard]] QByteArray encoded() const;

    friend bool operator==(const FileURL &, const FileURL &) = default;
    friend size_t qHash(const FileURL &url, size_t seed = 0) { return qHash(url.m_path, seed); }

private:
    explicit FileURL(QByteArray path) : m_path(std::move(path)) {}

    QByteArray m_path;
};

} // namespace tallowmere

template <>
struct std::hash<tallowmere::FileURL>
{
    std::size_t operator()(const tallowmere::FileURL &url) const noexcept { return qHash(url); }
};
