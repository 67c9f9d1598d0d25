// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "platform/freedesktop/GioApplications.h"

#include <dlfcn.h>

#include <type_traits>

namespace tallowmere {

namespace {

/// The few functions that are needed, in GLib's types: gboolean is an int.
struct Gio
{
    void *(*g_app_info_get_default_for_type)(const char *contentType, int mustSupportUris) = nullptr;
    const char *(*g_app_info_get_id)(void *appInfo) = nullptr;
    void (*g_object_unref)(void *object) = nullptr;

    [[nodiscard]] bool complete() const
    {
        return g_app_info_get_default_for_type && g_app_info_get_id && g_object_unref;
    }
};

// Not linked: it is needed once in a user's life, and would cost every start a library more.
Gio loadGio()
{
    Gio gio;
    // Never closed: GLib's types can't be unloaded, and a thread of its own watches the lists from now on.
    void *library = ::dlopen("libgio-2.0.so.0", RTLD_LAZY | RTLD_LOCAL);
    if (!library)
        return gio;
    const auto find = [library](auto &function, const char *name) {
        function = reinterpret_cast<std::remove_reference_t<decltype(function)>>(::dlsym(library, name));
    };
    find(gio.g_app_info_get_default_for_type, "g_app_info_get_default_for_type");
    find(gio.g_app_info_get_id, "g_app_info_get_id");
    find(gio.g_object_unref, "g_object_unref");
    return gio;
}

} // namespace

std::optional<QByteArray> gioDefaultApplication(const QByteArray &mimeType)
{
    static const Gio gio = loadGio();
    if (!gio.complete())
        return std::nullopt;
    void *application = gio.g_app_info_get_default_for_type(mimeType.constData(), 0);
    if (!application)
        return std::nullopt;
    const QByteArray id = gio.g_app_info_get_id(application);
    gio.g_object_unref(application);
    return id.isEmpty() ? std::nullopt : std::optional(id);
}

} // namespace tallowmere
