// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "benchmarks/PhotoStore.h"

#include "benchmarks/PhotoFormats.h"
#include "tests/desktop/Folders.h"

#include <algorithm>
#include <fstream>
#include <iostream>
#include <stdexcept>

namespace tallowmere::bench {
namespace fs = std::filesystem;
namespace {

constexpr std::uint64_t kSeed = 20260412;
constexpr int kTwelveWide = 4000;
constexpr int kTwelveHigh = 3000;

/// A landscape with a patch of the marker's colour in its middle, a sixth of each side.
Picture markedLandscape(int width, int height, std::size_t marker)
{
    const desktop::Colour colour = kMarkers.at(marker);
    constexpr int kShare = 6;
    auto paint = [=, rows = photos::landscape(width, height, kSeed + marker)](int y, std::span<std::uint8_t> row) {
        rows(y, row);
        const int top = (height - height / kShare) / 2;
        if (y < top || y >= height - top)
            return;
        const auto left = static_cast<std::size_t>((width - width / kShare) / 2);
        for (std::size_t x = left; x < static_cast<std::size_t>(width) - left; ++x) {
            row[x * 3] = static_cast<std::uint8_t>(colour.red);
            row[x * 3 + 1] = static_cast<std::uint8_t>(colour.green);
            row[x * 3 + 2] = static_cast<std::uint8_t>(colour.blue);
        }
    };
    return {width, height, paint};
}

std::vector<std::byte> encoded(const std::string &extension, const Picture &picture)
{
    if (extension == ".png")
        return encodePng(picture);
    if (extension == ".webp")
        return encodeWebp(picture);
    if (extension == ".avif")
        return encodeAvif(picture);
    if (extension == ".heic")
        return encodeHeic(picture);
    return photos::encodeJpeg(picture.width, picture.height, picture.rows);
}

void hardLink(const fs::path &file, const fs::path &link)
{
    std::error_code error;
    fs::create_hard_link(file, link, error);
    if (error)
        fs::copy_file(file, link, fs::copy_options::overwrite_existing);
}

std::string padded(std::size_t number, std::size_t digits)
{
    const std::string text = std::to_string(number);
    return std::string(digits - std::min(digits, text.size()), '0') + text;
}

} // namespace

PhotoStore::PhotoStore(fs::path folder) : m_folder(std::move(folder))
{
    struct Kind
    {
        const char *label;
        const char *name; ///< each in a folder of its own: opening one must not decode another ahead
        int width;
        int height;
    };
    static constexpr Kind kKinds[] = {{"12 MP JPEG", "12mp-jpeg/photo.jpg", kTwelveWide, kTwelveHigh},
                                      {"24 MP JPEG", "24mp-jpeg/photo.jpg", 6000, 4000},
                                      {"108 MP JPEG", "108mp-jpeg/photo.jpg", 12000, 9000},
                                      {"12 MP PNG", "12mp-png/photo.png", kTwelveWide, kTwelveHigh},
                                      {"12 MP WebP", "12mp-webp/photo.webp", kTwelveWide, kTwelveHigh},
                                      {"12 MP AVIF", "12mp-avif/photo.avif", kTwelveWide, kTwelveHigh},
                                      {"12 MP HEIC", "12mp-heic/photo.heic", kTwelveWide, kTwelveHigh}};
    for (const Kind &kind : kKinds) {
        const auto file = madeFile(kind.name, kind.width, kind.height, 0);
        m_photos.push_back({kind.label, file, kMarkers.front()});
    }
}

const Photo &PhotoStore::photo(const std::string &label) const
{
    const auto found = std::ranges::find(m_photos, label, &Photo::label);
    if (found == m_photos.end())
        throw std::out_of_range(label);
    return *found;
}

fs::path PhotoStore::madeFile(const std::string &name, int width, int height, std::size_t marker) const
{
    const fs::path file = m_folder / name;
    if (fs::exists(file))
        return file;
    fs::create_directories(file.parent_path());
    const auto bytes = encoded(file.extension(), markedLandscape(width, height, marker));
    // Complete under its name or not there at all: the next run takes what it finds.
    const fs::path unfinished = m_folder / "unfinished";
    desktop::writeFile(unfinished, bytes);
    fs::rename(unfinished, file);
    std::cerr << "made " << name << ": " << bytes.size() / 1000 << " kB, "
              << static_cast<double>(bytes.size()) / (static_cast<double>(width) * height) << " bytes a pixel\n";
    return file;
}

Photo PhotoStore::among(std::size_t count) const
{
    const Photo &original = photo("12 MP JPEG");
    const fs::path folder = m_folder / ("among-" + std::to_string(count));
    const auto nth = [&](std::size_t number) { return folder / ("photo-" + padded(number, 5) + ".jpg"); };
    fs::create_directories(folder);
    for (std::size_t i = 0; i < count; ++i) {
        if (!fs::exists(nth(i)))
            hardLink(original.file, nth(i));
    }
    return {"12 MP JPEG among " + std::to_string(count), nth(count / 2), original.centre};
}

Photo PhotoStore::alone(std::size_t marker) const
{
    const auto name = "alone-" + std::to_string(marker) + "/photo.jpg";
    return {"12 MP JPEG", madeFile(name, kTwelveWide, kTwelveHigh, marker), kMarkers.at(marker)};
}

std::vector<Photo> PhotoStore::folderOf(const std::vector<std::size_t> &markers) const
{
    const fs::path folder = m_folder / "steps";
    // Made anew each time: it costs nothing, and never holds what an older version put there.
    fs::remove_all(folder);
    fs::create_directories(folder);
    std::vector<Photo> result;
    for (const std::size_t marker : markers) {
        const Photo original = alone(marker);
        const fs::path file = folder / ("photo-" + padded(result.size(), 3) + ".jpg");
        hardLink(original.file, file);
        result.push_back({original.label, file, original.centre});
    }
    return result;
}

fs::path PhotoStore::folderOfNames(int count) const
{
    const fs::path folder = m_folder / ("names-" + std::to_string(count));
    if (fs::exists(folder))
        return folder;
    const fs::path unfinished = m_folder / "names-unfinished";
    fs::remove_all(unfinished);
    fs::create_directories(unfinished);
    // Camera names of several cards: not in the order in which they were made, and digits of different lengths.
    constexpr unsigned kStride = 7919;
    for (unsigned i = 0; i < static_cast<unsigned>(count); ++i) {
        const unsigned number = i * kStride % static_cast<unsigned>(count);
        const std::string name = number % 2 ? "IMG_" + std::to_string(number) : "DSC" + padded(number, 5);
        if (!std::ofstream(unfinished / (name + ".jpg")))
            throw std::runtime_error("cannot fill " + unfinished.string());
    }
    fs::rename(unfinished, folder);
    return folder;
}

} // namespace tallowmere::bench
