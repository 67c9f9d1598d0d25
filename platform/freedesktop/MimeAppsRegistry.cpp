// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "platform/freedesktop/MimeAppsRegistry.h"

#include "platform/freedesktop/DesktopFile.h"
#include "platform/freedesktop/GioApplications.h"
#include "platform/freedesktop/MimeAppsList.h"
#include "platform/freedesktop/ReplacedFile.h"
#include "support/BaseDirectories.h"

#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cerrno>

namespace tallowmere {

namespace {

constexpr char kDesktopSuffix[] = ".desktop";
constexpr qint64 kLargestDesktopFile = qint64{1} << 20; // bytes
/// A list of this size is no list any more. A sixth of it is edited within a tenth of a second.
constexpr qint64 kLargestList = qint64{64} << 20; // bytes

struct KnownType
{
    QByteArrayView contentType;
    QByteArrayView mimeType;
};
constexpr std::array<KnownType, 6> kKnownTypes{{{"public.jpeg", "image/jpeg"},
                                                {"public.png", "image/png"},
                                                {"org.webmproject.webp", "image/webp"},
                                                {"public.avif", "image/avif"},
                                                {"public.heic", "image/heic"},
                                                {"public.heif", "image/heif"}}};

/// Empty for a type that is not known.
QByteArray mimeTypeOf(const QByteArray &contentType)
{
    const auto known = std::ranges::find(kKnownTypes, QByteArrayView(contentType), &KnownType::contentType);
    return known == kKnownTypes.end() ? QByteArray() : known->mimeType.toByteArray();
}

/// What the installed application says that it opens; nothing at all when it is not installed.
QList<QByteArray> typesOfInstalled(const QByteArray &desktopFile, const BaseDirectories &directories)
{
    for (const QByteArray &folder : QList<QByteArray>{directories.data} + directories.dataDirs) {
        if (folder.isEmpty())
            continue;
        const WholeFile file = readWholeFile(folder + "/applications/" + desktopFile, kLargestDesktopFile);
        // The first that is there counts, be it unreadable: it hides those of the folders behind.
        if (file.exists)
            return mimeTypesOfDesktopFile(file.contents.value_or(QByteArray())).value_or(QList<QByteArray>());
    }
    return {};
}

/// As the XDG Base Directory Specification wants a missing one: for its owner alone.
bool makeFolders(const QByteArray &path)
{
    if (::mkdir(path.constData(), 0700) == 0 || errno == EEXIST)
        return true;
    const qsizetype slash = path.lastIndexOf('/');
    return errno == ENOENT && slash > 0 && makeFolders(path.first(slash)) && ::mkdir(path.constData(), 0700) == 0;
}

bool writeDefaults(const QByteArray &configFolder, const QByteArray &desktopFile, const QList<QByteArray> &mimeTypes)
{
    if (configFolder.isEmpty())
        return false;
    // People keep such files elsewhere and link to them: the link is to stay.
    const auto path = followedLinks(configFolder + "/mimeapps.list");
    if (!path)
        return false;
    const WholeFile old = readWholeFile(*path, kLargestList);
    if (old.exists && !old.contents)
        return false;
    const QByteArray text = withDefaultApplication(old.contents.value_or(QByteArray()), desktopFile, mimeTypes);
    return text == old.contents || (makeFolders(configFolder) && replaceWholeFile(*path, text));
}

} // namespace

MimeAppsRegistry::MimeAppsRegistry() : m_reader(gioDefaultApplication) {}

QList<DefaultHandlerRegistry::Status> MimeAppsRegistry::setDefaultHandler(const QList<QByteArray> &contentTypes,
                                                                          const QByteArray &handler)
{
    const BaseDirectories directories = BaseDirectories::fromEnvironment();
    const QByteArray desktopFile = handler + kDesktopSuffix;
    const QList<QByteArray> opened = typesOfInstalled(desktopFile, directories);
    QList<Status> statuses;
    QList<QByteArray> accepted;
    for (const QByteArray &contentType : contentTypes) {
        const QByteArray mimeType = mimeTypeOf(contentType);
        if (mimeType.isEmpty()) {
            statuses.append(kInvalidParameter);
        } else if (!opened.contains(mimeType)) {
            statuses.append(kApplicationNotFound);
        } else {
            statuses.append(kSuccess);
            accepted.append(mimeType);
        }
    }
    if (!accepted.isEmpty() && !writeDefaults(directories.config, desktopFile, accepted))
        std::ranges::replace(statuses, kSuccess, kUnknownError);
    return statuses;
}

std::optional<QByteArray> MimeAppsRegistry::defaultHandler(const QByteArray &contentType) const
{
    const QByteArray mimeType = mimeTypeOf(contentType);
    auto desktopFile = mimeType.isEmpty() ? std::nullopt : m_reader(mimeType);
    if (desktopFile && desktopFile->endsWith(kDesktopSuffix))
        desktopFile->chop(qsizetype{sizeof kDesktopSuffix} - 1);
    return desktopFile;
}

} // namespace tallowmere
