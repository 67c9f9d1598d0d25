// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
//
// The installed package, started in the root that TALLOWMERE_PACKAGE_ROOT names. The screen, the window manager and
// these tests are outside it: inside there is Debian's base, a bus, GLib's tools, and what the package asks for.
#include "benchmarks/PhotoFormats.h"
#include "tests/desktop/PhotoGenerator.h"
#include "tests/desktop/Replies.h"
#include "tests/desktop/Screen.h"
#include "tests/desktop/Windows.h"

#include <gtest/gtest.h>

#include <signal.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <stdexcept>

namespace tallowmere {
namespace {

using namespace desktop;
namespace fs = std::filesystem;

constexpr const char *kId = "app.tallowmere.Tallowmere";
constexpr Colour kRed{208, 32, 32};
constexpr Colour kGreen{24, 144, 56};

fs::path packageRoot()
{
    const char *root = std::getenv("TALLOWMERE_PACKAGE_ROOT");
    if (!root || !fs::is_directory(root))
        throw std::runtime_error("TALLOWMERE_PACKAGE_ROOT names no folder: tests/package/run makes one");
    return root;
}

/// The value of the first line "key=…".
std::string entry(const std::string &text, const std::string &key)
{
    const auto begin = text.find('\n' + key + '=');
    if (begin == std::string::npos)
        return {};
    const auto value = begin + key.size() + 2;
    return text.substr(value, text.find('\n', value) - value);
}

/// An ordinary user's session inside the root, with a screen that is outside.
class PackageTest : public testing::Test
{
protected:
    void SetUp() override
    {
        std::string name = root / "tmp" / "session-XXXXXX";
        ASSERT_NE(::mkdtemp(name.data()), nullptr);
        session = name;
        for (const char *folder : {"home", "run", "pictures"})
            fs::create_directory(session / folder);
        writeFile(session / "pictures" / "red.jpg", photos::makeTarget(640, 480, {208, 32, 32}, {90, 40, 90}));
        writeFile(session / "pictures" / "green.avif",
                  bench::encodeAvif({640, 480, [](int, std::span<std::uint8_t> row) {
                                         for (std::size_t i = 0; i + 2 < row.size(); i += 3) {
                                             row[i] = 24;
                                             row[i + 1] = 144;
                                             row[i + 2] = 56;
                                         }
                                     }}));
        ASSERT_EQ(::chown(session.c_str(), kOrdinaryUser, kOrdinaryUser), 0);
        for (const auto &item : fs::recursive_directory_iterator(session))
            ASSERT_EQ(::chown(item.path().c_str(), kOrdinaryUser, kOrdinaryUser), 0);
        fs::permissions(session / "run", fs::perms::owner_all);
        environment = {{"PATH", "/usr/bin:/bin"},
                       {"LANG", "C.UTF-8"},
                       {"DISPLAY", screenAndKeys.name()},
                       {"HOME", inside(session / "home")},
                       {"XDG_RUNTIME_DIR", inside(session / "run")}};
        bus = launch({"dbus-daemon", "--session", "--nofork", "--print-address"});
        ASSERT_TRUE(bus->waitForOutput("\n")) << bus->errors();
        const std::string printed = bus->output();
        environment["DBUS_SESSION_BUS_ADDRESS"] = printed.substr(0, printed.find('\n'));
    }

    void TearDown() override
    {
        // What the bus has started is no child of this process: its window tells which it is.
        for (const WindowId each : windows.all()) {
            if (const auto process = processOf(each); process > 1)
                ::kill(process, SIGKILL);
        }
        std::error_code ignored;
        fs::remove_all(session, ignored);
    }

    /// A path as those see it who live in the root.
    [[nodiscard]] std::string inside(const fs::path &path) const
    {
        return '/' + path.lexically_relative(root).string();
    }
    [[nodiscard]] std::string pictureInside(const char *name) const { return inside(session / "pictures" / name); }

    [[nodiscard]] Launch inRoot(const std::vector<std::string> &command) const
    {
        const std::string user = std::to_string(kOrdinaryUser);
        Launch launch{.arguments = {"chroot", "--userspec=" + user + ':' + user, root.string()},
                      .environment = environment,
                      .workingDirectory = {},
                      .user = {}};
        launch.arguments.insert(launch.arguments.end(), command.begin(), command.end());
        return launch;
    }
    [[nodiscard]] std::unique_ptr<Process> launch(const std::vector<std::string> &command) const
    {
        return std::make_unique<Process>(inRoot(command));
    }
    void call(const std::vector<std::string> &command) const
    {
        const Finished finished = run(inRoot(command));
        EXPECT_EQ(finished.status, 0) << command.front() << ": " << finished.output << finished.errors;
    }

    /// As the window itself tells; 0 when it does not.
    [[nodiscard]] pid_t processOf(WindowId id) const
    {
        const auto owner = property<std::uint32_t>(screenAndKeys, id, "_NET_WM_PID");
        return owner.empty() ? 0 : static_cast<pid_t>(owner.front());
    }

    [[nodiscard]] bool waitForWindow(const std::string &title)
    {
        return waitUntil([&] {
            window = windows.titled(title).value_or(0);
            return window != 0 && windows.visible(window);
        });
    }
    [[nodiscard]] bool waitForPicture(const std::string &name, const Colour &centre)
    {
        return waitForWindow("Tallowmere • " + name) &&
               waitUntil([&] { return alike(screen.at(windows.contents(window).centre()), centre); });
    }
    [[nodiscard]] std::string situation() const
    {
        std::string text;
        for (const WindowId each : windows.all())
            text += "window \"" + windows.title(each) + "\"\n";
        return text + bus->output() + bus->errors();
    }

    const fs::path root = packageRoot();
    const std::string desktopFile = std::string("/usr/share/applications/") + kId + ".desktop";
    VirtualDesktop screenAndKeys;
    Screen screen{screenAndKeys};
    Windows windows{screenAndKeys};
    fs::path session;
    Environment environment;
    std::unique_ptr<Process> bus;
    WindowId window = 0;
};

TEST_F(PackageTest, startsFromTheApplicationsMenuAndQuitsFromIt)
{
    call({"gapplication", "launch", kId});
    ASSERT_TRUE(waitForWindow("Tallowmere")) << situation();
    EXPECT_EQ(windows.className(window), entry(readFile(root / desktopFile.substr(1)), "StartupWMClass"));
    const pid_t process = processOf(window);
    ASSERT_GT(process, 0);
    EXPECT_EQ(fs::read_symlink("/proc/" + std::to_string(process) + "/exe"), root / "usr/bin/tallowmere");

    call({"gapplication", "action", kId, "quit"});
    EXPECT_TRUE(waitUntil([&] { return windows.all().empty(); })) << situation();
}

TEST_F(PackageTest, aPhotoDroppedOnItsMenuEntryIsShown)
{
    call({"gapplication", "launch", kId, pictureInside("red.jpg")});
    EXPECT_TRUE(waitForPicture("red.jpg", kRed)) << situation();
}

TEST_F(PackageTest, theDesktopFindsItForAPhoto)
{
    call({"gio", "open", pictureInside("red.jpg")});
    EXPECT_TRUE(waitForPicture("red.jpg", kRed)) << situation();
}

TEST_F(PackageTest, theShellStartsItAndTheCodecsLoadedLaterAreFound)
{
    const auto program = launch({"tallowmere", pictureInside("green.avif")});
    EXPECT_TRUE(waitForPicture("green.avif", kGreen)) << program->output() << program->errors() << situation();
}

} // namespace
} // namespace tallowmere
