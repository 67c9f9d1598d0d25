// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "viewer/rules/FileInfoText.h"

#include "platform/SecurityScope.h"
#include "settings/SettingsManager.h"
#include "viewer/rules/ByteCountText.h"
#include "viewer/rules/DateText.h"
#include "viewer/rules/StoredResolution.h"

#include <QStringList>

namespace tallowmere {

using namespace Qt::Literals::StringLiterals;

FileInfoSelection FileInfoSelection::of(const SettingsManager &settings)
{
    return {.fileSize = settings.showFileSize(),
            .creationDate = settings.showCreationDate(),
            .imageResolution = settings.showImageResolution()};
}

QString FileInfoTexts::joined() const
{
    QStringList present;
    for (const auto &text : {size, date, resolution}) {
        if (text)
            present.append(*text);
    }
    return present.join(u" \u2022 "_s);
}

std::optional<QString> resolutionText(PixelSize size)
{
    if (size.empty())
        return std::nullopt;
    return QString::number(size.width) + u'\u00D7' + QString::number(size.height);
}

FileInfoTexts readFileInfo(const FileURL &file, FileInfoSelection selection, const FileAttributesReader &reader,
                           SecurityScope &scope)
{
    const ScopedAccess access(scope, file);
    FileInfoTexts texts;
    if (selection.fileSize || selection.creationDate) {
        const FileAttributes attributes = reader.attributes(file).value_or(FileAttributes{});
        if (selection.fileSize)
            texts.size = byteCountText(attributes.size);
        if (selection.creationDate)
            texts.date = dateText(attributes.creationDate);
    }
    if (selection.imageResolution)
        texts.resolution = resolutionText(storedResolution(file).value_or(PixelSize{}));
    return texts;
}

} // namespace tallowmere
