// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/pixels/DecodedImage.h"

#include <QSize>

#include <memory>

namespace tallowmere {

/// A picture as the viewer holds it: immutable, shared, in the colours of the screen, its size in points that of its
/// pixels.
class Image final
{
public:
    explicit Image(DecodedImage decoded)
        : m_decoded(std::move(decoded)), m_size(m_decoded.pixels.size().width, m_decoded.pixels.size().height)
    {}
    /// A preview of a picture of @p fullSize: it stands in for that one, with fewer pixels, until it has been decoded.
    Image(DecodedImage decoded, PixelSize fullSize)
        : m_decoded(std::move(decoded)), m_fullSize(fullSize), m_size(fullSize.width, fullSize.height)
    {}
    /// A picture that has a size but no bitmap.
    explicit Image(QSizeF size) : m_size(size) {}

    [[nodiscard]] QSizeF size() const { return m_size; }
    [[nodiscard]] bool hasBitmap() const { return !m_decoded.pixels.isNull(); }
    [[nodiscard]] bool isPreview() const { return !m_fullSize.empty(); }
    /// Of the bitmap; of a preview, the one that the whole picture will have.
    [[nodiscard]] PixelSize pixelSize() const { return isPreview() ? m_fullSize : m_decoded.pixels.size(); }
    [[nodiscard]] bool hasAlpha() const { return m_decoded.hasAlpha; }
    [[nodiscard]] const DecodedImage &decoded() const { return m_decoded; }
    /// What freeing it gives back.
    [[nodiscard]] std::size_t bytes() const { return m_decoded.pixels.isNull() ? 0 : m_decoded.pixels.bytes(); }

private:
    DecodedImage m_decoded;
    PixelSize m_fullSize; ///< empty unless this is a preview
    QSizeF m_size;
};

using ImagePtr = std::shared_ptr<const Image>;

} // namespace tallowmere
