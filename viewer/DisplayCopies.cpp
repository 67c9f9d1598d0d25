// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "viewer/DisplayCopies.h"

#include "imaging/pixels/DisplayCopy.h"

#include <QPainter>

#include <algorithm>
#include <utility>

namespace tallowmere {

namespace {

/// Of one image: the size before the present one and that of a zoom.
constexpr int kOtherSizes = 2;

/// For screens that have more pixels than points.
PixelBuffer makeEnlargedCopy(const ImagePtr &image, PixelSize size)
{
    PixelBuffer result = PixelBuffer::allocate(size);
    if (result.isNull())
        return result;
    const QImage from = DisplayBitmap::of(image).view();
    QImage to(reinterpret_cast<uchar *>(result.row(0)), static_cast<int>(size.width), static_cast<int>(size.height),
              static_cast<qsizetype>(result.rowBytes()), from.format());
    QPainter painter(&to);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(to.rect(), from);
    return result;
}

} // namespace

DisplayBitmap DisplayBitmap::of(const ImagePtr &image)
{
    return {{image, &image->decoded().pixels}, image->hasAlpha()};
}

QImage DisplayBitmap::view() const
{
    if (!pixels)
        return {};
    // Rows are 4 bytes a pixel without padding, which is what QImage wants of 32-bit formats.
    return {reinterpret_cast<const uchar *>(pixels->row(0)), static_cast<int>(pixels->size().width),
            static_cast<int>(pixels->size().height), static_cast<qsizetype>(pixels->rowBytes()),
            hasAlpha ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32};
}

DisplayCopies::DisplayCopies(std::size_t byteBudget) : m_byteBudget(byteBudget) {}

bool DisplayCopies::belongsTo(const Entry &entry, const ImagePtr &image) const
{
    // An address may be used again after an image has died.
    return entry.key == image.get() && !entry.image.expired();
}

DisplayBitmap DisplayCopies::find(const ImagePtr &image, PixelSize size)
{
    if (image->hasBitmap() && image->decoded().pixels.size() == size)
        return DisplayBitmap::of(image);
    const std::lock_guard lock(m_mutex);
    for (auto entry = m_entries.begin(); entry != m_entries.end(); ++entry) {
        if (entry->size == size && belongsTo(*entry, image)) {
            m_entries.splice(m_entries.begin(), m_entries, entry);
            return {entry->pixels, image->hasAlpha()};
        }
    }
    return {};
}

DisplayBitmap DisplayCopies::findSimilar(const ImagePtr &image, PixelSize size)
{
    const std::lock_guard lock(m_mutex);
    const Entry *best = nullptr;
    const auto suits = [size](const Entry &entry) { return entry.size.width >= size.width; };
    for (const Entry &entry : m_entries) {
        if (!belongsTo(entry, image))
            continue;
        // The smallest that is large enough; failing that, the largest.
        const bool better =
            !best ||
            (suits(entry) != suits(*best) ? suits(entry) : (entry.size.width < best->size.width) == suits(entry));
        if (better)
            best = &entry;
    }
    return best ? DisplayBitmap{best->pixels, image->hasAlpha()} : DisplayBitmap{};
}

DisplayBitmap DisplayCopies::make(const ImagePtr &image, PixelSize size, const std::function<bool()> &cancelled)
{
    if (!image->hasBitmap() || size.empty())
        return {};
    if (DisplayBitmap found = find(image, size))
        return found;
    // Asked here as well: small copies are made without asking at all.
    if (cancelled && cancelled())
        return {};
    const PixelSize own = image->decoded().pixels.size();
    PixelBuffer pixels = size.width > own.width || size.height > own.height
                             ? makeEnlargedCopy(image, size)
                             : makeDisplayCopy(image->decoded().pixels, size, cancelled);
    if (pixels.isNull())
        return {};
    auto shared = std::make_shared<const PixelBuffer>(std::move(pixels));
    insert(image, size, shared);
    return {std::move(shared), image->hasAlpha()};
}

DisplayCopies::Dropped DisplayCopies::drop(const std::function<bool(const Entry &)> &condition)
{
    Dropped dropped;
    for (auto entry = m_entries.begin(); entry != m_entries.end();) {
        if (!condition(*entry)) {
            ++entry;
            continue;
        }
        m_bytes -= entry->pixels->bytes();
        dropped.push_back(std::move(entry->pixels));
        entry = m_entries.erase(entry);
    }
    return dropped;
}

void DisplayCopies::insert(const ImagePtr &image, PixelSize size, std::shared_ptr<const PixelBuffer> pixels)
{
    Dropped useless;
    Dropped left;
    Dropped oldest;
    const std::lock_guard lock(m_mutex);
    int others = 0;
    useless = drop([&](const Entry &entry) {
        if (entry.key != image.get())
            return entry.image.expired();
        return entry.image.expired() || entry.size == size || ++others > kOtherSizes;
    });
    m_bytes += pixels->bytes();
    m_entries.push_front({image, image.get(), size, std::move(pixels)});
    std::size_t kept = favouredBytes();
    left = drop([&](const Entry &entry) {
        kept += entry.isFavoured ? 0 : entry.pixels->bytes();
        return !entry.isFavoured && kept > m_byteBudget;
    });
    kept = 0;
    oldest = drop([&](const Entry &entry) {
        kept += entry.pixels->bytes();
        return kept > m_byteBudget && &entry != &m_entries.front();
    });
}

void DisplayCopies::favour(const std::vector<ImagePtr> &images)
{
    const std::lock_guard lock(m_mutex);
    for (Entry &entry : m_entries)
        entry.isFavoured = std::ranges::find(images, entry.key, &ImagePtr::get) != images.end();
}

std::size_t DisplayCopies::favouredBytes() const
{
    std::size_t bytes = 0;
    for (const Entry &entry : m_entries)
        bytes += entry.isFavoured && !entry.image.expired() ? entry.pixels->bytes() : 0;
    return bytes;
}

bool DisplayCopies::hasRoomFor(PixelSize size)
{
    const std::lock_guard lock(m_mutex);
    return favouredBytes() + size.pixels() * PixelBuffer::kBytesPerPixel <= m_byteBudget;
}

void DisplayCopies::dropUseless()
{
    Dropped useless;
    const std::lock_guard lock(m_mutex);
    useless = drop([](const Entry &entry) { return entry.image.expired(); });
}

std::size_t DisplayCopies::bytes() const
{
    const std::lock_guard lock(m_mutex);
    return m_bytes;
}

} // namespace tallowmere
