// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "support/FileURL.h"

#include <QList>

#include <unistd.h>

#include <array>
#include <climits>
#include <cstdlib>
#include <memory>

namespace tallowmere {
namespace {

QByteArray workingDirectory()
{
    const std::unique_ptr<char, decltype(&std::free)> directory(::getcwd(nullptr, 0), &std::free);
    return directory ? QByteArray(directory.get()) : QByteArray("/");
}

QByteArray normalised(const QByteArray &absolutePath)
{
    QList<QByteArrayView> kept;
    const QByteArrayView path(absolutePath);
    for (qsizetype start = 0; start <= path.size();) {
        const qsizetype slash = path.indexOf('/', start);
        const qsizetype end = slash < 0 ? path.size() : slash;
        const QByteArrayView segment = path.sliced(start, end - start);
        if (segment == "..") {
            if (!kept.isEmpty())
                kept.removeLast();
        } else if (!segment.isEmpty() && segment != ".") {
            kept.append(segment);
        }
        start = end + 1;
    }
    QByteArray result;
    result.reserve(path.size());
    for (const QByteArrayView segment : kept)
        result.append('/').append(segment);
    return result.isEmpty() ? QByteArray("/") : result;
}

int hexValue(char digit)
{
    if (digit >= '0' && digit <= '9')
        return digit - '0';
    const char lower = static_cast<char>(digit | 0x20);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

std::optional<QByteArray> percentDecoded(QByteArrayView text)
{
    QByteArray bytes;
    bytes.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] != '%') {
            bytes.append(text[i]);
            continue;
        }
        if (i + 2 >= text.size())
            return std::nullopt;
        const int high = hexValue(text[i + 1]);
        const int low = hexValue(text[i + 2]);
        if (high < 0 || low < 0)
            return std::nullopt;
        bytes.append(static_cast<char>(high * 16 + low));
        i += 2;
    }
    // The kernel would end the path at a zero byte and open another file than was named.
    if (bytes.contains('\0'))
        return std::nullopt;
    return bytes;
}

bool isThisMachine(QByteArrayView host)
{
    if (host.isEmpty() || host.compare("localhost", Qt::CaseInsensitive) == 0)
        return true;
    std::array<char, HOST_NAME_MAX + 1> own{};
    return ::gethostname(own.data(), own.size() - 1) == 0 &&
           host.compare(QByteArrayView(own.data()), Qt::CaseInsensitive) == 0;
}

bool isUnreserved(char byte)
{
    const char lower = static_cast<char>(byte | 0x20);
    return (lower >= 'a' && lower <= 'z') || (byte >= '0' && byte <= '9') || byte == '-' || byte == '.' ||
           byte == '_' || byte == '~';
}

} // namespace

FileURL FileURL::fromPath(const QByteArray &path)
{
    if (path.isEmpty())
        return {};
    return FileURL(normalised(path.startsWith('/') ? path : workingDirectory() + '/' + path));
}

std::optional<FileURL> FileURL::fromEncoded(const QByteArray &uri)
{
    constexpr QByteArrayView kScheme("file:");
    QByteArrayView rest(uri);
    if (rest.size() <= kScheme.size() || rest.first(kScheme.size()).compare(kScheme, Qt::CaseInsensitive) != 0)
        return std::nullopt;
    rest = rest.sliced(kScheme.size());
    if (rest.startsWith("//")) {
        rest = rest.sliced(2);
        const qsizetype slash = rest.indexOf('/');
        if (slash < 0 || !isThisMachine(rest.first(slash)))
            return std::nullopt;
        rest = rest.sliced(slash);
    }
    if (!rest.startsWith('/'))
        return std::nullopt;
    const auto path = percentDecoded(rest);
    return path ? std::optional(FileURL(normalised(*path))) : std::nullopt;
}

QByteArray FileURL::lastPathComponent() const
{
    return m_path.size() <= 1 ? m_path : m_path.sliced(m_path.lastIndexOf('/') + 1);
}

QString FileURL::displayName() const
{
    return QString::fromUtf8(lastPathComponent());
}

QByteArray FileURL::lowercasedPathExtension() const
{
    return lowercasedPathExtension(QByteArrayView(m_path).sliced(m_path.lastIndexOf('/') + 1));
}

QByteArray FileURL::lowercasedPathExtension(QByteArrayView name)
{
    const qsizetype dot = name.lastIndexOf('.');
    return dot < 0 ? QByteArray() : name.sliced(dot + 1).toByteArray().toLower();
}

FileURL FileURL::deletingLastPathComponent() const
{
    if (m_path.size() <= 1)
        return *this;
    return FileURL(m_path.first(std::max<qsizetype>(m_path.lastIndexOf('/'), 1)));
}

FileURL FileURL::appending(const QByteArray &name) const
{
    QByteArray path;
    path.reserve(m_path.size() + 1 + name.size());
    path.append(m_path);
    if (!path.endsWith('/'))
        path.append('/');
    return FileURL(path.append(name));
}

QByteArray FileURL::encoded() const
{
    constexpr char kHex[] = "0123456789ABCDEF";
    if (m_path.isEmpty())
        return {};
    QByteArray uri("file://");
    for (const char byte : m_path) {
        if (isUnreserved(byte) || byte == '/') {
            uri.append(byte);
        } else {
            const auto value = static_cast<unsigned char>(byte);
            uri.append('%').append(kHex[value >> 4]).append(kHex[value & 15]);
        }
    }
    return uri;
}

} // namespace tallowmere
