// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/pixels/DisplayCopy.h"

#include "imaging/pixels/Resampler.h"
#include "imaging/pixels/RowParts.h"

#include <memory>
#include <new>

namespace tallowmere {

PixelBuffer makeDisplayCopy(const PixelBuffer &image, PixelSize size, const std::function<bool()> &cancelled)
{
    if (image.isNull() || size.empty() || size.width > image.size().width || size.height > image.size().height)
        return {};
    PixelBuffer result = PixelBuffer::allocate(size);
    if (result.isNull())
        return {};
    try {
        const auto reduction = std::make_shared<const Reduction>(image.size(), size);
        const auto reduce = [&](const RowPart &part) {
            Resampler resampler(reduction, part.first, part.end);
            const std::uint32_t past = resampler.endSourceRow();
            std::uint32_t y = part.first;
            for (std::uint32_t source = resampler.nextDependsFrom(); source < past && part.goesOn(); ++source) {
                resampler.push(image.row(source));
                while (y < part.end && resampler.pull(result.row(y)))
                    ++y;
            }
        };
        if (workOnRowParts(size.height, image.size().pixels(), cancelled, reduce))
            return result;
    } catch (const std::bad_alloc &) {
        // As without room for the result itself.
    }
    return {};
}

} // namespace tallowmere
