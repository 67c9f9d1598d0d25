// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "tests/desktop/Screen.h"

#include <array>
#include <filesystem>
#include <string>
#include <vector>

namespace tallowmere::bench {

/// What stands in the middle of the photos: colours that the landscape around it does not have.
inline constexpr std::array<desktop::Colour, 5> kMarkers{
    desktop::Colour{230, 20, 200}, {40, 220, 30}, {30, 60, 235}, {240, 120, 10}, {245, 230, 20}};
/// Belongs to one picture alone where it is used.
inline constexpr std::size_t kUniqueMarker = 4;

/// Compressed and mixed with sharp edges: how far a marker's colour may be off.
inline constexpr int kMarkerTolerance = 24;

/// One photo of a camera.
struct Photo
{
    std::string label; ///< "12 MP JPEG"
    std::filesystem::path file;
    desktop::Colour centre;
};

/// The pictures and folders that are measured with. Made once, kept for the next run.
class PhotoStore final
{
public:
    /// @p folder is made when there is none.
    explicit PhotoStore(std::filesystem::path folder);

    /// One of each size and format, each alone in its folder, all with the first marker.
    [[nodiscard]] const std::vector<Photo> &photos() const { return m_photos; }
    /// By label; throws std::out_of_range when there is no such photo.
    [[nodiscard]] const Photo &photo(const std::string &label) const;
    /// The 12 MP JPEG in the middle of a folder of @p count.
    [[nodiscard]] Photo among(std::size_t count) const;
    /// A 12 MP JPEG that is alone in its folder, by marker.
    [[nodiscard]] Photo alone(std::size_t marker) const;
    /// A folder of 12 MP JPEGs with the given markers, in the order of their names.
    [[nodiscard]] std::vector<Photo> folderOf(const std::vector<std::size_t> &markers) const;
    /// A folder that holds @p count empty files whose names end in .jpg.
    [[nodiscard]] std::filesystem::path folderOfNames(int count) const;

private:
    /// The file of this name, made unless it is there.
    [[nodiscard]] std::filesystem::path madeFile(const std::string &name, int width, int height,
                                                 std::size_t marker) const;

    const std::filesystem::path m_folder;
    std::vector<Photo> m_photos;
};

} // namespace tallowmere::bench
