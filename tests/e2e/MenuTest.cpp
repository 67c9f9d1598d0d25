// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/desktop/Accessibility.h"
#include "tests/desktop/AppMenuRegistrar.h"
#include "tests/e2e/OtherWindowsTest.h"

#include <cstdlib>

namespace tallowmere {

using desktop::Accessible;
using desktop::AppMenuRegistrar;
using desktop::waitUntil;
using desktop::WindowId;
namespace key = desktop::key;

/// The menu bar in the window, by mouse and by key; what stands in it is read as a screen reader would.
class MenuTest : public OtherWindowsTest
{
protected:
    using State = Accessible::State;

    MenuTest() : m_accessibility(*bus, environment) { setEnvironment("QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1"); }

    void startWith(const std::vector<std::string> &files = {})
    {
        start(files);
        const auto found = m_accessibility.application(program->id());
        ASSERT_TRUE(found) << situation();
        m_application = *found;
    }
    void startWithPicture()
    {
        addPicture("a.jpg", kRed);
        startWith({"a.jpg"});
        ASSERT_TRUE(waitForPicture("a.jpg", kRed)) << situation();
    }
    [[nodiscard]] Accessible item(const std::string &text) const { return m_application.find("menu item", text); }
    [[nodiscard]] Accessible box(const std::string &text) const { return m_application.find("check box", text); }
    [[nodiscard]] bool becomes(const Accessible &object, State state, bool expected = true) const
    {
        return waitUntil([&] { return object.exists() && object.is(state) == expected; });
    }
    void clickOn(const Accessible &object)
    {
        ASSERT_TRUE(waitUntil([&] { return object.is(State::showing) && object.extents().width > 0; }))
            << object.name() << '\n'
            << m_application.described();
        input.click(object.extents().centre());
    }
    /// With the mouse: the menu's title, then the item.
    void choose(const std::string &menu, const std::string &text)
    {
        clickOn(item(menu));
        clickOn(item(text));
    }
    [[nodiscard]] bool waitForSetting(const std::string &line)
    {
        return waitUntil([&] { return settings().find(line + "\n") != std::string::npos; });
    }

private:
    desktop::AccessibilityBus m_accessibility;

protected:
    Accessible m_application;
};

TEST_F(MenuTest, withNoFileOpenShowInFinderAndMoveToTrashAreDisabledAndTheirKeysDoNothing)
{
    startWith();
    input.control(key::kBackspace);
    input.control(key::kKeypadEnter);
    waitUntilKeysAreDealtWith();
    EXPECT_EQ(windows.ofProcess(program->id()).size(), 1U) << "no message either\n" << situation();
    clickOn(item("File"));
    EXPECT_TRUE(becomes(item("Show in Finder"), State::showing));
    EXPECT_FALSE(item("Show in Finder").is(State::enabled));
    EXPECT_FALSE(item("Move to Trash").is(State::enabled));
    EXPECT_TRUE(item("Open...").is(State::enabled));
}

TEST_F(MenuTest, withAFileOpenBothAreEnabledWhenTheMenuOpens)
{
    startWithPicture();
    clickOn(item("File"));
    EXPECT_TRUE(becomes(item("Show in Finder"), State::enabled));
    EXPECT_TRUE(becomes(item("Move to Trash"), State::enabled));
}

TEST_F(MenuTest, aToggleIsMarkedAndWrittenByTheMouse)
{
    startWithPicture();
    EXPECT_FALSE(item("Show Creation Date").is(State::checked));
    choose("View", "Show Creation Date");
    EXPECT_TRUE(waitForSetting("ShowCreationDate=true")) << situation();
    EXPECT_TRUE(becomes(item("Show Creation Date"), State::checked));
    choose("View", "Show Creation Date");
    EXPECT_TRUE(waitForSetting("ShowCreationDate=false")) << situation();
    EXPECT_TRUE(becomes(item("Show Creation Date"), State::checked, false));
}

TEST_F(MenuTest, choosingInTheCornerUnchecksInTheTitleAndOff)
{
    startWithPicture();
    EXPECT_TRUE(item("In the Title").is(State::checked));
    clickOn(item("View"));
    clickOn(item("Show File Name"));
    clickOn(item("In the Corner"));
    EXPECT_TRUE(waitForTitle("Tallowmere")) << situation();
    EXPECT_TRUE(becomes(item("In the Corner"), State::checked));
    EXPECT_FALSE(item("In the Title").is(State::checked));
    EXPECT_FALSE(item("Off").is(State::checked));
    EXPECT_TRUE(waitForSetting("FileNameDisplayLocation=inCorner")) << situation();
}

TEST_F(MenuTest, fitToImageTwiceSwitchesAutomaticResizingOnAndOffAgainAndLeavesNoMark)
{
    writeSettings("AutoResizeToImageSize=false\nAutoResizeWithAnimation=false\n");
    startWithPicture();
    choose("Window", "Fit to Image");
    EXPECT_TRUE(waitForSetting("AutoResizeToImageSize=true")) << situation();
    EXPECT_TRUE(becomes(item("Fit to Image"), State::checked));
    const auto middle = screenAndKeys.workArea().centre();
    EXPECT_TRUE(waitUntil([&] {
        const auto fitted = windows.frame(window);
        return std::abs(fitted.width - 640) <= 2 && std::abs(fitted.centre().y - middle.y) <= 1;
    })) << situation();
    const auto frame = windows.frame(window);
    windows.moveAndResize(window, {frame.x, frame.y, 700, 500});
    ASSERT_TRUE(waitUntil([&] { return windows.contents(window).width == 700; })) << situation();
    choose("Window", "Fit to Image");
    EXPECT_TRUE(waitForSetting("AutoResizeToImageSize=false")) << situation();
    for (const char *size : {"Small Window", "Medium Window", "Large Window", "Fit to Image"})
        EXPECT_TRUE(becomes(item(size), State::checked, false)) << size;
    EXPECT_EQ(windows.contents(window).width, 700) << "not resized\n" << situation();
}

TEST_F(MenuTest, smallWindowSwitchesAutomaticResizingOffInMenuAndSettings)
{
    startWithPicture();
    input.control(',');
    waitForWindow("Settings");
    EXPECT_TRUE(becomes(box("Auto-resize window to image size"), State::checked)) << m_application.described();
    switchTo(window);
    choose("Window", "Small Window");
    EXPECT_TRUE(waitUntil([&] {
        const auto frame = windows.frame(window);
        return frame.width == 600 && frame.height == 400;
    })) << situation();
    EXPECT_TRUE(becomes(box("Auto-resize window to image size"), State::checked, false));
    EXPECT_TRUE(becomes(item("Auto-resize Window to Image Size"), State::checked, false));
    EXPECT_TRUE(becomes(item("Small Window"), State::checked));
}

TEST_F(MenuTest, aToggleInTheMenuTicksTheBoxInSettingsAndTheOtherWayRound)
{
    startWithPicture();
    input.control(',');
    waitForWindow("Settings");
    clickOn(box("Show creation date"));
    EXPECT_TRUE(waitForSetting("ShowCreationDate=true")) << situation();
    EXPECT_TRUE(becomes(item("Show Creation Date"), State::checked));
    switchTo(window);
    choose("View", "Show Creation Date");
    EXPECT_TRUE(becomes(box("Show creation date"), State::checked, false));
}

TEST_F(MenuTest, closeWindowWithTheSettingsWindowInFrontClosesThatOneAndNotTheViewer)
{
    startWithPicture();
    choose("Tallowmere", "Settings...");
    waitForWindow("Settings");
    input.control('w');
    EXPECT_TRUE(waitUntilGone("Settings")) << situation();
    EXPECT_TRUE(windows.visible(window)) << situation();
    EXPECT_TRUE(waitForPicture("a.jpg", kRed)) << situation();
}

TEST_F(MenuTest, moveToTrashByKeyAndByMouseBinsOneFileEach)
{
    addPicture("a.jpg", kRed);
    addPicture("b.jpg", kGreen);
    addPicture("c.jpg", kBlue);
    startWith({"a.jpg"});
    ASSERT_TRUE(waitForPicture("a.jpg", kRed)) << situation();
    input.control(key::kBackspace);
    EXPECT_TRUE(waitForPicture("b.jpg", kGreen)) << situation();
    EXPECT_FALSE(std::filesystem::exists(folders.pictures() / "a.jpg"));
    choose("File", "Move to Trash");
    EXPECT_TRUE(waitForPicture("c.jpg", kBlue)) << situation();
    EXPECT_FALSE(std::filesystem::exists(folders.pictures() / "b.jpg"));
    EXPECT_TRUE(std::filesystem::exists(folders.pictures() / "c.jpg"));
}

/// A desktop that shows the menu bar in a panel of its own.
class ExportedMenuTest : public E2ETest
{
protected:
    ExportedMenuTest() : registrar(bus->address()) {}

