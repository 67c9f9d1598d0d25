// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "viewer/WindowTitle.h"

namespace tallowmere {

QString nameOnOneLine(const FileURL &file)
{
    QString name = file.displayName();
    for (QChar &character : name) {
        const QChar::Category category = character.category();
        if (category == QChar::Other_Control || category == QChar::Separator_Line ||
            category == QChar::Separator_Paragraph)
            character = QLatin1Char(' ');
    }
    return name;
}

QString windowTitleFor(const FileURL &file, FileNameDisplayLocation location)
{
    const QString product = QStringLiteral("Tallowmere");
    if (file.empty() || location != FileNameDisplayLocation::inTitle)
        return product;
    QString name = nameOnOneLine(file);
    // Qt keeps "[*]" for its mark of unsaved changes; twice means the text itself.
    name.replace(QStringLiteral("[*]"), QStringLiteral("[*][*]"));
    return product + QStringLiteral(" • ") + name;
}

} // namespace tallowmere
