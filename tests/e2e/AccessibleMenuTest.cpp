// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/e2e/AccessibilityTest.h"

#include <algorithm>

namespace tallowmere {

using desktop::Point;
using desktop::Rectangle;
using desktop::waitUntil;

/// Every item of the menu bar, chosen through the accessibility bus.
class AccessibleMenuTest : public AccessibilityTest
{
protected:
    /// Of these items, those with a check mark.
    [[nodiscard]] std::vector<std::string> checkedOf(const std::vector<std::string> &names)
    {
        std::vector<std::string> checked;
        std::ranges::copy_if(names, std::back_inserter(checked),
                             [&](const std::string &name) { return menuItem(name).is(State::checked); });
        return checked;
    }
    [[nodiscard]] bool waitForChecked(const std::vector<std::string> &names, const std::vector<std::string> &expected)
    {
        return waitUntil([&] { return checkedOf(names) == expected; });
    }

    const std::vector<std::string> sizes{"Small Window", "Medium Window", "Large Window", "Fit to Image"};
    const std::vector<std::string> places{"In the Title", "In the Corner", "Off"};
};

TEST_F(AccessibleMenuTest, theMenuBarHoldsTheseItemsInThisOrder)
{
    startWith();
    std::string all;
    for (const Accessible &each : application.all("menu item"))
        all.append(each.name()).append("|");
    EXPECT_EQ(all, "Tallowmere|About Tallowmere|Settings...|Quit Tallowmere|"
                   "File|Open...|Show in Finder|Move to Trash|"
                   "View|Show File Size|Show Creation Date|Show Image Resolution|Show File Tag|"
                   "Auto-resize Window to Image Size|Show File Name|In the Title|In the Corner|Off|"
                   "Window|Close Window|Small Window|Medium Window|Large Window|Fit to Image|"
                   "Help|Keyboard Shortcuts|Manual Page|");
}

TEST_F(AccessibleMenuTest, eachPartOfTheInformationIsSwitchedByItsItem)
{
    writeSettings("ShowFileSize=false\nShowCreationDate=false\nShowImageResolution=true\n");
    startWithPicture();
    EXPECT_TRUE(waitForPills({"640×480"})) << testing::PrintToString(pills());

    const Accessible size = menuItem("Show File Size");
    EXPECT_FALSE(size.is(State::checked));
    press("Show File Size");
    EXPECT_TRUE(waitForState(size, State::checked, true));
    EXPECT_TRUE(waitForSetting("ShowFileSize=true"));
    EXPECT_TRUE(waitUntil([&] { return imageArea().description().ends_with("KB • 640×480"); }));

    const Accessible date = menuItem("Show Creation Date");
    EXPECT_FALSE(date.is(State::checked));
    press("Show Creation Date");
    EXPECT_TRUE(waitForState(date, State::checked, true));
    EXPECT_TRUE(waitForSetting("ShowCreationDate=true"));
    const auto bullets = [&] { return std::ranges::count(imageArea().description(), '\xa2'); }; // of "•"
    EXPECT_TRUE(waitUntil([&] { return bullets() == 2; })) << imageArea().description();

    const Accessible resolution = menuItem("Show Image Resolution");
    for (const char *each : {"Show Image Resolution", "Show File Size", "Show Creation Date"})
        press(each);
    EXPECT_TRUE(waitForState(resolution, State::checked, false));
    EXPECT_TRUE(waitForSetting("ShowImageResolution=false"));
    EXPECT_TRUE(waitForPills({})) << testing::PrintToString(pills());
    EXPECT_TRUE(waitUntil([&] { return imageArea().description().empty(); })) << "what is off isn't read out";
}

TEST_F(AccessibleMenuTest, theNamesPlaceHasExactlyOneCheckMark)
{
    writeSettings("ShowFileSize=false\nShowImageResolution=false\n");
    startWithPicture();
    EXPECT_TRUE(waitForChecked(places, {"In the Title"}));

    press("In the Corner");
    EXPECT_TRUE(waitForChecked(places, {"In the Corner"}));
    EXPECT_TRUE(waitForSetting("FileNameDisplayLocation=inCorner"));
    EXPECT_TRUE(waitForTitle("Tallowmere")) << situation();
    EXPECT_EQ(mainWindow().name(), "Tallowmere");
    EXPECT_TRUE(waitForPills({"a.jpg"})) << testing::PrintToString(pills());

    press("Off");
    EXPECT_TRUE(waitForChecked(places, {"Off"}));
    EXPECT_TRUE(waitForSetting("FileNameDisplayLocation=off"));
    EXPECT_TRUE(waitForPills({})) << testing::PrintToString(pills());
    EXPECT_EQ(windows.title(window), "Tallowmere");
    EXPECT_EQ(imageArea().name(), "a.jpg") << "a screen reader's user still has to know";

    press("In the Title");
    EXPECT_TRUE(waitForChecked(places, {"In the Title"}));
    EXPECT_TRUE(waitForTitle("Tallowmere • a.jpg")) << situation();
    EXPECT_TRUE(waitUntil([&] { return mainWindow().name() == "Tallowmere • a.jpg"; }));
}

TEST_F(AccessibleMenuTest, eachSizeIsTakenAndGetsTheCheckMark)
{
    startWithPicture();
    const Accessible autoResize = menuItem("Auto-resize Window to Image Size");
    EXPECT_TRUE(autoResize.is(State::checked));
    EXPECT_TRUE(waitForChecked(sizes, {}));

    const auto hasFrame = [&](int width, int height) {
        return waitUntil([&] {
            const Rectangle frame = windows.frame(window);
            return frame.width == width && frame.height == height;
        });
    };
    press("Small Window");
    EXPECT_TRUE(hasFrame(600, 400)) << situation();
    EXPECT_TRUE(waitForChecked(sizes, {"Small Window"}));
    EXPECT_TRUE(waitForState(autoResize, State::checked, false));
    EXPECT_TRUE(waitForSetting("AutoResizeToImageSize=false"));
    press("Medium Window");
    EXPECT_TRUE(hasFrame(900, 600)) << situation();
    EXPECT_TRUE(waitForChecked(sizes, {"Medium Window"}));
    press("Large Window");
    const Rectangle area = screenAndKeys.workArea();
    EXPECT_TRUE(hasFrame(area.width - 80, area.height - 80)) << situation();
    EXPECT_TRUE(waitForChecked(sizes, {"Large Window"}));

    press("Fit to Image");
    EXPECT_TRUE(waitUntil([&] { return imageArea().extents().width == 640; })) << situation();
    EXPECT_TRUE(waitForChecked(sizes, {"Fit to Image"}));
    EXPECT_TRUE(waitForState(autoResize, State::checked, true));
    press("Fit to Image");
    EXPECT_TRUE(waitForChecked(sizes, {}));
    EXPECT_TRUE(waitForState(autoResize, State::checked, false));
    EXPECT_TRUE(waitForSetting("AutoResizeToImageSize=false"));
}

TEST_F(AccessibleMenuTest, autoResizeFitsTheWindowAtOnce)
{
    writeSettings("AutoResizeToImageSize=false\n");
    startWithPicture();
    EXPECT_NE(imageArea().extents().width, 640);
    press("Auto-resize Window to Image Size");
    EXPECT_TRUE(waitForState(menuItem("Auto-resize Window to Image Size"), State::checked, true));
    EXPECT_TRUE(waitForSetting("AutoResizeToImageSize=true"));
    EXPECT_TRUE(waitUntil([&] { return imageArea().extents().width == 640; })) << situation();
}

TEST_F(AccessibleMenuTest, withoutAFileTheItemsOnItAreDisabled)
{
    startWith();
    for (const char *each : {"Show in Finder", "Move to Trash"}) {
        const Accessible item = menuItem(each);
        EXPECT_FALSE(item.is(State::enabled)) << each;
    }
    EXPECT_TRUE(menuItem("Open...").is(State::enabled));
}

TEST_F(AccessibleMenuTest, showInFinderAsksTheFileManager)
{
    startWithPicture();
    desktop::Process listener({.arguments = {"dbus-monitor", "--address", bus->address(),
                                             "type='method_call',interface='org.freedesktop.FileManager1'"},
                               .environment = environment,
                               .workingDirectory = {},
                               .user = {}});
    ASSERT_TRUE(listener.waitForOutput("NameLost") || listener.waitForOutput("NameAcquired"));
    press("Show in Finder");
    EXPECT_TRUE(listener.waitForOutput(uri(folders.pictures() / "a.jpg"))) << listener.output();
    EXPECT_NE(listener.output().find("member=ShowItems"), std::string::npos) << listener.output();
}

TEST_F(AccessibleMenuTest, withAllFourFormatSwitchesOffTheOpenPanelOffersJpegFilesOnly)
{
    writeSettings("PNGSupportEnabled=false\nWebPSupportEnabled=false\nAVIFSupportEnabled=false\n"
                  "HEICSupportEnabled=false\n");
    addPicture("B.JPG", kGreen);
    for (const char *name : {"x.png", "x.webp", "x.avif", "x.heic"})
        addFile(name, {});
    startWithPicture();
    press("Open...");
    const Accessible dialog = openWindow("Open");
    EXPECT_TRUE(waitUntil(
        [&] { return dialog.find("tree item", "a.jpg").exists() && dialog.find("tree item", "B.JPG").exists(); }));
    for (const char *name : {"x.png", "x.webp", "x.avif", "x.heic"})
        EXPECT_FALSE(dialog.find("tree item", name).exists()) << name;
}

TEST_F(AccessibleMenuTest, openShowsADialogThroughWhichAFileIsOpened)
{
    addPicture("b.jpg", kGreen);
    startWithPicture();
    press("Open...");
    const Accessible dialog = openWindow("Open");
    EXPECT_EQ(dialog.role(), "dialog");
    ASSERT_TRUE(dialog.find("text", "File name:").setText("b.jpg"));
    const Accessible button = dialog.find("push button", "Open");
    ASSERT_TRUE(waitForState(button, State::enabled, true));
    EXPECT_TRUE(button.perform("Press"));
    EXPECT_TRUE(waitForPicture("b.jpg", kGreen)) << situation();
    EXPECT_TRUE(waitUntil([&] { return imageArea().name() == "b.jpg"; }));
    EXPECT_EQ(openWindows(), std::vector<std::string>{"Tallowmere • b.jpg"});
}

TEST_F(AccessibleMenuTest, quitEndsTheProgram)
{
    startWithPicture();
    press("Quit Tallowmere");
    EXPECT_EQ(program->waitForExit(), 0) << program->errors();
}

} // namespace tallowmere
