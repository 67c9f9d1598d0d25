// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArrayView>
#include <QList>

#include <optional>

namespace tallowmere {

/// One line of a key file: the format of the Desktop Entry Specification, read with GLib's rules. Views into the file.
struct KeyFileLine
{
    enum class Kind
    {
        other, ///< blank, or a comment
        group,
        entry,
        unreadable ///< readers stop here
    };

    Kind kind = Kind::other;
    QByteArrayView whole;  ///< with its ending
    QByteArrayView ending; ///< "\n", "\r\n" or, at the end of the file, nothing
    QByteArrayView name;   ///< the group's, or the entry's key
    QByteArrayView value;  ///< the entry's, with its escapes
};

/// Steps through a key file line by line. Nothing is copied; the file outlives it. Plain bytes: any content will do.
class KeyFileLines final
{
public:
    explicit KeyFileLines(QByteArrayView file) : m_rest(file) {}

    /// Nothing at the end.
    [[nodiscard]] std::optional<KeyFileLine> next();

private:
    QByteArrayView m_rest;
    bool m_insideGroup = false;
};

/// The elements of a list value, with their escapes; a semicolon may end the last one.
[[nodiscard]] QList<QByteArrayView> keyFileElements(QByteArrayView value);
/// Valid UTF-8 with known escapes. One element that is not makes a reader drop the whole list.
[[nodiscard]] bool isReadableKeyFileElement(QByteArrayView element);

} // namespace tallowmere
