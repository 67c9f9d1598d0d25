// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "support/FileURL.h"

#include <QHashFunctions>
#include <QSizeF>

namespace tallowmere {

/// What a remembered zoom belongs to: a file in a window of one size. A value.
struct ZoomKey
{
    FileURL fileURL;
    QSizeF windowSize; ///< of the window's frame, points

    // QSizeF's own comparison is a fuzzy one, which no hash can agree with.
    friend bool operator==(const ZoomKey &a, const ZoomKey &b)
    {
        return a.windowSize.width() == b.windowSize.width() && a.windowSize.height() == b.windowSize.height() &&
               a.fileURL == b.fileURL;
    }
    friend size_t qHash(const ZoomKey &key, size_t seed = 0)
    {
        return qHashMulti(seed, key.fileURL, key.windowSize.width(), key.windowSize.height());
    }
};

} // namespace tallowmere
