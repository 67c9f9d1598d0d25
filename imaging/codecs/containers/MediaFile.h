// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/codecs/containers/IsoBox.h"
#include "imaging/pixels/PixelSize.h"

#include <vector>

namespace tallowmere {

/// The two families of pictures that share the ISO container.
enum class MediaFamily
{
    none,
    avif,
    heif
};

/// By the brands of the file type box; where these leave it open, by the type of the primary item. Any thread.
[[nodiscard]] MediaFamily mediaFamily(std::span<const std::byte> head);

/// A property of an item (ISO/IEC 23008-12): how large it is, how it is turned, how its decoder is set up.
struct MediaProperty
{
    FourCC type = 0;
    std::span<const std::byte> payload;
};

/// One picture, or a part of one, inside a file.
struct MediaItem
{
    std::uint32_t id = 0;
    FourCC type = 0;
    std::vector<std::uint16_t> properties;           ///< indices into MediaFile, in the order to be applied
    std::vector<std::uint32_t> derivedFrom;          ///< ids: the tiles of a grid, row by row
    std::vector<std::span<const std::byte>> extents; ///< its data, as far as the file holds it
    std::uint32_t auxiliaryOf = 0;                   ///< id; 0: of none
};

/// The items of a file, from its meta box alone. Spans point into the file.
class MediaFile final
{
public:
    /// Nothing when the meta box is missing, damaged, or larger than any picture needs.
    [[nodiscard]] static std::optional<MediaFile> read(std::span<const std::byte> file);

    /// Null when there is none of that id.
    [[nodiscard]] const MediaItem *item(std::uint32_t id) const;
    [[nodiscard]] const MediaItem *primary() const { return item(m_primary); }
    /// The auxiliary item that carries the transparency of @p item; null when there is none.
    [[nodiscard]] const MediaItem *alphaOf(const MediaItem &item) const;
    /// Null when the item has none of that type.
    [[nodiscard]] const MediaProperty *property(const MediaItem &item, FourCC type) const;
    [[nodiscard]] std::vector<MediaProperty> properties(const MediaItem &item) const;
    /// What the item's ispe property says: the size as coded, before any transformation.
    [[nodiscard]] std::optional<PixelSize> spatialExtent(const MediaItem &item) const;

private:
    friend class MediaFileReader;
    std::uint32_t m_primary = 0;
    std::vector<MediaItem> m_items; ///< by id
    std::vector<MediaProperty> m_properties;
};

/// The sample tables of a sequence are there: the file may hold a picture without having any item.
[[nodiscard]] bool hasTracks(std::span<const std::byte> file);

} // namespace tallowmere
