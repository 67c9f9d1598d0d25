// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "platform/freedesktop/DBusFileRevealer.h"

#include "platform/freedesktop/SessionBus.h"
#include "support/Queues.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <optional>
#include <string>

namespace tallowmere {

namespace {

using Clock = std::chrono::steady_clock;
using Options = DBusFileRevealer::Options;

int keepAnswer(sd_bus_message *reply, void *userdata, sd_bus_error *)
{
    *static_cast<std::optional<bool> *>(userdata) = sd_bus_message_is_method_error(reply, nullptr) == 0;
    return 1;
}

/// Whether @p call was answered without an error in time.
bool callSucceeds(sd_bus *bus, sd_bus_message *call, std::chrono::milliseconds timeout)
{
    std::optional<bool> answer;
    sd_bus_slot *slot = nullptr;
    const auto microseconds = static_cast<std::uint64_t>(std::chrono::microseconds(timeout).count());
    if (sd_bus_call_async(bus, &slot, call, keepAnswer, &answer, microseconds) < 0)
        return false;
    serveUntil(bus, Clock::now() + timeout, -1, [&] { return answer.has_value(); });
    sd_bus_slot_unref(slot); // a late answer must not reach what is gone by then
    return answer.value_or(false);
}

bool showItem(sd_bus *bus, const FileURL &file, const Options &options)
{
    constexpr const char *kName = "org.freedesktop.FileManager1";
    sd_bus_message *raw = nullptr;
    if (sd_bus_message_new_method_call(bus, &raw, kName, "/org/freedesktop/FileManager1", kName, "ShowItems") < 0)
        return false;
    const MessagePtr call(raw);
    return sd_bus_message_append(raw, "ass", 1, file.encoded().constData(), "") >= 0 &&
           callSucceeds(bus, raw, options.connectTimeout + options.callTimeout);
}

bool openDirectoryByPortal(sd_bus *bus, const FileURL &file, const Options &options)
{
    // The portal takes a file that is open and shows the folder it lies in.
    const int fd = open(file.path().constData(), O_PATH | O_CLOEXEC);
    if (fd < 0)
        return false;
    sd_bus_message *raw = nullptr;
    bool opened = false;
    if (sd_bus_message_new_method_call(bus, &raw, "org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop",
                                       "org.freedesktop.portal.OpenURI", "OpenDirectory") >= 0) {
        const MessagePtr call(raw);
        opened = sd_bus_message_append(raw, "sha{sv}", "", fd, 0) >= 0 && callSucceeds(bus, raw, options.callTimeout);
    }
    close(fd);
    return opened;
}

void openFolderByProgram(const FileURL &folder, const QByteArray &program)
{
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    // Ours is ignored, which a child would inherit.
    sigset_t defaults;
    sigemptyset(&defaults);
    sigaddset(&defaults, SIGPIPE);
    posix_spawnattr_setsigdefault(&attributes, &defaults);
    // A session of its own: the file manager outlives us and the terminal we were started from.
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSID);

    std::string name = program.toStdString();
    std::string path = folder.path().toStdString();
    const std::array<char *, 3> arguments{name.data(), path.data(), nullptr};
    pid_t child = 0;
    if (posix_spawnp(&child, name.c_str(), nullptr, &attributes, arguments.data(), environ) == 0) {
        while (waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
        }
    }
    posix_spawnattr_destroy(&attributes);
}

void revealNow(const FileURL &file, const Options &options)
{
    if (const BusPtr bus = openSessionBus(options.address)) {
        const auto connected = [&bus] { return sd_bus_is_ready(bus.get()) > 0; };
        if (serveUntil(bus.get(), Clock::now() + options.connectTimeout, -1, connected) &&
            (showItem(bus.get(), file, options) || openDirectoryByPortal(bus.get(), file, options)))
            return;
    }
    openFolderByProgram(file.deletingLastPathComponent(), options.folderOpener);
}

} // namespace

DBusFileRevealer::DBusFileRevealer(Launcher &launcher, Options options)
    : m_launcher(launcher), m_options(std::move(options)), m_underWay(std::make_shared<UnderWay>())
{}

void DBusFileRevealer::reveal(const FileURL &file)
{
    {
        const std::lock_guard lock(m_underWay->mutex);
        if (m_underWay->files.contains(file))
            return;
        m_underWay->files.insert(file);
    }
    m_launcher.launch("com.tallowmere.reveal", QualityOfService::userInitiated,
                      [file, options = m_options, underWay = m_underWay] {
        revealNow(file, options);
        const std::lock_guard lock(underWay->mutex);
        underWay->files.remove(file);
    });
}

} // namespace tallowmere
