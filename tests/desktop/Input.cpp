// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/desktop/Input.h"

#include "tests/desktop/Replies.h"

#include <xcb/xcb_keysyms.h>
#include <xcb/xtest.h>

#include <cstdlib>
#include <stdexcept>
#include <string_view>

namespace tallowmere::desktop {
namespace {

constexpr std::uint8_t kLeftButton = 1;
constexpr std::uint8_t kWheelAway = 4;
constexpr std::uint8_t kWheelTowards = 5;
constexpr std::uint8_t kWheelLeft = 6;
constexpr std::uint8_t kWheelRight = 7;

/// Makes sure the server has taken everything sent so far.
void synchronise(xcb_connection_t *connection)
{
    const auto answer =
        replyTo<xcb_get_input_focus_reply_t>(xcb_get_input_focus_reply, connection, xcb_get_input_focus(connection));
    if (!answer)
        throw std::runtime_error("the X server is gone");
}

} // namespace

Input::Input(const VirtualDesktop &desktop) : m_desktop(desktop), m_symbols(xcb_key_symbols_alloc(desktop.connection()))
{}

Input::~Input()
{
    xcb_key_symbols_free(m_symbols);
}

void Input::keyEvent(std::uint32_t symbol, bool down) const
{
    const std::unique_ptr<xcb_keycode_t, FreeReply> codes(xcb_key_symbols_get_keycode(m_symbols, symbol));
    if (!codes || *codes == XCB_NO_SYMBOL)
        throw std::runtime_error("the keyboard has no such key");
    xcb_test_fake_input(m_desktop.connection(), down ? XCB_KEY_PRESS : XCB_KEY_RELEASE, *codes, XCB_CURRENT_TIME,
                        XCB_NONE, 0, 0, 0);
}

void Input::press(std::uint32_t symbol, const std::vector<std::uint32_t> &modifiers) const
{
    for (const auto modifier : modifiers)
        keyEvent(modifier, true);
    keyEvent(symbol, true);
    keyEvent(symbol, false);
    for (auto modifier = modifiers.rbegin(); modifier != modifiers.rend(); ++modifier)
        keyEvent(*modifier, false);
    synchronise(m_desktop.connection());
}

void Input::type(char character) const
{
    static constexpr std::string_view kShifted = "ABCDEFGHIJKLMNOPQRSTUVWXYZ~!@#$%^&*()_+{}|:\"<>?";
    const auto symbol = static_cast<std::uint32_t>(static_cast<unsigned char>(character));
    if (kShifted.find(character) == std::string_view::npos)
        press(symbol);
    else
        press(symbol, {key::kShift});
}

void Input::moveTo(const Point &point) const
{
    xcb_test_fake_input(m_desktop.connection(), XCB_MOTION_NOTIFY, 0, XCB_CURRENT_TIME, m_desktop.x11Screen().root,
                        static_cast<std::int16_t>(point.x), static_cast<std::int16_t>(point.y), 0);
    synchronise(m_desktop.connection());
}

void Input::buttonEvent(std::uint8_t button, bool down) const
{
    xcb_test_fake_input(m_desktop.connection(), down ? XCB_BUTTON_PRESS : XCB_BUTTON_RELEASE, button, XCB_CURRENT_TIME,
                        XCB_NONE, 0, 0, 0);
    synchronise(m_desktop.connection());
}

void Input::buttonDown() const
{
    buttonEvent(kLeftButton, true);
}

void Input::buttonUp() const
{
    buttonEvent(kLeftButton, false);
}

void Input::click(const Point &point, int times) const
{
    moveTo(point);
    for (int i = 0; i < times; ++i) {
        buttonDown();
        buttonUp();
    }
}

void Input::wheel(const Point &point, int turns) const
{
    turn(point, turns > 0 ? kWheelAway : kWheelTowards, std::abs(turns));
}

void Input::wheelSideways(const Point &point, int turns) const
{
    turn(point, turns > 0 ? kWheelLeft : kWheelRight, std::abs(turns));
}

/// The server knows a wheel as a button for each direction.
void Input::turn(const Point &point, std::uint8_t button, int times) const
{
    moveTo(point);
    for (int i = 0; i < times; ++i) {
        buttonEvent(button, true);
        buttonEvent(button, false);
    }
}

} // namespace tallowmere::desktop
