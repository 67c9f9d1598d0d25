// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/e2e/SettingsTest.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace tallowmere {

using desktop::Rectangle;
using desktop::waitUntil;
using testing::ElementsAre;
using testing::IsEmpty;
namespace key = desktop::key;

TEST_F(SettingsTest, theWindowDoesNotExistBeforeItIsAskedForAndThenOnce)
{
    startWithPicture();
    const auto existing = [this] {
        const auto all = application.children();
        return std::ranges::count_if(all, [](const Accessible &each) { return each.name() == "Settings"; });
    };
    EXPECT_EQ(existing(), 0);
    openSettings();
    EXPECT_EQ(existing(), 1);
    closeSettings();
    openSettings();
    EXPECT_EQ(existing(), 1);
}

TEST_F(SettingsTest, theWindowHoldsEverySettingAsItIsForAFreshUser)
{
    startWith();
    openSettings();
    std::vector<std::string> boxes;
    for (const Accessible &each : settingsWindow.all("check box"))
        boxes.push_back((each.is(State::checked) ? "[x] " : "[ ] ") + each.name());
    EXPECT_THAT(boxes, ElementsAre("[ ] Keep the app in memory for instant loading", "[x] Support PNG",
                                   "[x] Support WebP", "[x] Support AVIF", "[x] Support HEIC", "[x] Show file size",
                                   "[ ] Show creation date", "[x] Show image resolution", "[ ] Show file tag",
                                   "[x] Auto-resize window to image size", "[x] With animation"));
    EXPECT_EQ(filesBefore().text(), "2");
    EXPECT_EQ(control("text", "Files after:").text(), "20");
    EXPECT_TRUE(control("combo box", "in the title").exists());
    EXPECT_TRUE(control("combo box", "solid color").exists());
    const Rectangle contents = windows.contents(settingsId);
    EXPECT_GE(contents.width, 500);
    EXPECT_GE(contents.height, 390);
}

TEST_F(SettingsTest, controlWClosesOnlyTheSettingsWindowWhateverHasTheFocus)
{
    startWithPicture();
    for (const int tabs : {0, 1, 4, 14}) {
        openSettings();
        for (int i = 0; i < tabs; ++i)
            input.press(key::kTab);
        closeSettings();
        EXPECT_TRUE(windows.visible(window)) << tabs;
        EXPECT_EQ(windows.title(window), "Tallowmere • a.jpg");
    }
}

TEST_F(SettingsTest, controlWClosesTheSettingsWindowWhenTheMainWindowIsClosed)
{
    startWith();
    openSettings();
    windows.close(window);
    ASSERT_TRUE(waitUntil([&] { return !windows.visible(window) && windows.hasFocus(settingsId); })) << situation();
    input.control('w');
    EXPECT_TRUE(waitUntil([&] { return !windows.titled("Settings"); })) << situation();
    EXPECT_TRUE(program->running());
}

TEST_F(SettingsTest, onlyNumbersCanBeTypedAndLeavingTheFieldCommits)
{
    startWith();
    openSettings();
    const Accessible field = filesBefore();
    tabTo(field, 1);
    type("1x2-");
    EXPECT_TRUE(waitForText(field, "12")) << field.text();
    input.press(key::kLeft);
    input.type('b');
    input.type('0');
    EXPECT_TRUE(waitForText(field, "102")) << field.text();
    input.press(key::kTab);
    EXPECT_TRUE(waitForText(field, "2")) << "102 are too many";
}

TEST_F(SettingsTest, turningSupportPngOffWhileAPngIsShownRebuildsTheListWithoutPngFiles)
{
    addFile("a.png", photos::makePlainPng(300, 200, {224, 200, 24}));
    addPicture("b.jpg", kGreen);
    addFile("c.png", photos::makePlainPng(300, 200, {224, 200, 24}));
    addPicture("d.jpg", kBlue);
    addPicture("e.jpg", kRed);
    startWith({"a.png"});
    ASSERT_TRUE(waitForPicture("a.png", kYellow)) << situation();
    ASSERT_TRUE(program->waitForOutput("✅ Successfully loaded 5 files from directory\n")) << situation();
    openSettings();
    click(checkbox("Support PNG"));
    EXPECT_TRUE(waitForSetting("PNGSupportEnabled=false")) << situation();
    closeSettings();
    EXPECT_TRUE(waitForPicture("a.png", kYellow)) << "what is shown stays\n" << situation();
    // The list is now b.jpg, d.jpg and e.jpg, and its first is the current one.
    input.press(key::kLeft);
    EXPECT_TRUE(waitForPicture("d.jpg", kBlue)) << situation();
    input.press(key::kLeft);
    EXPECT_TRUE(waitForPicture("e.jpg", kRed)) << situation();
    input.press(key::kLeft);
    EXPECT_TRUE(waitForPicture("b.jpg", kGreen)) << situation();
}

