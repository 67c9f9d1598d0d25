// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
//
// A window for trying the harness: red at first, green after a key press, blue after a click.

#include <unistd.h>
#include <xcb/xcb.h>
#include <xcb/xcb_icccm.h>

#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <string>
#include <string_view>

namespace {

xcb_atom_t atomOf(xcb_connection_t *connection, std::string_view name)
{
    const auto cookie = xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
    const std::unique_ptr<xcb_intern_atom_reply_t, void (*)(void *)> reply(
        xcb_intern_atom_reply(connection, cookie, nullptr), &std::free);
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

void paint(xcb_connection_t *connection, xcb_window_t window, std::uint32_t colour)
{
    xcb_change_window_attributes(connection, window, XCB_CW_BACK_PIXEL, &colour);
    xcb_clear_area(connection, 0, window, 0, 0, 0, 0);
    xcb_flush(connection);
}

xcb_window_t makeWindow(xcb_connection_t *connection, xcb_atom_t closing)
{
    const xcb_screen_t *screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
    const xcb_window_t window = xcb_generate_id(connection);
    const std::uint32_t values[] = {0xFF0000, XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_BUTTON_PRESS};
    xcb_create_window(connection, XCB_COPY_FROM_PARENT, window, screen->root, 0, 0, 320, 200, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual, XCB_CW_BACK_PIXEL | XCB_CW_EVENT_MASK,
                      values);
    constexpr std::string_view kTitle = "Sample \xE2\x80\xA2 w\xC3\xADndow";
    constexpr std::string_view kClass("sample\0Sample", 14);
    constexpr std::uint8_t kBytes = 8;
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, atomOf(connection, "_NET_WM_NAME"),
                        atomOf(connection, "UTF8_STRING"), kBytes, kTitle.size(), kTitle.data());
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, kBytes,
                        kClass.size(), kClass.data());
    const auto process = static_cast<std::uint32_t>(::getpid());
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, atomOf(connection, "_NET_WM_PID"), XCB_ATOM_CARDINAL,
                        32, 1, &process);
    xcb_atom_t protocol = closing;
    xcb_icccm_set_wm_protocols(connection, window, atomOf(connection, "WM_PROTOCOLS"), 1, &protocol);
    xcb_map_window(connection, window);
    xcb_flush(connection);
    return window;
}

} // namespace

int main()
{
    xcb_connection_t *connection = xcb_connect(nullptr, nullptr);
    if (xcb_connection_has_error(connection))
        return EXIT_FAILURE;
    const xcb_atom_t closing = atomOf(connection, "WM_DELETE_WINDOW");
    const xcb_window_t window = makeWindow(connection, closing);
    while (const std::unique_ptr<xcb_generic_event_t, void (*)(void *)> event{xcb_wait_for_event(connection),
                                                                              &std::free}) {
        const int kind = event->response_type & 0x7F;
        if (kind == XCB_KEY_PRESS)
            paint(connection, window, 0x00FF00);
        else if (kind == XCB_BUTTON_PRESS)
            paint(connection, window, 0x0000FF);
        else if (kind == XCB_CLIENT_MESSAGE &&
                 reinterpret_cast<const xcb_client_message_event_t *>(event.get())->data.data32[0] == closing)
            break;
    }
    xcb_disconnect(connection);
    return EXIT_SUCCESS;
}
