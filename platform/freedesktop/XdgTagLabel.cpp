// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "platform/freedesktop/XdgTagLabel.h"

#include <sys/xattr.h>

#include <array>
#include <charconv>

namespace tallowmere {

namespace {

constexpr std::array<QByteArrayView, 7> kLabelNames{"gray", "green", "purple", "blue", "yellow", "red", "orange"};

/// 1 to 7; 0 for a tag that is no label.
int labelNumber(QByteArrayView tag)
{
    for (std::size_t i = 0; i < kLabelNames.size(); ++i) {
        if (tag.compare(kLabelNames[i], Qt::CaseInsensitive) == 0)
            return static_cast<int>(i) + 1;
    }
    return 0;
}

std::optional<FileLabel::Rgb> ownColour(QByteArrayView tag)
{
    if (tag.size() != 7 || tag[0] != '#')
        return std::nullopt;
    std::uint32_t value = 0;
    const auto [end, error] = std::from_chars(tag.data() + 1, tag.data() + tag.size(), value, 16);
    if (error != std::errc() || end != tag.data() + tag.size())
        return std::nullopt;
    const auto byte = [value](int shift) { return static_cast<std::uint8_t>(value >> shift); };
    return FileLabel::Rgb{byte(16), byte(8), byte(0)};
}

QByteArray extendedAttribute(const FileURL &file, const char *name)
{
    // The kernel hands out no attribute larger than this: one call does, whatever changes meanwhile.
    constexpr qsizetype kLargestAttribute = 64 * 1024;
    QByteArray value(kLargestAttribute, Qt::Uninitialized);
    const ssize_t size = ::getxattr(file.path().constData(), name, value.data(), kLargestAttribute);
    return size > 0 ? value.first(size) : QByteArray();
}

} // namespace

FileLabel labelFromXdgTags(QByteArrayView tags)
{
    FileLabel label;
    while (!tags.isEmpty()) {
        const qsizetype comma = tags.indexOf(',');
        const QByteArrayView tag = (comma < 0 ? tags : tags.first(comma)).trimmed();
        tags = comma < 0 ? QByteArrayView() : tags.sliced(comma + 1);
        if (label.number == 0)
            label.number = labelNumber(tag);
        if (!label.colour)
            label.colour = ownColour(tag);
    }
    return label;
}

FileLabel XdgTagLabelReader::label(const FileURL &file) const
{
    return labelFromXdgTags(extendedAttribute(file, "user.xdg.tags"));
}

} // namespace tallowmere
