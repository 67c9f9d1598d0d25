// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/e2e/AccessibilityTest.h"

#include <algorithm>

namespace tallowmere {

using desktop::Rectangle;
using desktop::waitUntil;
namespace key = desktop::key;

/// Every control of the Settings window, found and used through the accessibility bus.
class AccessibleSettingsTest : public AccessibilityTest
{
protected:
    void openSettings()
    {
        press("Settings...");
        m_settings = openWindow("Settings");
    }
    [[nodiscard]] Accessible checkBox(const std::string &label) { return waitForControl("check box", label); }
    [[nodiscard]] Accessible waitForControl(const std::string &role, const std::string &name)
    {
        Accessible found = m_settings.find(role, name);
        EXPECT_TRUE(found.exists()) << "no " << role << " called " << name;
        return found;
    }
    [[nodiscard]] Accessible popup(const std::string &label)
    {
        const Accessible found = m_settings.find(
            [&](const Accessible &each) { return each.role() == "combo box" && each.label() == label; });
        EXPECT_TRUE(found.exists()) << "no combo box labelled " << label;
        return found;
    }
    void choose(const Accessible &box, const std::string &item)
    {
        const Accessible list = box.find("list", "");
        const auto items = list.all("list item");
        EXPECT_TRUE(box.perform("ShowMenu"));
        ASSERT_TRUE(waitForState(list, State::showing, true));
        for (std::size_t each = 0; each < items.size(); ++each)
            input.press(key::kUp);
        for (auto each = items.begin(); each != items.end() && each->name() != item; ++each)
            input.press(key::kDown);
        input.press(key::kReturn);
        EXPECT_TRUE(waitUntil([&] { return box.name() == item; })) << box.name();
        EXPECT_TRUE(waitForState(list, State::showing, false));
    }
    void enter(const Accessible &field, const std::string &text)
    {
        EXPECT_TRUE(field.perform("SetFocus"));
        ASSERT_TRUE(waitForState(field, State::focused, true));
        ASSERT_TRUE(field.setText(text));
        input.press(key::kReturn);
    }
    /// Toggles it there and back; @p menuItemName, when there is one, has to follow.
    void expectSwitch(const std::string &label, const std::string &settingsKey, bool before,
                      const std::string &menuItemName = {})
    {
        SCOPED_TRACE(label);
        const Accessible box = checkBox(label);
        EXPECT_EQ(box.is(State::checked), before);
        for (const bool on : {!before, before}) {
            EXPECT_TRUE(box.perform("Toggle"));
            EXPECT_TRUE(waitForState(box, State::checked, on));
            EXPECT_TRUE(waitForSetting(settingsKey + (on ? "=true" : "=false"))) << settings();
            if (!menuItemName.empty()) {
                EXPECT_TRUE(waitForState(menuItem(menuItemName), State::checked, on));
            }
        }
    }

