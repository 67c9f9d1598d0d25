// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/e2e/AccessibilityTest.h"

#include <algorithm>
#include <filesystem>

namespace tallowmere {

using desktop::waitUntil;
namespace key = desktop::key;

/// The windows beside the viewer's, and the alerts.
class AccessibleWindowsTest : public AccessibilityTest
{
protected:
    [[nodiscard]] bool waitForOpenWindows(std::vector<std::string> titles) const
    {
        std::ranges::sort(titles);
        return waitUntil([&] {
            auto open = openWindows();
            std::ranges::sort(open);
            return open == titles;
        });
    }
    [[nodiscard]] static std::vector<std::string> namesOf(const std::vector<Accessible> &objects)
    {
        std::vector<std::string> names;
        std::ranges::transform(objects, std::back_inserter(names), [](const Accessible &each) { return each.name(); });
        return names;
    }
    /// Reads the alert, which says these, and presses its button.
    void expectAlert(const std::string &message, const std::string &explanation)
    {
        Accessible alert;
        ASSERT_TRUE(waitUntil([&] {
            const auto all = application.children();
            const auto found =
                std::ranges::find_if(all, [](const Accessible &each) { return each.role() == "alert message"; });
            alert = found == all.end() ? Accessible() : *found;
            return found != all.end() && alert.is(State::showing);
        })) << situation();
        const auto labels = namesOf(alert.all("label"));
        EXPECT_NE(std::ranges::find(labels, message), labels.end()) << testing::PrintToString(labels);
        EXPECT_TRUE(std::ranges::any_of(labels, [&](const std::string &each) {
            return each.find(explanation) != std::string::npos;
        })) << testing::PrintToString(labels);
        EXPECT_TRUE(alert.find("graphic", "Warning").exists());
        const auto buttons = alert.all("push button");
        ASSERT_EQ(namesOf(buttons), std::vector<std::string>{"OK"});
        EXPECT_TRUE(buttons.front().perform("Press"));
        EXPECT_TRUE(waitUntil([&] { return !alert.exists() || !alert.is(State::showing); }));
    }
};

TEST_F(AccessibleWindowsTest, aboutSaysWhatTheProgramIsAndClosesByEscape)
{
    startWithPicture();
    press("About Tallowmere");
    press("About Tallowmere");
    const Accessible about = openWindow("About Tallowmere");
    EXPECT_EQ(about.role(), "frame");
    EXPECT_TRUE(waitForOpenWindows({"Tallowmere • a.jpg", "About Tallowmere"})) << "one of each";
    EXPECT_TRUE(about.find("graphic", "Icon of Tallowmere").exists());
    const auto labels = namesOf(about.all("label"));
    ASSERT_EQ(labels.size(), 3U) << testing::PrintToString(labels);
    EXPECT_EQ(labels[0], "Tallowmere");
    EXPECT_TRUE(labels[1].starts_with("Version ")) << labels[1];
    EXPECT_TRUE(labels[2].starts_with("Copyright © ")) << labels[2];
    const Accessible button = about.find("push button", "Oltra Software");
    EXPECT_TRUE(button.is(State::showing));
    EXPECT_EQ(button.actions().front(), "Press");
    input.press(key::kEscape);
    EXPECT_TRUE(waitForOpenWindows({"Tallowmere • a.jpg"}));

    press("About Tallowmere");
    EXPECT_EQ(openWindow("About Tallowmere"), about) << "the same comes back";
}

TEST_F(AccessibleWindowsTest, theKeyboardShortcutsAreReadOutAndCloseByEscape)
{
    startWithPicture();
    press("Keyboard Shortcuts");
    const Accessible shortcuts = openWindow("Keyboard Shortcuts");
    EXPECT_EQ(shortcuts.role(), "frame");
    const auto labels = namesOf(shortcuts.all("label"));
    const auto zoom = std::ranges::find(labels, "Reset Zoom");
    ASSERT_NE(zoom, labels.end()) << testing::PrintToString(labels);
    EXPECT_EQ(*std::next(zoom), "Ctrl+0") << "the keys follow what they do";
    input.press(key::kEscape);
    EXPECT_TRUE(waitForOpenWindows({"Tallowmere • a.jpg"}));
}

TEST_F(AccessibleWindowsTest, theManualPageIsATextAndClosesByEscape)
{
    startWithPicture();
    press("Manual Page");
    const Accessible page = openWindow("Manual Page");
    const Accessible text = page.find("text", "Manual Page");
    EXPECT_TRUE(waitUntil([&] { return text.text().find("tallowmere") != std::string::npos; })) << text.text();
    input.press(key::kEscape);
    EXPECT_TRUE(waitForOpenWindows({"Tallowmere • a.jpg"}));
}

TEST_F(AccessibleWindowsTest, closeWindowClosesTheOneInFront)
{
    startWithPicture();
    press("Settings...");
    EXPECT_EQ(openWindow("Settings").role(), "frame");
    press("Close Window");
    EXPECT_TRUE(waitForOpenWindows({"Tallowmere • a.jpg"}));
}

TEST_F(AccessibleWindowsTest, moveToTrashShowsTheNextFileAndUndoBringsItBack)
{
    addPicture("b.jpg", kGreen);
    startWithPicture();
    const auto file = folders.pictures() / "a.jpg";
    press("Move to Trash");
    EXPECT_TRUE(waitForPicture("b.jpg", kGreen)) << situation();
    EXPECT_FALSE(std::filesystem::exists(file));
    EXPECT_TRUE(waitUntil([&] { return imageArea().name() == "b.jpg"; }));
    input.control('z');
    EXPECT_TRUE(waitForPicture("a.jpg", kRed)) << situation();
    EXPECT_TRUE(std::filesystem::exists(file));
    EXPECT_TRUE(waitUntil([&] { return imageArea().name() == "a.jpg"; }));
}

/// The program runs as somebody whom permissions bind.
class AccessibleFolderPanelTest : public AccessibilityTest
{
protected:
    AccessibleFolderPanelTest() : AccessibilityTest(desktop::kOrdinaryUser) {}
};

TEST_F(AccessibleFolderPanelTest, saysWhatItIsForAndIsDeclinedByItsButton)
{
    addPicture("a.jpg", kRed);
    constexpr std::filesystem::perms kToBeEnteredButNotListed{0311};
    std::filesystem::permissions(folders.pictures(), kToBeEnteredButNotListed);
    program = launch({"a.jpg"});
    const auto found = accessibility.application(program->id());
    ASSERT_TRUE(found) << situation();
    application = *found;
    const Accessible panel = openWindow("Folder Access");
    EXPECT_EQ(panel.role(), "dialog");
    const auto labels = panel.all("label");
    EXPECT_TRUE(std::ranges::any_of(labels, [](const Accessible &each) { return each.name().size() > 40; }))
        << "the question";
    const Accessible button = panel.find("push button", "Cancel");
    EXPECT_TRUE(waitForState(button, State::showing, true));
    EXPECT_TRUE(button.perform("Press"));
    EXPECT_TRUE(waitUntil([&] { return !windows.titled("Folder Access"); })) << situation();
    EXPECT_TRUE(program->waitForOutput("Folder access not granted")) << program->output();
    EXPECT_EQ(imageArea().name(), "a.jpg");
}

TEST_F(AccessibleWindowsTest, aMoveToTrashThatFailsIsAnAlert)
{
    // Nowhere to put anything: a file is where the folder would be.
    desktop::writeFile(folders.data() / "Trash", "not a folder");
    startWithPicture();
    press("Move to Trash");
    expectAlert("Failed to Move File to Trash", "is not a folder");
    EXPECT_TRUE(std::filesystem::exists(folders.pictures() / "a.jpg"));
    EXPECT_TRUE(waitForPicture("a.jpg", kRed)) << situation();
}

TEST_F(AccessibleWindowsTest, anUndoAfterEmptyingTheTrashSaysThatTheFileIsNoLongerAvailable)
{
    addPicture("b.jpg", kGreen);
    startWithPicture();
    press("Move to Trash");
    ASSERT_TRUE(waitForPicture("b.jpg", kGreen)) << situation();
    std::filesystem::remove_all(folders.data() / "Trash");
    input.control('z');
    expectAlert("Cannot Undo", "The file is no longer available in Trash.");
}

TEST_F(AccessibleWindowsTest, movingTheOnlyFileShowsLogoAndInstruction)
{
    startWithPicture();
    press("Move to Trash");
    ASSERT_TRUE(waitForTitle("Tallowmere")) << situation();
    EXPECT_TRUE(waitForState(waitFor("label", "Double-click an image in Finder to open, or drop it here"),
                             State::showing, true));
    EXPECT_TRUE(waitForState(waitFor("graphic", "Tallowmere logo"), State::showing, true));
}

TEST_F(AccessibleWindowsTest, anUndoThatFailsIsAnAlert)
{
    addPicture("b.jpg", kGreen);
    startWithPicture();
    press("Move to Trash");
    ASSERT_TRUE(waitForPicture("b.jpg", kGreen)) << situation();
    addPicture("a.jpg", kBlue);
    input.control('z');
    expectAlert("Cannot Undo", "A file already exists at the original location.");
    EXPECT_TRUE(waitForPicture("b.jpg", kGreen)) << situation();
}

} // namespace tallowmere