TEST_F(SettingsTest, changingShowFileNameAtToInTheCornerMakesTheTitleTallowmereAndThePillAppears)
{
    writeSettings("ShowFileSize=false\nShowImageResolution=false\n");
    startWithPicture();
    EXPECT_THAT(pills(), IsEmpty());
    openSettings();
    tabTo(control("combo box", "in the title"), 14);
    input.press(key::kDown);
    EXPECT_TRUE(waitForSetting("FileNameDisplayLocation=inCorner")) << situation();
    EXPECT_TRUE(waitForTitle("Tallowmere")) << situation();
    EXPECT_TRUE(waitForPills({"a.jpg"})) << testing::PrintToString(pills());
    EXPECT_TRUE(waitForChecked("In the Corner", true));
    EXPECT_TRUE(waitForChecked("In the Title", false));
    input.press(key::kDown);
    EXPECT_TRUE(waitForSetting("FileNameDisplayLocation=off"));
    EXPECT_TRUE(waitForPills({})) << testing::PrintToString(pills());
    EXPECT_TRUE(waitForChecked("Off", true));
}

TEST_F(SettingsTest, theInformationFollowsItsCheckBoxesAndSoDoesTheMenu)
{
    writeSettings("ShowFileSize=false\nShowImageResolution=false\n");
    startWithPicture();
    openSettings();
    click(checkbox("Show image resolution"));
    EXPECT_TRUE(waitForSetting("ShowImageResolution=true")) << situation();
    EXPECT_TRUE(waitForPills({"640×480"})) << testing::PrintToString(pills());
    EXPECT_TRUE(waitForChecked("Show Image Resolution", true));
    click(checkbox("Show file tag"));
    EXPECT_TRUE(waitForSetting("ShowFileTag=true")) << situation();
    EXPECT_TRUE(waitForChecked("Show File Tag", true));
    press("Show Image Resolution");
    EXPECT_TRUE(waitForState(checkbox("Show image resolution"), State::checked, false)) << "as the menu says";
    EXPECT_TRUE(waitForPills({})) << testing::PrintToString(pills());
}

TEST_F(SettingsTest, turningAutoResizeOnFitsTheWindowToTheImage)
{
    writeSettings("AutoResizeToImageSize=false\nAutoResizeWithAnimation=false\n");
    startWithPicture();
    openSettings();
    click(checkbox("Auto-resize window to image size"));
    EXPECT_TRUE(waitForSetting("AutoResizeToImageSize=true")) << situation();
    EXPECT_TRUE(waitForChecked("Auto-resize Window to Image Size", true));
    EXPECT_TRUE(waitUntil([&] {
        const Rectangle area = imageArea().extents();
        return area.width == 640 && area.height == 480;
    })) << situation();
}

TEST_F(SettingsTest, turningTheTransparencyToCheckersShowsThem)
{
    writeSettings("AutoResizeToImageSize=false\nShowFileSize=false\nShowImageResolution=false\n");
    addFile("clear.png", photos::makeClearPng(400, 300));
    startWith({"clear.png"});
    ASSERT_TRUE(waitForTitle("Tallowmere • clear.png")) << situation();
    const Rectangle main = windows.contents(window);
    const Rectangle middle{main.centre().x - 20, main.centre().y - 20, 40, 40};
    const auto uniform = [&] {
        const auto seen = screen.capture(middle);
        return std::ranges::all_of(seen.pixels, [&](const auto &pixel) { return pixel == seen.pixels.front(); });
    };
    ASSERT_TRUE(waitUntil(uniform));
    openSettings();
    // Out of the picture's way, that both are seen.
    windows.moveAndResize(settingsId, {screenAndKeys.workArea().x, screenAndKeys.workArea().y, 500, 390});
    tabTo(control("combo box", "solid color"), 15);
    input.press(key::kDown);
    EXPECT_TRUE(waitForSetting("TransparencyBackground=checkers")) << situation();
    windows.activate(window);
    EXPECT_TRUE(waitUntil([&] { return !uniform(); })) << situation();
}

TEST_F(SettingsTest, aSettingsFileOfNonsenseShowsWhatTheProgramMakesOfIt)
{
    writeSettings("PNGSupportEnabled=maybe\nUseXPCService=YES\n"
                  "ShowFileSize=1, 2\n"
                  "ShowFileTag=[1,2\nWebPSupportEnabled=@Variant(\\0\\0)\nAutoResizeToImageSize=-1\n"
                  "FileNameDisplayLocation=InCorner\nTransparencyBackground=checker\n");
    startWith();
    openSettings();
    EXPECT_FALSE(checkbox("Support PNG").is(State::checked));
    EXPECT_TRUE(checkbox("Support WebP").is(State::checked)) << "a value that can't be read counts as none";
    EXPECT_FALSE(checkbox("Show file size").is(State::checked));
    EXPECT_FALSE(checkbox("Show file tag").is(State::checked));
    EXPECT_FALSE(checkbox("Auto-resize window to image size").is(State::checked));
    EXPECT_TRUE(checkbox("Keep the app in memory for instant loading").is(State::checked));
    EXPECT_TRUE(control("combo box", "in the title").exists());
    EXPECT_TRUE(control("combo box", "solid color").exists());
    click(checkbox("Support PNG"));
    EXPECT_TRUE(waitForSetting("PNGSupportEnabled=true")) << situation();
}

TEST_F(SettingsTest, atScaleTwoTheWindowIsTwiceAsLarge)
{
    setEnvironment("QT_SCALE_FACTOR", "2");
    start();
    input.control(',');
    ASSERT_TRUE(waitUntil([&] {
        settingsId = windows.titled("Settings").value_or(0);
        return settingsId != 0 && windows.hasFocus(settingsId);
    })) << situation();
    const Rectangle contents = windows.contents(settingsId);
    EXPECT_GE(contents.width, 1000);
    EXPECT_GE(contents.height, 780);
}

} // namespace tallowmere
