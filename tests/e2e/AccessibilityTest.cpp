// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/e2e/AccessibilityTest.h"

#include "tests/e2e/TaggedFile.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <iostream>

namespace tallowmere {

using desktop::waitUntil;
namespace key = desktop::key;

AccessibilityTest::AccessibilityTest(std::optional<uid_t> user) : E2ETest(user), accessibility(*bus, environment, user)
{
    // What a desktop does when a screen reader is started.
    setEnvironment("QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1");
}

void AccessibilityTest::TearDown()
{
    E2ETest::TearDown();
    if (HasFailure() && program && program->running())
        std::cout << application.described();
}

void AccessibilityTest::startWith(const std::vector<std::string> &files)
{
    start(files);
    const auto found = accessibility.application(program->id());
    ASSERT_TRUE(found) << situation();
    application = *found;
}

void AccessibilityTest::startWithPicture()
{
    addPicture("a.jpg", kRed);
    startWith({"a.jpg"});
    ASSERT_TRUE(waitForPicture("a.jpg", kRed)) << situation();
    // A step and the menu's items wait for the listing; whoever looks from outside sees it by these.
    ASSERT_TRUE(waitForState(menuItem("Show in Finder"), State::enabled, true)) << situation();
}

desktop::Accessible AccessibilityTest::waitFor(const std::string &role, const std::string &name)
{
    Accessible found;
    EXPECT_TRUE(waitUntil([&] {
        found = application.find(role, name);
        return found.exists();
    })) << "no "
        << role << " called " << name;
    return found;
}

desktop::Accessible AccessibilityTest::menuItem(const std::string &name)
{
    const auto known = m_menuItems.find(name);
    return known == m_menuItems.end() ? m_menuItems[name] = waitFor("menu item", name) : known->second;
}

desktop::Accessible AccessibilityTest::openWindow(const std::string &title)
{
    Accessible found;
    EXPECT_TRUE(waitUntil([&] {
        const auto all = application.children();
        const auto named = std::ranges::find_if(
            all, [&](const Accessible &each) { return each.name() == title && each.is(State::showing); });
        found = named == all.end() ? Accessible() : *named;
        const auto onScreen = windows.titled(title);
        return named != all.end() && onScreen && windows.hasFocus(*onScreen);
    })) << "no window called "
        << title << '\n'
        << situation();
    return found;
}

void AccessibilityTest::press(const std::string &menuItemName)
{
    EXPECT_TRUE(menuItem(menuItemName).perform("Press")) << menuItemName;
}

std::vector<std::string> AccessibilityTest::openWindows() const
{
    std::vector<std::string> titles;
    for (const Accessible &each : application.children()) {
        if (each.is(State::showing))
            titles.push_back(each.name());
    }
    return titles;
}

desktop::Accessible AccessibilityTest::mainWindow() const
{
    for (const Accessible &each : application.children()) {
        if (each.role() == "frame" && each.name().starts_with("Tallowmere"))
            return each;
    }
    return {};
}

desktop::Accessible AccessibilityTest::viewer() const
{
    for (const Accessible &each : mainWindow().children()) {
        if (each.role() == "panel")
            return each;
    }
    return {};
}

desktop::Accessible AccessibilityTest::imageArea() const
{
    for (const Accessible &each : viewer().children()) {
        if (each.role() == "graphic")
            return each;
    }
    return {};
}

std::vector<std::string> AccessibilityTest::pills() const
{
    std::vector<std::string> texts;
    for (const Accessible &each : viewer().children()) {
        if (each.role() == "label" && each.is(State::showing))
            texts.push_back(each.name());
    }
    return texts;
}

bool AccessibilityTest::waitForState(const Accessible &object, State state, bool on)
{
    return waitUntil([&] { return object.exists() && object.is(state) == on; });
}

bool AccessibilityTest::waitForSetting(const std::string &line) const
{
    return waitUntil([&] { return settings().find('\n' + line + '\n') != std::string::npos; });
}

bool AccessibilityTest::waitForPills(const std::vector<std::string> &texts) const
{
    return waitUntil([&] { return pills() == texts; });
}

TEST_F(AccessibilityTest, theImageAreaIsAGraphicWithTheFilesNameAndWhatThePillSays)
{
    addPicture("b.jpg", kGreen, 320, 240);
    startWithPicture();
    ASSERT_TRUE(waitUntil([&] { return !imageArea().description().empty(); }));
    const Accessible image = imageArea();
    EXPECT_EQ(image.name(), "a.jpg");
    EXPECT_TRUE(image.description().ends_with(" • 640×480")) << image.description();
    EXPECT_TRUE(waitForPills({image.description()})) << testing::PrintToString(pills());
    EXPECT_TRUE(waitUntil([&] {
        const auto area = image.extents();
        return area.width == 640 && area.height == 480 && alike(screen.at(area.centre()), kRed);
    })) << situation();

    const auto before = image.description();
    input.press(key::kLeft);
    ASSERT_TRUE(waitForPicture("b.jpg", kGreen)) << situation();
    EXPECT_TRUE(waitUntil([&] { return image.name() == "b.jpg" && image.description() != before; }));
    EXPECT_TRUE(image.description().ends_with(" • 320×240")) << image.description();
    EXPECT_TRUE(waitForPills({image.description()})) << testing::PrintToString(pills());
}

TEST_F(AccessibilityTest, whatHasTheFocusGoesByThePicturesName)
{
    addPicture("b.jpg", kGreen);
    startWithPicture();
    EXPECT_TRUE(waitForState(viewer(), State::focused, true));
    EXPECT_EQ(viewer().name(), "a.jpg");
    input.press(key::kLeft);
    EXPECT_TRUE(waitUntil([&] { return viewer().name() == "b.jpg"; }));
}

TEST_F(AccessibilityTest, withoutAPictureTheIdleScreenIsReadOut)
{
    startWith();
    const std::string howToBegin = "Double-click an image in Finder to open, or drop it here";
    EXPECT_TRUE(waitForState(waitFor("label", howToBegin), State::showing, true));
    EXPECT_TRUE(waitForState(waitFor("graphic", "Tallowmere logo"), State::showing, true));
    EXPECT_EQ(viewer().name(), howToBegin) << "it has the focus";
    EXPECT_EQ(imageArea().name(), "");
    EXPECT_EQ(imageArea().description(), "");
    EXPECT_EQ(pills(), std::vector<std::string>());
    EXPECT_EQ(mainWindow().name(), "Tallowmere");
}

TEST_F(AccessibilityTest, aClosedWindowForgetsItsPicture)
{
    startWithPicture();
    press("Close Window");
    EXPECT_TRUE(waitUntil([&] { return !windows.visible(window); })) << situation();
    EXPECT_TRUE(waitUntil([&] { return imageArea().name().empty() && imageArea().description().empty(); }));
    EXPECT_TRUE(waitForState(menuItem("Show in Finder"), State::enabled, false));
    EXPECT_TRUE(program->running());
}

TEST_F(AccessibilityTest, theTagCircleGoesByTheLabelsName)
{
    const TaggedFile file(addPicture("a.jpg", kRed), "holiday,Red");
    if (!file.tagged())
        GTEST_SKIP() << file.whyNot();
    writeSettings("ShowFileTag=true\n");
    startWith({"a.jpg"});
    ASSERT_TRUE(waitForPicture("a.jpg", kRed)) << situation();
    const Accessible circle = waitFor("label", "Red");
    EXPECT_TRUE(waitForState(circle, State::showing, true));
    press("Show File Tag");
    EXPECT_TRUE(waitForState(circle, State::showing, false));
    EXPECT_TRUE(waitForSetting("ShowFileTag=false"));
}

TEST_F(AccessibilityTest, onlyTheCreationDateOnAFileSystemWithoutCreationDatesReadsUnknown)
{
    const std::filesystem::path undated = "/proc/version";
    struct statx found = {};
    ASSERT_EQ(::statx(AT_FDCWD, undated.c_str(), 0, STATX_BTIME, &found), 0);
    if ((found.stx_mask & STATX_BTIME) != 0)
        GTEST_SKIP() << "this kernel dates the creation of " << undated;
    std::filesystem::create_symlink(undated, folders.pictures() / "a.png");
    writeSettings("ShowFileSize=false\nShowImageResolution=false\nShowCreationDate=true\n");
    startWith({"a.png"});
    EXPECT_TRUE(waitForPills({"Unknown"})) << testing::PrintToString(pills());
}

TEST_F(AccessibilityTest, anImageThatReportsAWidthOfZeroHasSizeAndDateStillJoined)
{
    auto bytes = photos::makePlainPng(600, 400, {255, 255, 255});
    constexpr std::ptrdiff_t kWidth = 16; // behind the signature, the chunk's length and its name
    std::fill_n(bytes.begin() + kWidth, 4, std::byte{0});
    addFile("a.png", bytes);
    writeSettings("ShowFileSize=true\nShowImageResolution=true\nShowCreationDate=true\n");
    startWith({"a.png"});
    std::string text;
    ASSERT_TRUE(waitUntil([&] {
        const auto shown = pills();
        text = shown.size() == 1 ? shown.front() : std::string();
        return !text.empty();
    })) << testing::PrintToString(pills());
    const std::string joint = " • ";
    const auto first = text.find(joint);
    ASSERT_NE(first, std::string::npos) << text;
    EXPECT_GT(first, 0U) << text;
    EXPECT_EQ(text.find(joint, first + 1), std::string::npos) << text;
    EXPECT_FALSE(text.ends_with(joint)) << text;
    EXPECT_EQ(text.find("×"), std::string::npos) << text;
}

} // namespace tallowmere
