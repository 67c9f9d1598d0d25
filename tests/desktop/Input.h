// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#pragma once

#include "tests/desktop/VirtualDesktop.h"

#include <cstdint>
#include <vector>

struct _XCBKeySymbols;

namespace tallowmere::desktop {

/// X key symbols, the ones used here (X11/keysymdef.h has them all); a Latin-1 character is its own.
namespace key {
inline constexpr std::uint32_t kLeft = 0xFF51;
inline constexpr std::uint32_t kUp = 0xFF52;
inline constexpr std::uint32_t kRight = 0xFF53;
inline constexpr std::uint32_t kDown = 0xFF54;
inline constexpr std::uint32_t kReturn = 0xFF0D;
inline constexpr std::uint32_t kEscape = 0xFF1B;
inline constexpr std::uint32_t kBackspace = 0xFF08;
inline constexpr std::uint32_t kTab = 0xFF09;
inline constexpr std::uint32_t kKeypadEnter = 0xFF8D;
inline constexpr std::uint32_t kKeypadPlus = 0xFFAB;
inline constexpr std::uint32_t kKeypadMinus = 0xFFAD;
inline constexpr std::uint32_t kShift = 0xFFE1;
inline constexpr std::uint32_t kControl = 0xFFE3;
inline constexpr std::uint32_t kAlt = 0xFFE9;
} // namespace key

/// A keyboard and a mouse, as the server's own test extension plays them.
class Input final
{
public:
    /// @p desktop outlives it.
    explicit Input(const VirtualDesktop &desktop);
    ~Input();
    Input(const Input &) = delete;
    Input &operator=(const Input &) = delete;

    /// Presses and releases @p symbol while @p modifiers are held. Whoever has the focus gets it.
    void press(std::uint32_t symbol, const std::vector<std::uint32_t> &modifiers = {}) const;
    /// One ASCII character, with Shift where the US layout needs it.
    void type(char character) const;
    void control(std::uint32_t symbol) const { press(symbol, {key::kControl}); }
    void moveTo(const Point &point) const;
    void click(const Point &point, int times = 1) const;
    void buttonDown() const;
    void buttonUp() const;
    /// Turns of the wheel, away from the user when positive.
    void wheel(const Point &point, int turns) const;
    /// Turns of a second wheel or of a wheel that tilts, to the left when positive.
    void wheelSideways(const Point &point, int turns) const;

private:
    void keyEvent(std::uint32_t symbol, bool down) const;
    void buttonEvent(std::uint8_t button, bool down) const;
    void turn(const Point &point, std::uint8_t button, int times) const;

    const VirtualDesktop &m_desktop;
    _XCBKeySymbols *m_symbols;
};

} // namespace tallowmere::desktop
