// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/desktop/Input.h"
#include "tests/desktop/PhotoGenerator.h"
#include "tests/desktop/Screen.h"
#include "tests/desktop/SessionBus.h"
#include "tests/desktop/Windows.h"

#include <gtest/gtest.h>

#include <signal.h>
#include <unistd.h>

namespace tallowmere::desktop {
namespace {

Launch command(std::vector<std::string> arguments)
{
    return {.arguments = std::move(arguments),
            .environment = {{"PATH", "/usr/bin:/bin"}},
            .workingDirectory = {},
            .user = {}};
}

/// A desktop with the sample window on it, which has the focus.
class SampleWindow : public testing::Test
{
protected:
    void SetUp() override
    {
        auto launch = command({TALLOWMERE_SAMPLE_WINDOW});
        launch.environment["DISPLAY"] = desktop.name();
        process.emplace(launch);
        ASSERT_TRUE(waitUntil([&] { return !windows.ofProcess(process->id()).empty(); }));
        window = windows.ofProcess(process->id()).front();
        ASSERT_TRUE(waitUntil([&] { return windows.hasFocus(window); }));
        ASSERT_TRUE(screen.waitForColour(windows.contents(window).centre(), {255, 0, 0}));
    }

    VirtualDesktop desktop;
    Screen screen{desktop};
    Windows windows{desktop};
    Input input{desktop};
    std::optional<Process> process;
    WindowId window = 0;
};

} // namespace

TEST(Process, reportsStatusOutputAndErrors)
{
    const Finished finished = run(command({"sh", "-c", "echo out; echo err >&2; exit 3"}));
    EXPECT_EQ(finished.status, 3);
    EXPECT_EQ(finished.output, "out\n");
    EXPECT_EQ(finished.errors, "err\n");
}

TEST(Process, inheritsNothingFromTheEnvironment)
{
    ASSERT_EQ(::setenv("TALLOWMERE_LEAK", "1", 1), 0);
    EXPECT_EQ(run(command({"sh", "-c", "echo $TALLOWMERE_LEAK"})).output, "\n");
}

TEST(Process, saysWhichProgramCannotBeStarted)
{
    EXPECT_THROW(Process(command({"/nowhere/at/all"})), std::runtime_error);
}

TEST(Process, takesWhatItStartedAlongWhenItEnds)
{
    pid_t child = 0;
    {
        Process shell(command({"sh", "-c", "sleep 1000 & echo $!; wait"}));
        ASSERT_TRUE(shell.waitForOutput("\n"));
        child = static_cast<pid_t>(std::stol(shell.output()));
        ASSERT_EQ(::kill(child, 0), 0);
    }
    // An orphan is a zombie until whoever adopted it looks.
    const auto gone = [&] {
        const auto state = readFile("/proc/" + std::to_string(child) + "/stat");
        return state.empty() || state.find(") Z") != std::string::npos;
    };
    EXPECT_TRUE(waitUntil(gone));
}

TEST(Process, runsAsAnOrdinaryUserWhenRootAsks)
{
    auto launch = command({"id", "-u"});
    launch.user = kOrdinaryUser;
    const uid_t expected = ::geteuid() == 0 ? kOrdinaryUser : ::geteuid();
    EXPECT_EQ(run(launch).output, std::to_string(expected) + "\n");
}

TEST_F(SampleWindow, isFoundWithItsTitleClassAndFrame)
{
    EXPECT_EQ(windows.title(window), "Sample • wíndow");
    EXPECT_EQ(windows.className(window), "Sample");
    EXPECT_EQ(windows.titled("Sample • wíndow"), window);
    const Rectangle inner = windows.contents(window);
    EXPECT_EQ(inner.width, 320);
    EXPECT_EQ(inner.height, 200);
    EXPECT_GT(windows.frame(window).height, inner.height);
    EXPECT_TRUE(windows.visible(window));
}

TEST_F(SampleWindow, receivesKeysAndClicks)
{
    const Point centre = windows.contents(window).centre();
    input.press('a');
    EXPECT_TRUE(screen.waitForColour(centre, {0, 255, 0}));
    input.click(centre);
    EXPECT_TRUE(screen.waitForColour(centre, {0, 0, 255}));
}

TEST_F(SampleWindow, isMovedMaximisedMinimisedAndClosedThroughTheWindowManager)
{
    windows.moveAndResize(window, {300, 200, 400, 260});
    EXPECT_TRUE(waitUntil([&] { return windows.frame(window).x == 300 && windows.contents(window).width == 400; }));
    windows.maximise(window);
    EXPECT_TRUE(waitUntil([&] { return windows.frame(window) == desktop.workArea(); }));
    windows.minimise(window);
    EXPECT_TRUE(waitUntil([&] { return !windows.visible(window); }));
    windows.activate(window);
    EXPECT_TRUE(waitUntil([&] { return windows.visible(window) && windows.hasFocus(window); }));
    windows.close(window);
    EXPECT_EQ(process->waitForExit(), 0);
}

TEST(SessionBus, startsAServiceWithTheGivenEnvironment)
{
    UserFolders folders;
    auto environment = folders.environment();
    environment["GREETING"] = "hello";
    const SessionBus bus(environment);
    EXPECT_FALSE(bus.hasOwner("org.example.Service"));
    const auto file = folders.root() / "greeting";
    bus.install("org.example.Service",
                "[D-BUS Service]\nName=org.example.Service\nExec=/bin/sh -c \"echo $GREETING > " + file.string() +
                    "; exit 1\"\n");
    EXPECT_NE(bus.call("org.example.Service", "/", "org.example.Service.Do").status, 0);
    EXPECT_EQ(readFile(file), "hello\n");
    EXPECT_TRUE(bus.processOf("org.freedesktop.DBus"));
}

TEST(PhotoGenerator, makesTheSamePhotoTwiceAndAnotherForAnotherSeed)
{
    const auto photo = photos::makePhoto(600, 400, 7);
    EXPECT_EQ(photo, photos::makePhoto(600, 400, 7));
    EXPECT_NE(photo, photos::makePhoto(600, 400, 8));
}

TEST(PhotoGenerator, makesFilesOfACamerasSize)
{
    for (const std::uint64_t seed : {1U, 2U, 3U}) {
        const auto photo = photos::makePhoto(3000, 2000, seed);
        const double bytesPerPixel = static_cast<double>(photo.size()) / (3000.0 * 2000.0);
        EXPECT_GT(bytesPerPixel, 0.2) << "seed " << seed;
        EXPECT_LT(bytesPerPixel, 0.4) << "seed " << seed;
    }
}

} // namespace tallowmere::desktop
