// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/desktop/Screen.h"

#include "tests/desktop/Replies.h"

#include <png.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <stdexcept>

namespace tallowmere::desktop {

bool alike(const Colour &a, const Colour &b, int tolerance)
{
    return std::abs(a.red - b.red) <= tolerance && std::abs(a.green - b.green) <= tolerance &&
           std::abs(a.blue - b.blue) <= tolerance;
}

Picture Screen::capture(const Rectangle &area) const
{
    const Rectangle screen = m_desktop.screen();
    const int left = std::clamp(area.x, 0, screen.width);
    const int top = std::clamp(area.y, 0, screen.height);
    const int right = std::clamp(area.x + area.width, left, screen.width);
    const int bottom = std::clamp(area.y + area.height, top, screen.height);
    Picture picture{right - left, bottom - top, {}};
    const auto count = static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.height);
    if (count == 0)
        return {};
    const auto reply = replyTo<xcb_get_image_reply_t>(
        xcb_get_image_reply, m_desktop.connection(),
        xcb_get_image(m_desktop.connection(), XCB_IMAGE_FORMAT_Z_PIXMAP, m_desktop.x11Screen().root,
                      static_cast<std::int16_t>(left), static_cast<std::int16_t>(top),
                      static_cast<std::uint16_t>(picture.width), static_cast<std::uint16_t>(picture.height), ~0U));
    // The server was asked for a 24-bit screen: four bytes a pixel, blue first.
    constexpr std::size_t kBytesPerPixel = 4;
    if (!reply || static_cast<std::size_t>(xcb_get_image_data_length(reply.get())) < count * kBytesPerPixel)
        throw std::runtime_error("the screen cannot be read");
    const std::uint8_t *bytes = xcb_get_image_data(reply.get());
    picture.pixels.reserve(count);
    for (std::size_t i = 0; i < count; ++i, bytes += kBytesPerPixel)
        picture.pixels.push_back({bytes[2], bytes[1], bytes[0]});
    return picture;
}

Colour Screen::at(const Point &point) const
{
    const Picture picture = capture({point.x, point.y, 1, 1});
    return picture.pixels.empty() ? kNoColour : picture.pixels.front();
}

bool Screen::waitForColour(const Point &point, const Colour &colour, int tolerance) const
{
    return waitUntil([&] { return alike(at(point), colour, tolerance); });
}

void writePng(const Picture &picture, const std::filesystem::path &file)
{
    std::vector<std::uint8_t> bytes;
    bytes.reserve(picture.pixels.size() * 3);
    for (const Colour &colour : picture.pixels) {
        for (const int channel : {colour.red, colour.green, colour.blue})
            bytes.push_back(static_cast<std::uint8_t>(channel));
    }
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(picture.width);
    image.height = static_cast<png_uint_32>(picture.height);
    image.format = PNG_FORMAT_RGB;
    if (!png_image_write_to_file(&image, file.c_str(), 0, bytes.data(), 0, nullptr))
        throw std::runtime_error("cannot write " + file.string() + ": " + image.message);
}

Picture readPng(const std::filesystem::path &file)
{
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_file(&image, file.c_str()))
        throw std::runtime_error("cannot read " + file.string() + ": " + image.message);
    image.format = PNG_FORMAT_RGB;
    std::vector<std::uint8_t> bytes(PNG_IMAGE_SIZE(image));
    if (!png_image_finish_read(&image, nullptr, bytes.data(), 0, nullptr))
        throw std::runtime_error("cannot read " + file.string() + ": " + image.message);
    Picture picture{static_cast<int>(image.width), static_cast<int>(image.height), {}};
    picture.pixels.reserve(bytes.size() / 3);
    for (std::size_t i = 0; i + 2 < bytes.size(); i += 3)
        picture.pixels.push_back({bytes[i], bytes[i + 1], bytes[i + 2]});
    return picture;
}

} // namespace tallowmere::desktop
