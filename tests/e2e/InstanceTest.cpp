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
    /// A program that writes down what is asked of the file manager.
    [[nodiscard]] desktop::Launch fileManagerMonitor() const
    {
        return {.arguments = {"dbus-monitor", "--address", bus->address(),
                              "type='method_call',interface='org.freedesktop.FileManager1'"},
                .environment = environment,
                .workingDirectory = {},
                .user = {}};
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
    desktop::Process listener(fileManagerMonitor());
    ASSERT_TRUE(listener.waitForOutput("NameLost") || listener.waitForOutput("NameAcquired"));
    start({"ü b#.jpg"});
    ASSERT_TRUE(waitForPicture("ü b#.jpg", kBlue)) << situation();
    input.control(desktop::key::kReturn);
    EXPECT_TRUE(listener.waitForOutput("member=ShowItems")) << listener.output();
    EXPECT_TRUE(listener.waitForOutput(uri(folders.pictures()) + "/%C3%BC%20b%23.jpg\"")) << listener.output();
    const std::string heard = listener.output();
    EXPECT_EQ(heard.find("member=ShowItems"), heard.rfind("member=ShowItems")) << heard;
}

TEST_F(InstanceTest, controlEnterOfTheKeypadAsksTheFileManagerOnceToo)
{
    const auto spaced = addPicture("ü b#.jpg", kBlue);
    desktop::Process listener(fileManagerMonitor());
    ASSERT_TRUE(listener.waitForOutput("NameLost") || listener.waitForOutput("NameAcquired"));
    start({"ü b#.jpg"});
    ASSERT_TRUE(waitForPicture("ü b#.jpg", kBlue)) << situation();
    input.control(desktop::key::kKeypadEnter);
    EXPECT_TRUE(listener.waitForOutput("member=ShowItems")) << listener.output();
    EXPECT_TRUE(listener.waitForOutput(uri(folders.pictures()) + "/%C3%BC%20b%23.jpg\"")) << listener.output();
    const std::string heard = listener.output();
    EXPECT_EQ(heard.find("member=ShowItems"), heard.rfind("member=ShowItems")) << heard;
}

TEST_F(InstanceTest, controlReturnWithoutAFileDoesNothing)
{
    desktop::Process listener(fileManagerMonitor());
    ASSERT_TRUE(listener.waitForOutput("NameLost") || listener.waitForOutput("NameAcquired"));
    start();
    input.control(desktop::key::kReturn);
    waitUntilKeysAreDealtWith();
    // What was asked for the file opened next comes first of all.
    EXPECT_EQ(callApplication("Open", {uris({uri(a)}), "{}"}).status, 0);
    ASSERT_TRUE(waitForPicture("a.jpg", kRed)) << situation();
    input.control(desktop::key::kReturn);
    EXPECT_TRUE(listener.waitForOutput("/a.jpg\"")) << listener.output();
    const std::string heard = listener.output();
    EXPECT_EQ(heard.find("member=ShowItems"), heard.rfind("member=ShowItems")) << heard;
}

// A foreign address is refused wherever it stands; the first file is then the first of the list.

TEST_F(InstanceTest, ofSeveralAddressesOverTheBusTheFirstFileCounts)
{
    start();
    EXPECT_EQ(
        callApplication("Open", {uris({"http://localhost/c.jpg", "trash:///c.jpg", uri(b), uri(a)}), "{}"}).status, 0);
    EXPECT_TRUE(waitForPicture("b.jpg", kGreen)) << situation();
}

TEST_F(InstanceTest, ofSeveralAddressesOnTheCommandLineTheFirstFileCounts)
{
    start({"http://localhost/c.jpg", "trash:///c.jpg", "b.jpg", "a.jpg"});
    EXPECT_TRUE(waitForPicture("b.jpg", kGreen)) << situation();
    EXPECT_EQ(program->errors(), "tallowmere: not a file on this computer: http://localhost/c.jpg\n"
                                 "tallowmere: not a file on this computer: trash:///c.jpg\n");
}

TEST_F(InstanceTest, aPngRefusedByAProgramThatTheBusStartedLeavesTheIdleWindow)
{
    writeSettings("PNGSupportEnabled=false\n");
    const auto png = addFile("x.png", photos::makePlainPng(300, 200, {224, 200, 24}));
    installService();
    EXPECT_EQ(callApplication("Open", {uris({uri(png)}), "{}"}).status, 0);
    adoptActivated();
    waitUntilKeysAreDealtWith();
    EXPECT_EQ(windows.title(window), "Tallowmere");
    EXPECT_TRUE(showsNoPicture()) << situation();
}

TEST_F(InstanceTest, withoutAWindowTheProgramEndsWithItsBus)
{
    start({"a.jpg"});
    ASSERT_TRUE(waitForPicture("a.jpg", kRed)) << situation();
    windows.close(window);
    ASSERT_TRUE(waitUntil([&] { return !windows.visible(window); })) << situation();
    EXPECT_TRUE(program->running());
    bus.reset();
    EXPECT_EQ(program->waitForExit(), 0) << situation();
}

TEST_F(InstanceTest, withAWindowTheProgramOutlivesItsBus)
{
    start({"a.jpg"});
    ASSERT_TRUE(waitForPicture("a.jpg", kRed)) << situation();
    bus.reset();
    input.press(desktop::key::kLeft);
    EXPECT_TRUE(waitForPicture("b.jpg", kGreen)) << situation();
    waitUntilKeysAreDealtWith();
    EXPECT_TRUE(program->running());
}

TEST_F(InstanceTest, aPictureOpenedFromThePanelOfAClosedWindowIsThereInItsOwnSizeWhenTheWindowComesBack)
{
    start();
    input.control('o');
    ASSERT_TRUE(waitUntil([&] { return windows.titled("Open").has_value(); })) << situation();
    const auto panel = *windows.titled("Open");
    windows.close(window);
    ASSERT_TRUE(waitUntil([&] { return !windows.visible(window); })) << situation();
    windows.activate(panel);
    ASSERT_TRUE(waitUntil([&] { return windows.hasFocus(panel); })) << situation();
    for (const char each : b.string())
        input.type(each);
    ASSERT_TRUE(waitUntil([&] {
        input.press(desktop::key::kReturn); // the first may be the completion list's
        return waitUntil([&] { return !windows.titled("Open"); }, std::chrono::seconds{1});
    })) << situation();
    EXPECT_TRUE(program->waitForOutput("✅ Successfully loaded 2 files from directory\n")) << situation();
    EXPECT_FALSE(windows.visible(window)) << "it comes back when it is asked for";
    EXPECT_EQ(callApplication("Activate", {"{}"}).status, 0);
    adopt(program->id());
    EXPECT_TRUE(waitForPicture("b.jpg", kGreen)) << situation();
    EXPECT_TRUE(waitUntil([&] { return std::abs(windows.frame(window).width - 640) <= 2; })) << situation();
}

TEST_F(InstanceTest, interruptedFromATerminalTheProgramEnds)
{
    start({"a.jpg"});
    ASSERT_TRUE(waitForPicture("a.jpg", kRed)) << situation();
    ::kill(program->id(), SIGINT);
    EXPECT_TRUE(program->waitForExit());
}

} // namespace tallowmere
