// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/e2e/E2ETest.h"

#include <algorithm>

namespace tallowmere {

using desktop::waitUntil;
using desktop::WindowId;
namespace fs = std::filesystem;
namespace key = desktop::key;

namespace {

constexpr const char *kPanelTitle = "Folder Access";

} // namespace

/// The program runs as an ordinary user in a folder that it can enter and not list, and asks to be let in.
class FolderAccessTest : public OrdinaryUserTest
{
protected:
    void SetUp() override
    {
        file = addPicture("b.jpg", kBlue);
        addPicture("c.jpg", kRed, 500, 400);
        allowListing(false);
    }
    void allowListing(bool allowed) const
    {
        fs::permissions(folders.pictures(), static_cast<fs::perms>(allowed ? 0755 : 0311));
    }
    [[nodiscard]] std::vector<WindowId> panels() const
    {
        auto all = windows.all();
        std::erase_if(all, [this](WindowId each) { return windows.title(each) != kPanelTitle; });
        return all;
    }
    /// The panel is the window with the focus once it is there.
    void startWithPanel(const std::string &picture)
    {
        program = launch({picture});
        ASSERT_TRUE(waitUntil([this] { return panels().size() == 1; })) << situation();
        const auto all = windows.ofProcess(program->id());
        const auto found = std::ranges::find_if(all, [this](WindowId each) { return each != panels().front(); });
        ASSERT_NE(found, all.end()) << situation();
        window = *found;
        focus(panels().front());
    }
    void focus(WindowId which) const
    {
        windows.activate(which);
        ASSERT_TRUE(waitUntil([&] { return windows.hasFocus(which); })) << situation();
    }
    void cancelPanel()
    {
        focus(panels().back());
        const auto before = panels().size();
        input.press(key::kEscape);
        ASSERT_TRUE(waitUntil([&] { return panels().size() < before; })) << situation();
    }
    /// @p folder empty: the one that the panel begins in.
    void pick(const std::string &folder = {})
    {
        focus(panels().back());
        const auto before = panels().size();
        for (const char each : folder)
            input.type(each);
        // The first may be the completion list's; to the viewer it means nothing.
        ASSERT_TRUE(waitUntil([&] {
            if (panels().size() < before)
                return true;
            input.press(key::kReturn);
            return waitUntil([&] { return panels().size() < before; }, std::chrono::seconds{1});
        })) << situation();
    }
    /// The arrow keys do nothing, and the picture stays.
    void expectOnlyThisPicture(const std::string &name, const desktop::Colour &colour)
    {
        focus(window);
        input.press(key::kLeft);
        input.press(key::kRight);
        waitUntilKeysAreDealtWith();
        EXPECT_TRUE(waitForPicture(name, colour)) << situation();
    }