    void startExported(const std::vector<std::string> &files = {})
    {
        start(files);
        ASSERT_TRUE(waitUntil([&] { return registrar.menu().has_value(); })) << situation();
        // The bar is announced before it is on the bus, and filled last.
        ASSERT_TRUE(waitUntil([&] { return !entry("Manual Page").empty(); })) << layout();
    }
    [[nodiscard]] desktop::Finished call(const std::string &method, const std::vector<std::string> &arguments) const
    {
        // The one registered last: a window that gets its menu before it is shown registers twice.
        const auto menu = registrar.menu().value();
        return bus->call(menu.owner, menu.path, "com.canonical.dbusmenu." + method, arguments);
    }
    /// The whole menu as text, or why there is none.
    [[nodiscard]] std::string layout() const
    {
        constexpr const char *kLevels = "9"; // there are fewer
        const auto answer = call("GetLayout", {"0", kLevels, "[]"});
        return answer.output + answer.errors;
    }
    /// An item as the layout has it, "<(5, {…": its number and its properties. Empty when there is none.
    [[nodiscard]] static std::string entry(const std::string &all, const std::string &label)
    {
        const auto at = all.find("'label': <'" + label + "'>");
        const auto begin = at == std::string::npos ? at : all.rfind("<(", at);
        return begin == std::string::npos ? std::string() : all.substr(begin + 2, all.find('}', at) - begin - 2);
    }
    [[nodiscard]] std::string entry(const std::string &label) const { return entry(layout(), label); }
    [[nodiscard]] int identifier(const std::string &label) const
    {
        const std::string found = entry(label);
        EXPECT_FALSE(found.empty()) << label << '\n' << layout();
        return std::atoi(found.c_str());
    }
    void choose(const std::string &label) const
    {
        EXPECT_EQ(call("Event", {std::to_string(identifier(label)), "clicked", "<0>", "0"}).status, 0) << label;
    }
    /// What the panel asks before it shows a menu.
    void aboutToShow(const std::string &menu) const
    {
        EXPECT_EQ(call("AboutToShow", {std::to_string(identifier(menu))}).status, 0) << menu;
    }
    [[nodiscard]] bool contains(const std::string &label, const std::string &property) const
    {
        return waitUntil([&] { return entry(label).find(property) != std::string::npos; });
    }

