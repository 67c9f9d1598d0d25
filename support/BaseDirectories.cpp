// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "support/BaseDirectories.h"

#include <pwd.h>
#include <unistd.h>

#include <vector>

namespace tallowmere {
namespace {

QByteArray withoutTrailingSlash(QByteArray path)
{
    while (path.size() > 1 && path.endsWith('/'))
        path.chop(1);
    return path;
}

QByteArray absolutePathFrom(const char *variable)
{
    const QByteArray value = qgetenv(variable);
    return value.startsWith('/') ? withoutTrailingSlash(value) : QByteArray();
}

QByteArray homeOfUser()
{
    constexpr std::size_t kMostBytes = 1 << 20;
    for (std::vector<char> buffer(1024); buffer.size() <= kMostBytes; buffer.resize(buffer.size() * 2)) {
        passwd entry{};
        passwd *found = nullptr;
        const int error = ::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found);
        if (error == 0 && found && found->pw_dir && found->pw_dir[0] == '/')
            return withoutTrailingSlash(found->pw_dir);
        if (error != ERANGE)
            break;
    }
    return {};
}

QByteArray personal(const char *variable, const QByteArray &home, const char *below)
{
    const QByteArray path = absolutePathFrom(variable);
    if (!path.isEmpty() || home.isEmpty())
        return path;
    return (home == "/" ? QByteArray() : home) + below;
}

QList<QByteArray> systemWide(const char *variable, const char *otherwise)
{
    QByteArray value = qgetenv(variable);
    if (value.isEmpty())
        value = otherwise;
    QList<QByteArray> paths;
    for (const QByteArray &path : value.split(':')) {
        if (path.startsWith('/'))
            paths.append(withoutTrailingSlash(path));
    }
    return paths;
}

} // namespace

BaseDirectories BaseDirectories::fromEnvironment()
{
    BaseDirectories found;
    found.home = absolutePathFrom("HOME");
    if (found.home.isEmpty())
        found.home = homeOfUser();
    found.config = personal("XDG_CONFIG_HOME", found.home, "/.config");
    found.data = personal("XDG_DATA_HOME", found.home, "/.local/share");
    found.cache = personal("XDG_CACHE_HOME", found.home, "/.cache");
    found.configDirs = systemWide("XDG_CONFIG_DIRS", "/etc/xdg");
    found.dataDirs = systemWide("XDG_DATA_DIRS", "/usr/local/share:/usr/share");
    return found;
}

} // namespace tallowmere