    Accessible m_settings;
};

TEST_F(AccessibleSettingsTest, everyCheckBoxWritesItsSettingAndTheMenuFollows)
{
    startWithPicture();
    openSettings();
    expectSwitch("Keep the app in memory for instant loading", "UseXPCService", false);
    expectSwitch("Support PNG", "PNGSupportEnabled", true);
    expectSwitch("Support WebP", "WebPSupportEnabled", true);
    expectSwitch("Support AVIF", "AVIFSupportEnabled", true);
    expectSwitch("Support HEIC", "HEICSupportEnabled", true);
    expectSwitch("Show file size", "ShowFileSize", true, "Show File Size");
    expectSwitch("Show creation date", "ShowCreationDate", false, "Show Creation Date");
    expectSwitch("Show image resolution", "ShowImageResolution", true, "Show Image Resolution");
    expectSwitch("Show file tag", "ShowFileTag", false, "Show File Tag");
    expectSwitch("Auto-resize window to image size", "AutoResizeToImageSize", true, "Auto-resize Window to Image Size");
    expectSwitch("With animation", "AutoResizeWithAnimation", true);
    EXPECT_EQ(m_settings.all("check box").size(), 11U) << "all of them";
}

TEST_F(AccessibleSettingsTest, theViewerFollowsTheCheckBoxes)
{
    writeSettings("ShowFileSize=false\nAutoResizeToImageSize=false\n");
    startWithPicture();
    openSettings();
    EXPECT_TRUE(waitForPills({"640×480"})) << testing::PrintToString(pills());
    EXPECT_TRUE(checkBox("Show file size").perform("Toggle"));
    EXPECT_TRUE(waitUntil([&] {
        const auto shown = pills();
        return shown.size() == 1 && shown.front().ends_with("KB • 640×480");
    })) << testing::PrintToString(pills());

    EXPECT_NE(imageArea().extents().width, 640);
    EXPECT_TRUE(checkBox("Auto-resize window to image size").perform("Toggle"));
    EXPECT_TRUE(waitUntil([&] { return imageArea().extents().width == 640; })) << situation();
}

TEST_F(AccessibleSettingsTest, aFormatThatIsSwitchedOffIsSteppedOver)
{
    addPicture("c.jpg", kBlue);
    addFile("b.png", photos::makePlainPng(640, 480, {24, 144, 56}));
    startWithPicture();
    openSettings();
    EXPECT_TRUE(checkBox("Support PNG").perform("Toggle"));
    ASSERT_TRUE(waitForSetting("PNGSupportEnabled=false"));
    windows.activate(window);
    ASSERT_TRUE(waitUntil([&] { return windows.hasFocus(window); })) << situation();
    ASSERT_TRUE(waitForState(viewer(), State::focused, true));
    input.press(key::kLeft);
    EXPECT_TRUE(waitForPicture("c.jpg", kBlue)) << situation();
}

TEST_F(AccessibleSettingsTest, thePopupsGoByTheirLabelsAndTakeTheirItems)
{
    addFile("a.png", photos::makeClearPng(600, 400));
    writeSettings("AutoResizeToImageSize=false\nShowFileSize=false\nShowImageResolution=false\n");
    startWith({"a.png"});
    ASSERT_TRUE(waitForTitle("Tallowmere • a.png")) << situation();
    ASSERT_TRUE(waitForState(menuItem("Show in Finder"), State::enabled, true)) << situation();
    openSettings();

    const Accessible place = popup("Show file name at:");
    EXPECT_EQ(place.name(), "in the title");
    choose(place, "in the corner");
    EXPECT_TRUE(waitForSetting("FileNameDisplayLocation=inCorner")) << settings();
    EXPECT_TRUE(waitForTitle("Tallowmere")) << situation();
    EXPECT_TRUE(waitForPills({"a.png"})) << testing::PrintToString(pills());
    EXPECT_TRUE(waitForState(menuItem("In the Corner"), State::checked, true));
    EXPECT_FALSE(menuItem("In the Title").is(State::checked));
    choose(place, "off");
    EXPECT_TRUE(waitForSetting("FileNameDisplayLocation=off")) << settings();
    EXPECT_TRUE(waitForPills({})) << testing::PrintToString(pills());

    const Accessible transparency = popup("Show transparency as:");
    choose(transparency, transparency.name() == "checkers" ? "solid color" : "checkers");
    choose(transparency, "checkers");
    EXPECT_TRUE(waitForSetting("TransparencyBackground=checkers")) << settings();
    // The picture is clear all over: two squares beside each other differ.
    const Rectangle area = imageArea().extents();
    EXPECT_TRUE(waitUntil([&] {
        return !(screen.at({area.x + 5, area.y + 5}) == screen.at({area.x + 15, area.y + 5}));
    })) << situation();
    choose(transparency, "solid color");
    EXPECT_TRUE(waitForSetting("TransparencyBackground=solidColor")) << settings();
    EXPECT_TRUE(waitUntil([&] {
        return screen.at({area.x + 5, area.y + 5}) == screen.at({area.x + 15, area.y + 5});
    })) << situation();
}

TEST_F(AccessibleSettingsTest, aCountOver100IsPutBackAndASmallerOneStays)
{
    startWithPicture();
    openSettings();
    for (const auto &[label, first] : {std::pair{"Files before:", "2"}, std::pair{"Files after:", "20"}}) {
        SCOPED_TRACE(label);
        const Accessible field = waitForControl("text", label);
        EXPECT_EQ(field.text(), first);
        enter(field, "150");
        EXPECT_TRUE(waitUntil([&] { return field.text() == first; })) << field.text();
        enter(field, "7");
        EXPECT_EQ(field.text(), "7");
        enter(field, "");
        EXPECT_TRUE(waitUntil([&] { return field.text() == "7"; })) << "the last one that was taken: " << field.text();
    }
}

TEST_F(AccessibleSettingsTest, whatTheMenuChangesIsSeenInTheOpenWindow)
{
    startWithPicture();
    openSettings();
    const auto follows = [&](const std::string &item, const std::string &label, bool on) {
        press(item);
        EXPECT_TRUE(waitForState(checkBox(label), State::checked, on)) << label;
    };
    follows("Show File Size", "Show file size", false);
    follows("Show Creation Date", "Show creation date", true);
    follows("Show Image Resolution", "Show image resolution", false);
    follows("Show File Tag", "Show file tag", true);
    follows("Small Window", "Auto-resize window to image size", false);
    follows("Fit to Image", "Auto-resize window to image size", true);
    follows("Auto-resize Window to Image Size", "Auto-resize window to image size", false);
    const Accessible place = popup("Show file name at:");
    press("In the Corner");
    EXPECT_TRUE(waitUntil([&] { return place.name() == "in the corner"; })) << place.name();
}

TEST_F(AccessibleSettingsTest, everyControlHasALabel)
{
    startWith();
    openSettings();
    int controls = 0;
    const auto nameless = m_settings.find([&](const Accessible &each) {
        const std::string role = each.role();
        if (role != "check box" && role != "text" && role != "combo box")
            return false;
        ++controls;
        return each.name().empty() || (role != "check box" && each.label().empty());
    });
    EXPECT_FALSE(nameless.exists()) << nameless.described();
    EXPECT_EQ(controls, 15);
    EXPECT_TRUE(m_settings.all("frame").empty()) << "that would be a window within the window";
}

} // namespace tallowmere