    AppMenuRegistrar registrar;
};

TEST_F(ExportedMenuTest, everyItemIsExportedAndTheWindowHasNoMenuBarOfItsOwn)
{
    startExported();
    const std::string all = layout();
    for (const char *label : {"_Tallowmere",
                              "About Tallowmere",
                              "Settings...",
                              "Quit Tallowmere",
                              "_File",
                              "Open...",
                              "Show in Finder",
                              "Move to Trash",
                              "_View",
                              "Show File Size",
                              "Show Creation Date",
                              "Show Image Resolution",
                              "Show File Tag",
                              "Auto-resize Window to Image Size",
                              "Show File Name",
                              "In the Title",
                              "In the Corner",
                              "Off",
                              "_Window",
                              "Close Window",
                              "Small Window",
                              "Medium Window",
                              "Large Window",
                              "Fit to Image",
                              "_Help",
                              "Keyboard Shortcuts",
                              "Manual Page"})
        EXPECT_FALSE(entry(all, label).empty()) << label << '\n' << all;
    EXPECT_TRUE(waitUntil([&] { return windows.contents(window).height == 400; })) << situation();
    EXPECT_EQ(windows.contents(window).width, 600);
}

TEST_F(ExportedMenuTest, anItemChosenThereHasItsEffect)
{
    addPicture("a.jpg", kRed);
    startExported({"a.jpg"});
    ASSERT_TRUE(waitForPicture("a.jpg", kRed)) << situation();
    choose("Medium Window");
    EXPECT_TRUE(waitUntil([&] {
        const auto frame = windows.frame(window);
        return frame.width == 900 && frame.height == 600;
    })) << situation();
    EXPECT_TRUE(contains("Medium Window", "'toggle-state': <1>")) << layout();
    EXPECT_TRUE(contains("Auto-resize Window to Image Size", "'toggle-state': <0>")) << layout();
    choose("About Tallowmere");
    EXPECT_TRUE(waitUntil([&] { return windows.titled("About Tallowmere").has_value(); })) << situation();
}

TEST_F(ExportedMenuTest, theItemsOnTheFileAreEnabledAsSoonAsThereIsOne)
{
    const auto file = addPicture("a.jpg", kRed);
    startExported();
    aboutToShow("_File");
    EXPECT_TRUE(contains("Move to Trash", "'enabled': <false>")) << layout();
    EXPECT_TRUE(contains("Show in Finder", "'enabled': <false>")) << layout();
    ASSERT_EQ(callApplication("Open", {uris({uri(file)}), "{}"}).status, 0);
    ASSERT_TRUE(waitForPicture("a.jpg", kRed)) << situation();
    aboutToShow("_File");
    EXPECT_TRUE(contains("Move to Trash", "'enabled': <true>")) << layout();
    EXPECT_TRUE(contains("Show in Finder", "'enabled': <true>")) << layout();
}

TEST_F(ExportedMenuTest, theKeysStillWorkInTheWindow)
{
    startExported();
    input.control('2');
    EXPECT_TRUE(waitUntil([&] { return windows.frame(window).width == 900; })) << situation();
    input.control('w');
    EXPECT_TRUE(waitUntil([&] { return !windows.titled("Tallowmere"); })) << situation();
    EXPECT_TRUE(program->running());
}

TEST_F(ExportedMenuTest, quitChosenThereEndsTheProgram)
{
    startExported();
    // It may be gone before it answers.
    static_cast<void>(call("Event", {std::to_string(identifier("Quit Tallowmere")), "clicked", "<0>", "0"}));
    EXPECT_EQ(program->waitForExit(), 0) << situation();
}

} // namespace tallowmere
