// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/e2e/E2ETest.h"

#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <sstream>
#include <stdexcept>

namespace tallowmere {

using desktop::Colour;
using desktop::Rectangle;
using desktop::waitUntil;

namespace {

photos::Rgb rgb(const Colour &colour)
{
    return {static_cast<std::uint8_t>(colour.red), static_cast<std::uint8_t>(colour.green),
            static_cast<std::uint8_t>(colour.blue)};
}

bool near(const Rectangle &a, const Rectangle &b, int tolerance)
{
    return std::abs(a.x - b.x) <= tolerance && std::abs(a.y - b.y) <= tolerance &&
           std::abs(a.width - b.width) <= tolerance && std::abs(a.height - b.height) <= tolerance;
}

std::string described(const Rectangle &rectangle)
{
    std::ostringstream text;
    text << rectangle.width << 'x' << rectangle.height << " at " << rectangle.x << ", " << rectangle.y;
    return text.str();
}

} // namespace

std::vector<std::byte> picture(const Colour &centre, int width, int height, const photos::JpegOptions &options)
{
    return photos::makeTarget(width, height, rgb(centre), rgb(kSurround), options);
}

E2ETest::E2ETest(std::optional<uid_t> user, const desktop::DisplayOptions &options)
    : m_user(user), folders(user), screenAndKeys(options), environment(folders.environment())
{
    environment["DISPLAY"] = screenAndKeys.name();
    bus = std::make_unique<desktop::SessionBus>(environment);
    environment["DBUS_SESSION_BUS_ADDRESS"] = bus->address();
    programFile = TALLOWMERE_PROGRAM;
    if (m_user && ::geteuid() == 0) {
        // The build folder may lie where only root gets to.
        programFile = folders.root() / "tallowmere";
        std::filesystem::copy_file(TALLOWMERE_PROGRAM, programFile);
        std::filesystem::permissions(programFile, std::filesystem::perms{0755});
    }
    writeSettings({});
}

E2ETest::~E2ETest()
{
    // What the bus has started is its child and not ours: it has to be asked for.
    const auto started = bus ? bus->processOf(kApplication) : std::nullopt;
    if (started && (!program || *started != program->id()))
        ::kill(*started, SIGKILL);
}

void E2ETest::TearDown()
{
    const char *folder = std::getenv("TALLOWMERE_FAILURE_PICTURES");
    if (!folder || !HasFailure())
        return;
    const auto *test = testing::UnitTest::GetInstance()->current_test_info();
    std::string name(test->test_suite_name());
    name.append(".").append(test->name()).append(".png");
    std::ranges::replace(name, '/', '.');
    writePng(screen.capture(screenAndKeys.screen()), std::filesystem::path(folder) / name);
}

std::filesystem::path E2ETest::addFile(const std::string &name, std::span<const std::byte> bytes)
{
    const auto file = folders.pictures() / name;
    desktop::writeFile(file, bytes);
    return file;
}

std::filesystem::path E2ETest::addPicture(const std::string &name, const Colour &centre, int width, int height)
{
    return addFile(name, picture(centre, width, height));
}

void E2ETest::writeSettings(const std::string &lines)
{
    const auto folder = folders.config() / "tallowmere";
    const auto file = folder / "tallowmere.ini";
    std::filesystem::create_directories(folder);
    desktop::writeFile(file, "[General]\nDefaultFileAssociationsSet=true\n" + lines);
    if (m_user && ::geteuid() == 0 &&
        (::chown(folder.c_str(), *m_user, *m_user) != 0 || ::chown(file.c_str(), *m_user, *m_user) != 0))
        throw std::runtime_error("cannot give away the settings");
}

std::string E2ETest::settings() const
{
    return desktop::readFile(folders.config() / "tallowmere" / "tallowmere.ini");
}

void E2ETest::setEnvironment(const std::string &name, const std::string &value)
{
    environment[name] = value;
}

std::unique_ptr<desktop::Process> E2ETest::launch(const std::vector<std::string> &files,
                                                  const desktop::Environment &overrides) const
{
    desktop::Launch launch{.arguments = {programFile.string()},
                           .environment = overrides,
                           .workingDirectory = folders.pictures(),
                           .user = m_user};
    launch.environment.insert(environment.begin(), environment.end());
    launch.arguments.insert(launch.arguments.end(), files.begin(), files.end());
    return std::make_unique<desktop::Process>(launch);
}

void E2ETest::start(const std::vector<std::string> &files)
{
    program = launch(files);
    adopt(program->id());
    if (window == 0)
        return;
    // It moves by half a title bar once it knows its decorations.
    const auto area = screenAndKeys.workArea();
    ASSERT_TRUE(waitUntil([&] {
        const auto frame = windows.frame(window);
        return std::abs(frame.centre().x - area.centre().x) <= 3 && std::abs(frame.centre().y - area.centre().y) <= 3;
    })) << "the window did not come to the middle\n"
        << situation();
}

void E2ETest::adopt(pid_t process)
{
    const bool shown = waitUntil([&] {
        const auto all = windows.ofProcess(process);
        window = all.empty() ? 0 : all.front();
        return window != 0 || (program && !program->running());
    });
    ASSERT_TRUE(shown && window != 0) << "no window appeared\n" << situation();
    ASSERT_TRUE(waitUntil([&] { return windows.hasFocus(window); })) << "the window has no focus\n" << situation();
}

bool E2ETest::waitForTitle(const std::string &title)
{
    return waitUntil([&] { return windows.title(window) == title; });
}

bool E2ETest::waitForPicture(const std::string &name, const Colour &centre)
{
    return waitForTitle("Tallowmere • " + name) &&
           waitUntil([&] { return alike(screen.at(windows.contents(window).centre()), centre); });
}

bool E2ETest::waitForFrame(const Rectangle &frame, int tolerance)
{
    return waitUntil([&] { return near(windows.frame(window), frame, tolerance); });
}

void E2ETest::waitUntilKeysAreDealtWith()
{
    input.control('2');
    EXPECT_TRUE(waitUntil([&] {
        const Rectangle frame = windows.frame(window);
        return frame.width == 900 && frame.height == 600;
    })) << situation();
}

bool E2ETest::showsNoPicture() const
{
    const Colour seen = screen.at(windows.contents(window).centre());
    return std::ranges::none_of(std::vector{kRed, kGreen, kBlue, kYellow, kSurround},
                                [&](const Colour &colour) { return alike(seen, colour); });
}

std::string E2ETest::situation() const
{
    std::ostringstream text;
    for (const auto each : windows.all()) {
        text << "window \"" << windows.title(each) << "\", frame " << described(windows.frame(each)) << ", contents "
             << described(windows.contents(each)) << (windows.visible(each) ? "" : ", not mapped")
             << (windows.hasState(each, "_NET_WM_STATE_HIDDEN") ? ", minimised" : "")
             << (windows.hasFocus(each) ? ", has the focus" : "") << ", centre "
             << screen.at(windows.contents(each).centre()) << '\n';
    }
    if (program)
        text << "output:\n" << program->output() << "errors:\n" << program->errors();
    text << "settings:\n" << settings();
    return text.str();
}

desktop::Finished E2ETest::callApplication(const std::string &method, const std::vector<std::string> &arguments)
{
    return bus->call(kApplication, kObject, "org.freedesktop.Application." + method, arguments);
}

std::string E2ETest::uri(const std::filesystem::path &file)
{
    std::string text("file://");
    return text.append(file.string());
}

std::string E2ETest::uris(const std::vector<std::string> &list)
{
    std::string text = "[";
    for (const auto &uri : list)
        text.append(text.size() > 1 ? ", '" : "'").append(uri).append("'");
    return text.append("]");
}

} // namespace tallowmere
