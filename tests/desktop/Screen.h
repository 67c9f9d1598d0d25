// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "tests/desktop/VirtualDesktop.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <ostream>
#include <vector>

namespace tallowmere::desktop {

struct Colour
{
    int red = 0;
    int green = 0;
    int blue = 0;
    friend bool operator==(const Colour &, const Colour &) = default;
    friend std::ostream &operator<<(std::ostream &stream, const Colour &colour)
    {
        return stream << "rgb(" << colour.red << ", " << colour.green << ", " << colour.blue << ')';
    }
};

/// Like no other.
inline constexpr Colour kNoColour{-1000, -1000, -1000};

/// Whether no channel differs by more than @p tolerance (lossy formats and colour profiles move a colour a little).
[[nodiscard]] bool alike(const Colour &a, const Colour &b, int tolerance = 12);

/// A copy of a part of the screen.
struct Picture
{
    int width = 0;
    int height = 0;
    std::vector<Colour> pixels;
    [[nodiscard]] const Colour &at(int x, int y) const
    {
        return pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x)];
    }
    friend bool operator==(const Picture &, const Picture &) = default;
};

/// Reads what the user would see.
class Screen final
{
public:
    /// @p desktop outlives it.
    explicit Screen(const VirtualDesktop &desktop) : m_desktop(desktop) {}

    /// @p area is cut to the screen.
    [[nodiscard]] Picture capture(const Rectangle &area) const;
    /// kNoColour outside the screen, where a window may be for a moment while the window manager shows it.
    [[nodiscard]] Colour at(const Point &point) const;
    [[nodiscard]] bool waitForColour(const Point &point, const Colour &colour, int tolerance = 12) const;

private:
    const VirtualDesktop &m_desktop;
};

/// Both throw std::runtime_error when it can't be done.
void writePng(const Picture &picture, const std::filesystem::path &file);
[[nodiscard]] Picture readPng(const std::filesystem::path &file);

} // namespace tallowmere::desktop
