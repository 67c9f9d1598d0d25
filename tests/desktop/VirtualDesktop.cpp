// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/desktop/VirtualDesktop.h"

#include "tests/desktop/Replies.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <stdexcept>

namespace tallowmere::desktop {
namespace {

/// What the server writes once it has chosen a display; empty when it ended or took too long.
std::string readDisplayNumber(int descriptor)
{
    std::string number;
    const auto limit = patience();
    pollfd waiting{descriptor, POLLIN, 0};
    char character = 0;
    while (::poll(&waiting, 1, static_cast<int>(limit.count())) > 0 && ::read(descriptor, &character, 1) == 1) {
        if (character == '\n')
            return number;
        number += character;
    }
    return {};
}

/// Focus follows a click, new windows get the focus, and no key is taken from the programs.
std::string windowManagerConfiguration(const DisplayOptions &options)
{
    const auto margin = [](const char *side, int size) {
        return std::string("<") + side + ">" + std::to_string(size) + "</" + side + ">";
    };
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>"
           "<openbox_config xmlns=\"http://openbox.org/3.4/rc\">"
           "<focus><focusNew>yes</focusNew><followMouse>no</followMouse></focus>"
           "<placement><policy>Smart</policy></placement>"
           "<theme><name>Clearlooks</name><titleLayout>NLIMC</titleLayout></theme>"
           "<desktops><number>1</number><popupTime>0</popupTime></desktops>"
           "<margins>" +
           margin("top", options.marginTop) + margin("bottom", options.marginBottom) +
           margin("left", options.marginLeft) + margin("right", options.marginRight) +
           "</margins>"
           "<keyboard/>"
           "<mouse>"
           "<context name=\"Client\"><mousebind button=\"Left\" action=\"Press\">"
           "<action name=\"Focus\"/><action name=\"Raise\"/></mousebind></context>"
           "<context name=\"Titlebar\"><mousebind button=\"Left\" action=\"Drag\">"
           "<action name=\"Move\"/></mousebind></context>"
           "<context name=\"Close\"><mousebind button=\"Left\" action=\"Click\">"
           "<action name=\"Close\"/></mousebind></context>"
           "</mouse>"
           "</openbox_config>\n";
}

} // namespace

VirtualDesktop::VirtualDesktop(const DisplayOptions &options) : m_options(options)
{
    startServer();
    m_connection = xcb_connect(m_name.c_str(), nullptr);
    if (xcb_connection_has_error(m_connection))
        throw std::runtime_error("cannot connect to " + m_name);
    m_screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data;
    if (m_options.windowManager)
        startWindowManager();
}

VirtualDesktop::~VirtualDesktop()
{
    if (m_connection)
        xcb_disconnect(m_connection);
    if (m_windowManager)
        m_windowManager->end();
}

void VirtualDesktop::startServer()
{
    int ready[2];
    if (::pipe2(ready, O_CLOEXEC) != 0)
        throw std::runtime_error("no pipe");
    Launch launch;
    launch.environment = m_folders.environment();
    launch.inheritedDescriptor = ready[1];
    // No access control: a test may run its program as another user.
    launch.arguments = {
        "Xvfb",      "-displayfd", std::to_string(ready[1]),
        "-screen",   "0",          std::to_string(m_options.width) + 'x' + std::to_string(m_options.height) + "x24",
        "-nolisten", "tcp",        "-noreset",
        "-ac",       "-dpi",       "96"};
    m_server = std::make_unique<Process>(launch);
    ::close(ready[1]);
    const std::string number = readDisplayNumber(ready[0]);
    ::close(ready[0]);
    if (number.empty())
        throw std::runtime_error("the X server did not start:\n" + m_server->errors());
    m_name = ':' + number;
}

void VirtualDesktop::startWindowManager()
{
    const auto configuration = m_folders.root() / "openbox.xml";
    writeFile(configuration, windowManagerConfiguration(m_options));
    Launch launch;
    launch.environment = m_folders.environment();
    launch.environment["DISPLAY"] = m_name;
    launch.arguments = {"openbox", "--sm-disable", "--config-file", configuration};
    m_windowManager = std::make_unique<Process>(launch);
    const auto announced = [this] {
        const auto windows = property<std::uint32_t>(*this, m_screen->root, "_NET_SUPPORTING_WM_CHECK");
        const auto area = property<std::uint32_t>(*this, m_screen->root, "_NET_WORKAREA");
        return !windows.empty() && area.size() >= 4;
    };
    if (!waitUntil(announced))
        throw std::runtime_error("the window manager did not start:\n" + m_windowManager->errors());
}

Rectangle VirtualDesktop::workArea() const
{
    return {m_options.marginLeft, m_options.marginTop, m_options.width - m_options.marginLeft - m_options.marginRight,
            m_options.height - m_options.marginTop - m_options.marginBottom};
}

std::uint32_t VirtualDesktop::atom(const std::string &name) const
{
    const auto reply = replyTo<xcb_intern_atom_reply_t>(
        xcb_intern_atom_reply, m_connection,
        xcb_intern_atom(m_connection, 0, static_cast<std::uint16_t>(name.size()), name.c_str()));
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

} // namespace tallowmere::desktop