    fs::path file;
};

TEST_F(FolderAccessTest, aFolderThatCanBeListedIsListedWithoutAPanel)
{
    allowListing(true);
    start({file.string()});
    EXPECT_TRUE(program->waitForOutput("✅ Successfully loaded 2 files from directory\n")) << situation();
    waitUntilKeysAreDealtWith();
    EXPECT_TRUE(panels().empty()) << situation();
    EXPECT_EQ(program->output().find("Requesting"), std::string::npos);
}

TEST_F(FolderAccessTest, requestingAListableFolderAnswersTrueWithoutAPanel)
{
    allowListing(true);
    const auto hidden = addPicture(".hidden.jpg", kGreen); // no listing holds it, so the folder is asked for
    start({hidden.string()});
    EXPECT_TRUE(program->waitForOutput("✅ Folder access granted. Reloading file list...\n"
                                       "⚠️ Still failed to load file list after folder access grant\n"))
        << situation();
    EXPECT_TRUE(panels().empty()) << situation();
}

TEST_F(FolderAccessTest, cancellingThePanelKeepsThePictureAndSaysSo)
{
    startWithPanel(file.string());
    EXPECT_TRUE(program->waitForOutput(
        "⚠️ Failed to load files from directory: " + folders.pictures().string() +
        "\n⚠️ Warning: Failed to load file list from directory containing: " + file.string() +
        "\n   Arrow key navigation may not work. Requesting folder access...\n"))
        << situation();
    EXPECT_EQ(program->output().find("not granted"), std::string::npos) << "before the panel is answered";
    cancelPanel();
    EXPECT_TRUE(program->waitForOutput("ℹ️ Folder access not granted. Navigation between images will not work.\n"))
        << situation();
    expectOnlyThisPicture("b.jpg", kBlue);
    EXPECT_EQ(program->errors(), "");
}

TEST_F(FolderAccessTest, closingThePanelCountsAsCancelling)
{
    startWithPanel(file.string());
    windows.close(panels().front());
    EXPECT_TRUE(program->waitForOutput("ℹ️ Folder access not granted.")) << situation();
    expectOnlyThisPicture("b.jpg", kBlue);
}

TEST_F(FolderAccessTest, aCancelledPanelIsForgottenAndTheNextFileAsksAgain)
{
    startWithPanel(file.string());
    cancelPanel();
    ASSERT_EQ(callApplication("Open", {uris({uri(folders.pictures() / "c.jpg")}), "{}"}).status, 0);
    EXPECT_TRUE(waitUntil([this] { return panels().size() == 1; })) << situation();
    cancelPanel();
    expectOnlyThisPicture("c.jpg", kRed);
}

TEST_F(FolderAccessTest, pickingTheFolderOnceItCanBeListedBringsItsPictures)
{
    startWithPanel(file.string());
    allowListing(true);
    pick();
    EXPECT_TRUE(program->waitForOutput("✅ Folder access granted. Reloading file list...\n"
                                       "✅ Successfully loaded 2 files after folder access grant\n"))
        << situation();
    focus(window);
    EXPECT_TRUE(waitForPicture("b.jpg", kBlue)) << situation();
    input.press(key::kLeft);
    EXPECT_TRUE(waitForPicture("c.jpg", kRed)) << situation();
}

TEST_F(FolderAccessTest, pickingAnotherFolderThatCanBeListedIsTrustedForBothFromThenOn)
{
    startWithPanel(file.string());
    pick(folders.home().string());
    const std::string answer = "✅ Folder access granted. Reloading file list...\n"
                               "⚠️ Failed to load files from directory: " +
                               folders.pictures().string() +
                               "\n⚠️ Still failed to load file list after folder access grant\n";
    EXPECT_TRUE(program->waitForOutput(answer)) << situation();
    // The next file of the same folder is answered from memory, as fruitlessly.
    ASSERT_EQ(callApplication("Open", {uris({uri(folders.pictures() / "c.jpg")}), "{}"}).status, 0);
    EXPECT_TRUE(waitUntil([&] {
        const std::string output = program->output();
        return output.find(answer) != output.rfind(answer);
    })) << situation();
    EXPECT_TRUE(panels().empty()) << situation();
    expectOnlyThisPicture("c.jpg", kRed);
}

TEST_F(FolderAccessTest, pickingAFolderThatCannotBeListedIsNoGrant)
{
    startWithPanel(file.string());
    pick();
    EXPECT_TRUE(program->waitForOutput("ℹ️ Folder access not granted. Navigation between images will not work.\n"))
        << situation();
    expectOnlyThisPicture("b.jpg", kBlue);
}

TEST_F(FolderAccessTest, aSecondFileShowsASecondPanelWhileTheFirstIsOpen)
{
    startWithPanel(file.string());
    ASSERT_EQ(callApplication("Open", {uris({uri(folders.pictures() / "c.jpg")}), "{}"}).status, 0);
    EXPECT_TRUE(waitUntil([this] { return panels().size() == 2; })) << situation();
    cancelPanel();
    cancelPanel();
    expectOnlyThisPicture("c.jpg", kRed);
}

TEST_F(FolderAccessTest, aPanelAnsweredAfterTheWindowClosedLeavesItIdle)
{
    startWithPanel(file.string());
    windows.close(window);
    ASSERT_TRUE(waitUntil([this] { return !windows.visible(window); })) << situation();
    ASSERT_EQ(panels().size(), 1U);
    allowListing(true);
    pick();
    EXPECT_TRUE(program->running());
    EXPECT_EQ(callApplication("Activate", {"{}"}).status, 0);
    adopt(program->id());
    EXPECT_TRUE(waitForTitle("Tallowmere"));
    input.press(key::kLeft);
    waitUntilKeysAreDealtWith();
    EXPECT_EQ(windows.title(window), "Tallowmere");
    EXPECT_TRUE(showsNoPicture()) << situation();
    // And the next file finds its folder as ever.
    EXPECT_EQ(callApplication("Open", {uris({uri(file)}), "{}"}).status, 0);
    EXPECT_TRUE(program->waitForOutput("✅ Successfully loaded 2 files from directory\n")) << situation();
}

TEST_F(FolderAccessTest, afterARestartTheUserIsAskedAgain)
{
    for (int run = 0; run < 2; ++run) {
        startWithPanel(file.string());
        pick(folders.home().string());
        EXPECT_TRUE(program->waitForOutput("⚠️ Still failed to load file list after folder access grant\n"))
            << situation();
        EXPECT_EQ(callApplication("ActivateAction", {"quit", "[]", "{}"}).status, 0);
        EXPECT_EQ(program->waitForExit(), 0);
    }
}

TEST_F(FolderAccessTest, aProgramThatEndsWithItsPanelOpenEndsCleanly)
{
    startWithPanel(file.string());
    EXPECT_EQ(callApplication("ActivateAction", {"quit", "[]", "{}"}).status, 0);
    EXPECT_EQ(program->waitForExit(), 0) << situation();
}

TEST_F(FolderAccessTest, aMissingFolderLeavesANamedEmptyWindow)
{
    startWithPanel("/nowhere/at/all.jpg");
    EXPECT_TRUE(program->waitForOutput("⚠️ Failed to load files from directory: /nowhere/at\n")) << situation();
    cancelPanel();
    focus(window);
    input.press(key::kLeft);
    waitUntilKeysAreDealtWith();
    EXPECT_EQ(windows.title(window), "Tallowmere • all.jpg");
    EXPECT_TRUE(showsNoPicture()) << situation();
}

} // namespace tallowmere
