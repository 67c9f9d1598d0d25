// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/e2e/E2ETest.h"

#include <signal.h>

namespace tallowmere {

using desktop::waitUntil;

/// One instance for each session: later starts and the desktop speak to it over the bus.
class InstanceTest : public E2ETest
{
protected:
    void SetUp() override
    {
        a = addPicture("a.jpg", kRed);
        b = addPicture("b.jpg", kGreen);
    }
    /// The service file that is installed with the program, for the program that was built here.
    void installService()
    {
        std::string text = desktop::readFile(TALLOWMERE_SERVICE_FILE);
        const std::string placeholder = "@CMAKE_INSTALL_FULL_BINDIR@/tallowmere";
        const auto at = text.find(placeholder);
        ASSERT_NE(at, std::string::npos) << text;
        bus->install(kApplication, text.replace(at, placeholder.size(), programFile.string()));
    }
    void adoptActivated()
    {
        ASSERT_TRUE(waitUntil([&] { return bus->processOf(kApplication).has_value(); }));
        adopt(*bus->processOf(kApplication));
    }

    std::filesystem::path a;
    std::filesystem::path b;
};

TEST_F(InstanceTest, aSecondStartHandsItsFileOverAndExitsWithoutADisplay)
{
    start({"a.jpg"});
    ASSERT_TRUE(waitForPicture("a.jpg", kRed)) << situation();
    // A name relative to where the second one was started, and no display to open.
    const auto second = launch({"b.jpg"}, {{"DISPLAY", ":999"}});
    EXPECT_EQ(second->waitForExit(), 0) << second->errors();
    EXPECT_TRUE(waitForPicture("b.jpg", kGreen)) << situation();
    EXPECT_EQ(windows.ofProcess(program->id()).size(), 1U);
    EXPECT_EQ(second->output(), "");
    EXPECT_EQ(second->errors(), "");
}

TEST_F(InstanceTest, aSecondStartWithSeveralFilesOpensTheFirst)
{
    start();
    const auto second = launch({"b.jpg", "a.jpg"});
    EXPECT_EQ(second->waitForExit(), 0) << second->errors();
    EXPECT_TRUE(waitForPicture("b.jpg", kGreen)) << situation();
}

TEST_F(InstanceTest, twoStartsAtOnceEndInOneProgramThatShowsAFile)
{
    const auto first = launch({"a.jpg"});
    const auto second = launch({"a.jpg"});
    ASSERT_TRUE(waitUntil([&] { return !first->running() || !second->running(); }));
    ASSERT_TRUE(waitUntil([&] { return bus->processOf(kApplication).has_value(); }));
    const auto &staying = first->running() ? *first : *second;
    auto &leaving = first->running() ? *second : *first;
    EXPECT_EQ(leaving.waitForExit(), 0) << leaving.errors();
    EXPECT_EQ(bus->processOf(kApplication), staying.id());
    adopt(staying.id());
    EXPECT_TRUE(waitForPicture("a.jpg", kRed)) << situation();
}

TEST_F(InstanceTest, openOverTheBusShowsTheFile)
{
    start();
    EXPECT_EQ(callApplication("Open", {uris({uri(a)}), "{}"}).status, 0);
    EXPECT_TRUE(waitForPicture("a.jpg", kRed)) << situation();
    EXPECT_EQ(callApplication("Open", {uris({uri(b), uri(a)}), "{}"}).status, 0);
    EXPECT_TRUE(waitForPicture("b.jpg", kGreen)) << situation();
}

TEST_F(InstanceTest, openOverTheBusRefusesWhatIsNoLocalFile)
{
    start({"a.jpg"});
    ASSERT_TRUE(waitForPicture("a.jpg", kRed)) << situation();
    for (const char *refused : {"http://localhost/b.jpg", "trash:///b.jpg", "mtp://camera/b.jpg", "b.jpg", ""})
        EXPECT_NE(callApplication("Open", {uris({refused}), "{}"}).status, 0) << refused;
    waitUntilKeysAreDealtWith();
    EXPECT_EQ(windows.title(window), "Tallowmere • a.jpg");
    // And goes on working.
    EXPECT_EQ(callApplication("Open", {uris({uri(b)}), "{}"}).status, 0);
    EXPECT_TRUE(waitForPicture("b.jpg", kGreen)) << situation();
}

TEST_F(InstanceTest, activateBringsTheMinimisedWindowBack)
{
    start({"a.jpg"});
    ASSERT_TRUE(waitForPicture("a.jpg", kRed)) << situation();
    windows.minimise(window);
    ASSERT_TRUE(waitUntil([&] { return !windows.visible(window); }));
    EXPECT_EQ(callApplication("Activate", {"{}"}).status, 0);
    EXPECT_TRUE(waitUntil([&] { return windows.visible(window) && windows.hasFocus(window); })) << situation();
    EXPECT_TRUE(waitForPicture("a.jpg", kRed)) << situation();
}

TEST_F(InstanceTest, theQuitActionEndsTheProgram)
{
    start({"a.jpg"});
    EXPECT_EQ(callApplication("ActivateAction", {"quit", "[]", "{}"}).status, 0);
    EXPECT_EQ(program->waitForExit(), 0) << situation();
}

TEST_F(InstanceTest, anUnknownActionLeavesTheProgramRunning)
{
    start({"a.jpg"});
    ASSERT_TRUE(waitForPicture("a.jpg", kRed)) << situation();
    [[maybe_unused]] const auto answer = callApplication("ActivateAction", {"no-such-action", "[]", "{}"});
    EXPECT_EQ(callApplication("Open", {uris({uri(b)}), "{}"}).status, 0);
    EXPECT_TRUE(waitForPicture("b.jpg", kGreen)) << situation();
}

TEST_F(InstanceTest, theBusStartsTheProgramToOpenAFile)
{
    installService();
    EXPECT_EQ(callApplication("Open", {uris({uri(b)}), "{}"}).status, 0);
    adoptActivated();
    EXPECT_TRUE(waitForPicture("b.jpg", kGreen)) << situation();
    EXPECT_EQ(callApplication("ActivateAction", {"quit", "[]", "{}"}).status, 0);
    EXPECT_TRUE(waitUntil([&] { return windows.all().empty() && !bus->hasOwner(kApplication); }));
}

TEST_F(InstanceTest, theBusStartsTheProgramWithItsIdleWindow)
{
    installService();
    EXPECT_EQ(callApplication("Activate", {"{}"}).status, 0);
    adoptActivated();
    EXPECT_TRUE(waitForTitle("Tallowmere")) << situation();
    EXPECT_EQ(windows.contents(window).width, 600);
}

TEST_F(InstanceTest, closingTheWindowKeepsTheProgramAndAnotherStartBringsTheSameWindowBackEmpty)
{
    start({"a.jpg"});
    ASSERT_TRUE(waitForPicture("a.jpg", kRed)) << situation();
    windows.close(window);
    ASSERT_TRUE(waitUntil([&] { return !windows.visible(window); })) << situation();
    EXPECT_TRUE(program->running());
    const auto second = launch({});
    EXPECT_EQ(second->waitForExit(), 0) << second->errors();
    adopt(program->id());
    EXPECT_TRUE(waitForTitle("Tallowmere"));
    EXPECT_TRUE(waitUntil([&] {
        const auto frame = windows.frame(window);
        return std::abs(frame.width - 600) <= 1 && std::abs(frame.height - 400) <= 1;
    })) << situation();
    EXPECT_TRUE(waitUntil([&] { return showsNoPicture(); })) << situation();
    EXPECT_EQ(windows.ofProcess(program->id()).size(), 1U);
}

TEST_F(InstanceTest, aFileBringsTheClosedWindowBack)
{
    start({"a.jpg"});
    ASSERT_TRUE(waitForPicture("a.jpg", kRed)) << situation();
    windows.close(window);
    ASSERT_TRUE(waitUntil([&] { return !windows.visible(window); })) << situation();
    EXPECT_EQ(callApplication("Open", {uris({uri(b)}), "{}"}).status, 0);
    adopt(program->id());
    EXPECT_TRUE(waitForPicture("b.jpg", kGreen)) << situation();
    EXPECT_TRUE(waitUntil([&] { return std::abs(windows.frame(window).width - 640) <= 2; })) << situation();
}

TEST_F(InstanceTest, controlReturnAsksTheFileManagerForExactlyTheCurrentFile)
{
    const auto spaced = addPicture("ü b#.jpg", kBlue);
    desktop::Launch monitor{.arguments = {"dbus-monitor", "--address", bus->address(),
                                          "type='method_call',interface='org.freedesktop.FileManager1'"},
                            .environment = environment,
                            .workingDirectory = {},
                            .user = {}};
    desktop::Process listener(monitor);
    ASSERT_TRUE(listener.waitForOutput("NameLost") || listener.waitForOutput("NameAcquired"));
    start({"ü b#.jpg"});
    ASSERT_TRUE(waitForPicture("ü b#.jpg", kBlue)) << situation();
    input.control(desktop::key::kReturn);
    EXPECT_TRUE(listener.waitForOutput("member=ShowItems")) << listener.output();
    EXPECT_TRUE(listener.waitForOutput(uri(folders.pictures()) + "/%C3%BC%20b%23.jpg\"")) << listener.output();
    const std::string heard = listener.output();
    EXPECT_EQ(heard.find("member=ShowItems"), heard.rfind("member=ShowItems")) << heard;
}

TEST_F(InstanceTest, interruptedFromATerminalTheProgramEnds)
{
    start({"a.jpg"});
    ASSERT_TRUE(waitForPicture("a.jpg", kRed)) << situation();
    ::kill(program->id(), SIGINT);
    EXPECT_TRUE(program->waitForExit());
}

} // namespace tallowmere
