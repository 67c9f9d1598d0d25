// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/codecs/containers/PlanarRows.h"

#include <libheif/heif.h>

#include <memory>

namespace tallowmere {

struct HeifImageDeleter
{
    void operator()(heif_image *image) const { heif_image_release(image); }
};

/// The planes of a picture libheif decoded, as the strip conversion wants them. Borrows them from @p image.
class HeifPlanes final
{
public:
    /// Nothing for a sampling or a depth that can't be converted.
    [[nodiscard]] static std::optional<HeifPlanes> of(const heif_image *image);

    [[nodiscard]] const avifImage &colour() const { return *m_colour; }
    [[nodiscard]] const AlphaPlane &alpha() const { return m_alpha; }

private:
    struct AvifImageDeleter
    {
        void operator()(avifImage *image) const { avifImageDestroy(image); }
    };

    [[nodiscard]] bool borrow(const heif_image *image, const heif_channel (&channels)[3], int count);
    void readRange(const heif_image *image, bool rgb);
    [[nodiscard]] bool borrowAlpha(const heif_image *image);

    std::unique_ptr<avifImage, AvifImageDeleter> m_colour;
    AlphaPlane m_alpha;
};

} // namespace tallowmere
