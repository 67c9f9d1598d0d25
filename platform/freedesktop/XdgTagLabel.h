// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/FileLabel.h"

#include <QByteArrayView>

namespace tallowmere {

/// The label in a list of tags as freedesktop.org's "user.xdg.tags" attribute has them: separated by commas, UTF-8,
/// blanks around them and case ignored. The first tag named as a label gives the number, the first "#rrggbb" the
/// file's own colour; all others are passed over.
[[nodiscard]] FileLabel labelFromXdgTags(QByteArrayView tags);

/// Labels kept in the extended attribute "user.xdg.tags", where file managers keep their tags.
class XdgTagLabelReader final : public FileLabelReader
{
public:
    [[nodiscard]] FileLabel label(const FileURL &file) const override;
};

} // namespace tallowmere
