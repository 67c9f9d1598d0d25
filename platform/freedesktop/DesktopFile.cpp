// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "platform/freedesktop/DesktopFile.h"

#include "platform/freedesktop/KeyFileLines.h"

namespace tallowmere {

std::optional<QList<QByteArray>> mimeTypesOfDesktopFile(const QByteArray &contents)
{
    using Kind = KeyFileLine::Kind;
    bool inside = false;
    bool isApplication = false;
    bool isRemoved = false;
    QList<QByteArray> types;
    KeyFileLines lines(contents);
    while (const auto line = lines.next()) {
        if (line->kind == Kind::unreadable)
            return std::nullopt;
        if (line->kind == Kind::group)
            inside = line->name == "Desktop Entry";
        if (!inside || line->kind != Kind::entry)
            continue;
        if (line->name == "Type") {
            isApplication = line->value == "Application";
        } else if (line->name == "Hidden") {
            isRemoved = line->value.startsWith("true");
        } else if (line->name == "MimeType") {
            types.clear();
            for (const QByteArrayView type : keyFileElements(line->value))
                types.append(type.toByteArray());
        }
    }
    return isApplication && !isRemoved ? std::optional(types) : std::nullopt;
}

} // namespace tallowmere
