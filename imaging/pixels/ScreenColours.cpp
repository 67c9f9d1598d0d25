// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/pixels/ScreenColours.h"

#include "imaging/pixels/ColourConversion.h"
#include "imaging/pixels/PixelKernels.h"
#include "imaging/pixels/RowParts.h"

#include <mutex>
#include <new>

namespace tallowmere {
namespace {

bool convertWith(const ColourConversion &conversion, DecodedImage &image, const std::function<bool()> &cancelled)
{
    const PixelSize size = image.pixels.size();
    std::mutex mutex;
    PixelSums stored;
    const auto convertRows = [&](const RowPart &part) {
        PixelSums sums;
        for (std::uint32_t y = part.first; y < part.end && part.goesOn(); ++y) {
            std::byte *row = image.pixels.row(y);
            sums.add(row, size.width); // here, where the row is in the cache anyway
            if (image.hasAlpha)
                unpremultiply(row, size.width);
            conversion.convert(row, size.width);
            if (image.hasAlpha)
                premultiply(row, size.width);
        }
        const std::lock_guard lock(mutex);
        stored.add(sums);
    };
    if (!workOnRowParts(size.height, size.pixels(), cancelled, convertRows))
        return false;
    image.storedAverage = stored.average();
    return true;
}

} // namespace

bool convertToScreenColours(DecodedImage &image, const std::function<bool()> &cancelled)
{
    if (image.pixels.isNull())
        return true;
    try {
        const auto conversion = ColourConversion::toSRGB(image.colour);
        if (conversion && !convertWith(*conversion, image, cancelled))
            return false;
        image.colour = {}; // the screen's from now on; a profile may be as large as the picture
        return true;
    } catch (const std::bad_alloc &) {
        return false;
    }
}

} // namespace tallowmere
