// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "platform/freedesktop/MimeAppsList.h"

#include "platform/freedesktop/KeyFileLines.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace tallowmere {

namespace {

constexpr QByteArrayView kGroup("Default Applications");

/// What to do where: the bytes from @p begin on, @p size of them, make way for @p text.
struct Edit
{
    qsizetype begin = 0;
    qsizetype size = 0;
    QByteArray text;
};

/// Where the default applications lie in a file.
struct Layout
{
    std::vector<std::optional<KeyFileLine>> entries; ///< one for each type: the line that counts
    std::optional<KeyFileLine> newEntriesAfter;      ///< nothing when the group is missing
    std::optional<KeyFileLine> last;                 ///< the file's last line
    bool readable = true;                            ///< to the end
};

Layout layoutOf(QByteArrayView file, const QList<QByteArray> &types)
{
    using Kind = KeyFileLine::Kind;
    Layout layout;
    layout.entries.resize(static_cast<std::size_t>(types.size()));
    bool inside = false;
    bool firstTime = true; // the group may come back; new entries go to where it is first met
    KeyFileLines lines(file);
    while (const auto line = lines.next()) {
        layout.last = line;
        if (line->kind == Kind::unreadable) {
            layout.readable = false;
            break;
        }
        if (line->kind == Kind::group) {
            firstTime = firstTime && !inside;
            inside = line->name == kGroup;
        }
        if (!inside || line->kind == Kind::other)
            continue;
        if (firstTime)
            layout.newEntriesAfter = line;
        if (line->kind == Kind::entry) {
            const qsizetype type = types.indexOf(line->name);
            if (type >= 0)
                layout.entries[static_cast<std::size_t>(type)] = line;
        }
    }
    return layout;
}

/// @p value with @p desktopFile at its head.
QByteArray withFirst(QByteArrayView value, const QByteArray &desktopFile)
{
    QByteArray text = desktopFile;
    const bool closed = value.endsWith(';');
    for (const QByteArrayView element : keyFileElements(value)) {
        // One unreadable element would take the whole list, and us with it, out of the readers' sight.
        if (element != desktopFile && isReadableKeyFileElement(element))
            text.append(';').append(element);
    }
    return closed ? text.append(';') : text;
}

bool isFirst(QByteArrayView value, const QByteArray &desktopFile)
{
    const auto elements = keyFileElements(value);
    return !elements.isEmpty() && elements.first() == desktopFile &&
           std::all_of(elements.begin(), elements.end(), isReadableKeyFileElement);
}

QByteArray newEntries(const Layout &layout, const QByteArray &desktopFile, const QList<QByteArray> &types,
                      QByteArrayView ending)
{
    QByteArray text;
    for (qsizetype i = 0; i < types.size(); ++i) {
        if (!layout.entries[static_cast<std::size_t>(i)] && types.indexOf(types[i]) == i)
            text.append(types[i]).append('=').append(desktopFile).append(ending);
    }
    return text;
}

/// How the lines of @p file end.
QByteArrayView endingOf(QByteArrayView file)
{
    const auto first = KeyFileLines(file).next();
    return first && !first->ending.isEmpty() ? first->ending : QByteArrayView("\n");
}

/// Puts whole lines, each with @p ending, behind @p line. A file that ended without one still does.
Edit insertedAfter(const KeyFileLine &line, QByteArrayView file, QByteArray lines, QByteArrayView ending)
{
    const qsizetype end = line.whole.data() + line.whole.size() - file.data();
    if (line.ending.isEmpty()) {
        lines.prepend(ending);
        lines.chop(ending.size());
    }
    return {end, 0, lines};
}

Edit addition(const Layout &layout, QByteArrayView file, const QByteArray &desktopFile, const QList<QByteArray> &types)
{
    const auto &after = layout.newEntriesAfter;
    const QByteArrayView ending = after && !after->ending.isEmpty() ? after->ending : endingOf(file);
    QByteArray lines = newEntries(layout, desktopFile, types, ending);
    if (lines.isEmpty())
        return {};
    if (after)
        return insertedAfter(*after, file, lines, ending);
    lines.prepend(ending).prepend(']').prepend(kGroup).prepend('[');
    if (file.isEmpty())
        return {0, 0, lines};
    const bool blankBefore = layout.last->whole.size() == layout.last->ending.size();
    return insertedAfter(*layout.last, file, blankBefore ? lines : lines.prepend(ending), ending);
}

} // namespace

QByteArray withDefaultApplication(const QByteArray &mimeAppsList, const QByteArray &desktopFile,
                                  const QList<QByteArray> &mimeTypes)
{
    const Layout layout = layoutOf(mimeAppsList, mimeTypes);
    if (!layout.readable && !layout.newEntriesAfter) {
        // At the end nobody would read it. What follows the header here may become a part of the group.
        const QByteArrayView ending = endingOf(mimeAppsList);
        const QByteArray header = '[' + kGroup.toByteArray() + ']' + ending.toByteArray().repeated(2);
        return withDefaultApplication(header + mimeAppsList, desktopFile, mimeTypes);
    }
    std::vector<Edit> edits;
    for (const auto &entry : layout.entries) {
        if (entry && !isFirst(entry->value, desktopFile))
            edits.push_back({entry->value.data() - mimeAppsList.constData(), entry->value.size(),
                             withFirst(entry->value, desktopFile)});
    }
    edits.push_back(addition(layout, mimeAppsList, desktopFile, mimeTypes));
    // Stable: new lines follow an empty value that ends the file.
    std::stable_sort(edits.begin(), edits.end(), [](const Edit &a, const Edit &b) { return a.begin < b.begin; });

    QByteArray result;
    qsizetype copied = 0;
    for (const Edit &edit : edits) {
        result.append(QByteArrayView(mimeAppsList).sliced(copied, edit.begin - copied)).append(edit.text);
        copied = edit.begin + edit.size;
    }
    return result.append(QByteArrayView(mimeAppsList).sliced(copied));
}

} // namespace tallowmere
