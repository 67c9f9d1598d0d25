// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "support/FileURL.h"

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QVariant>

#include <functional>
#include <optional>

namespace tallowmere {

/// What a service in another process would have to offer so that decoding and caching could move there.
///
/// Nothing is connected to it in this version. Every reply comes once, on any thread; nothing in it means that the
/// service had no answer. Arguments and replies are such as a message can carry.
class ImageProcessingProtocol
{
public:
    using DataReply = std::function<void(std::optional<QByteArray> data)>;
    using Statistics = QHash<QByteArray, QVariant>;
    using StatisticsReply = std::function<void(std::optional<Statistics> statistics)>;

    virtual ~ImageProcessingProtocol() = default;
    /// The bytes of an image. @p maxSize: pixels of the longer side, as in the next.
    virtual void loadImageFrom(const FileURL &file, qint64 maxSize, DataReply reply) = 0;
    virtual void loadImageAsyncFrom(const FileURL &file, qint64 maxSize, DataReply reply) = 0;
    /// The average colour of the image in @p file.
    virtual void calculateAverageColorFor(const FileURL &file, DataReply reply) = 0;
    /// One way. @p prefetchBefore and @p prefetchAfter count files around @p currentIndex.
    virtual void prefetchImagesWithFileURLs(const QList<FileURL> &fileURLs, qint64 currentIndex, qint64 prefetchBefore,
                                            qint64 prefetchAfter) = 0;
    /// One way.
    virtual void clearCache() = 0;
    virtual void getCacheStats(StatisticsReply reply) = 0;
};

} // namespace tallowmere
