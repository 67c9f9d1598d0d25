// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "platform/freedesktop/ApplicationInterface.h"

#include <cstring>
#include <string_view>

namespace tallowmere {

namespace {

constexpr const char *kInterface = "org.freedesktop.Application";
/// Ours, beside the standard's keys: the files are words of a command line, which bring the window forward even
/// when the file is refused. Other callers never set it.
constexpr const char *kFromCommandLine = "app.tallowmere.command-line";

using Handler = std::function<void(ApplicationRequest)>;

struct PlatformData
{
    QByteArray activationToken;
    QByteArray startupId;
    bool fromCommandLine = false;

    [[nodiscard]] QByteArray token() const { return activationToken.isEmpty() ? startupId : activationToken; }
};

/// One "{sv}" whose braces are entered already. Negative on a malformed message.
int readEntry(sd_bus_message *message, PlatformData &data)
{
    const char *key = nullptr;
    int result = sd_bus_message_read_basic(message, 's', &key);
    if (result < 0)
        return result;
    char type = 0;
    const char *contents = nullptr;
    result = sd_bus_message_peek_type(message, &type, &contents);
    if (result < 0)
        return result;
    const std::string_view name = key;
    const bool text = std::strcmp(contents, "s") == 0;
    const bool flag = std::strcmp(contents, "b") == 0;
    if (text && (name == "activation-token" || name == "desktop-startup-id")) {
        const char *value = nullptr;
        result = sd_bus_message_read(message, "v", "s", &value);
        if (result >= 0)
            (name == "activation-token" ? data.activationToken : data.startupId) = value;
        return result;
    }
    if (flag && name == kFromCommandLine) {
        int value = 0;
        result = sd_bus_message_read(message, "v", "b", &value);
        data.fromCommandLine = value != 0;
        return result;
    }
    return sd_bus_message_skip(message, "v");
}

int readPlatformData(sd_bus_message *message, PlatformData &data)
{
    int result = sd_bus_message_enter_container(message, 'a', "{sv}");
    if (result < 0)
        return result;
    while ((result = sd_bus_message_enter_container(message, 'e', "sv")) > 0) {
        result = readEntry(message, data);
        if (result < 0)
            return result;
        result = sd_bus_message_exit_container(message);
        if (result < 0)
            return result;
    }
    return result < 0 ? result : sd_bus_message_exit_container(message);
}

int onActivate(sd_bus_message *message, void *userdata, sd_bus_error *)
{
    PlatformData data;
    const int result = readPlatformData(message, data);
    if (result < 0)
        return result;
    (*static_cast<const Handler *>(userdata))({ApplicationRequest::Kind::reopen, {}, data.token()});
    return sd_bus_reply_method_return(message, "");
}

int onOpen(sd_bus_message *message, void *userdata, sd_bus_error *error)
{
    int result = sd_bus_message_enter_container(message, 'a', "s");
    if (result < 0)
        return result;
    QList<FileURL> files;
    int count = 0;
    const char *uri = nullptr;
    while ((result = sd_bus_message_read_basic(message, 's', &uri)) > 0) {
        ++count;
        if (const auto file = FileURL::fromEncoded(uri))
            files.append(*file);
    }
    if (result < 0)
        return result;
    result = sd_bus_message_exit_container(message);
    if (result < 0)
        return result;
    PlatformData data;
    result = readPlatformData(message, data);
    if (result < 0)
        return result;
    // The Trash, a phone, the web: places that only the file manager can read from.
    if (count > 0 && files.isEmpty())
        return sd_bus_error_set(error, SD_BUS_ERROR_INVALID_ARGS, "Only local files can be opened");

    const auto kind =
        count == 1 && !data.fromCommandLine ? ApplicationRequest::Kind::openFile : ApplicationRequest::Kind::openFiles;
    (*static_cast<const Handler *>(userdata))({kind, std::move(files), data.token()});
    return sd_bus_reply_method_return(message, "");
}

int onActivateAction(sd_bus_message *message, void *userdata, sd_bus_error *error)
{
    const char *action = nullptr;
    const int result = sd_bus_message_read_basic(message, 's', &action);
    if (result < 0)
        return result;
    if (std::string_view(action) != "quit")
        return sd_bus_error_setf(error, SD_BUS_ERROR_INVALID_ARGS, "There is no action \"%s\"", action);
    // Answered first: the process may be gone before this thread comes to it.
    const int sent = sd_bus_reply_method_return(message, "");
    (*static_cast<const Handler *>(userdata))({ApplicationRequest::Kind::quit, {}, {}});
    return sent;
}

int appendText(sd_bus_message *message, const char *key, const QByteArray &value)
{
    return value.isEmpty() ? 0 : sd_bus_message_append(message, "{sv}", key, "s", value.constData());
}

int appendPlatformData(sd_bus_message *message, const ApplicationStart &start)
{
    int result = sd_bus_message_open_container(message, 'a', "{sv}");
    // The same leave under both names, as other toolkits do: an older instance may know only one of them.
    if (result >= 0)
        result = appendText(message, "activation-token", start.activationToken);
    if (result >= 0)
        result = appendText(message, "desktop-startup-id", start.activationToken);
    if (result >= 0)
        result = sd_bus_message_append(message, "{sv}", kFromCommandLine, "b", 1);
    return result < 0 ? result : sd_bus_message_close_container(message);
}

int appendFiles(sd_bus_message *message, const QList<FileURL> &files)
{
    int result = sd_bus_message_open_container(message, 'a', "s");
    for (qsizetype i = 0; i < files.size() && result >= 0; ++i)
        result = sd_bus_message_append_basic(message, 's', files[i].encoded().constData());
    return result < 0 ? result : sd_bus_message_close_container(message);
}

// GCC's -Wpedantic dislikes the designated initialisers of these macros in C++20 only in their nesting.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wpedantic"
const sd_bus_vtable kVtable[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_METHOD("Activate", "a{sv}", "", onActivate, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD("Open", "asa{sv}", "", onOpen, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD("ActivateAction", "sava{sv}", "", onActivateAction, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_VTABLE_END,
};
#pragma GCC diagnostic pop

} // namespace

bool serveApplicationInterface(sd_bus *bus, const Handler &handler)
{
    // The library passes its user data on untouched; the functions above read it as const again.
    auto *userdata = const_cast<Handler *>(&handler);
    return sd_bus_add_object_vtable(bus, nullptr, kApplicationPath, kInterface, kVtable, userdata) >= 0;
}

MessagePtr handOverCall(sd_bus *bus, const ApplicationStart &start)
{
    const bool open = !start.files.isEmpty();
    sd_bus_message *raw = nullptr;
    if (sd_bus_message_new_method_call(bus, &raw, kApplicationName, kApplicationPath, kInterface,
                                       open ? "Open" : "Activate") < 0)
        return nullptr;
    MessagePtr message(raw);
    // An instance that quit in between must not be started anew by the bus: this process can open the file itself.
    if (sd_bus_message_set_auto_start(raw, 0) < 0)
        return nullptr;
    if ((open && appendFiles(raw, start.files) < 0) || appendPlatformData(raw, start) < 0)
        return nullptr;
    return message;
}

} // namespace tallowmere
