// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/e2e/E2ETest.h"

#include <set>

namespace tallowmere {

using desktop::waitUntil;
namespace key = desktop::key;
namespace fs = std::filesystem;

namespace {

constexpr const char *kCannotMove = "Failed to Move File to Trash";
constexpr const char *kCannotUndo = "Cannot Undo";
constexpr const char *kCannotRestore = "Failed to Restore File";

std::set<std::string> namesIn(const fs::path &folder)
{
    std::set<std::string> names;
    std::error_code ignored;
    for (const auto &each : fs::directory_iterator(folder, ignored))
        names.insert(each.path().filename().string());
    return names;
}

} // namespace

using Names = std::set<std::string>;

/// What the keys do to the files, the window and the Trash.
class TrashKeys : public E2ETest
{
protected:
    explicit TrashKeys(std::optional<uid_t> user = std::nullopt) : E2ETest(user) {}

    void startAt(const std::string &name, const desktop::Colour &colour)
    {
        start({name});
        ASSERT_TRUE(waitForPicture(name, colour)) << situation();
        ASSERT_TRUE(program->waitForOutput("files from directory\n")) << situation();
    }
    void addThree()
    {
        addPicture("a.jpg", kRed);
        addPicture("b.jpg", kGreen);
        addPicture("c.jpg", kBlue);
    }
    void moveToTrash() const { input.control(key::kBackspace); }
    void undo() const { input.control('z'); }

    [[nodiscard]] fs::path trash() const { return folders.data() / "Trash"; }
    [[nodiscard]] Names binned() const { return namesIn(trash() / "files"); }
    [[nodiscard]] Names notes() const { return namesIn(trash() / "info"); }
    [[nodiscard]] Names pictures() const { return namesIn(folders.pictures()); }

    /// The alert of this title, which is closed by Return and leaves the keyboard to the viewer.
    void expectAlert(const std::string &title)
    {
        ASSERT_TRUE(waitUntil([&] {
            const auto alert = windows.titled(title);
            return alert && windows.hasFocus(*alert);
        })) << "no alert \""
            << title << "\"\n"
            << situation();
        EXPECT_EQ(windows.all().size(), 2U) << situation();
        input.press(key::kReturn);
        EXPECT_TRUE(waitUntil([&] { return !windows.titled(title) && windows.hasFocus(window); })) << situation();
    }
    void expectNoAlert()
    {
        waitUntilKeysAreDealtWith();
        EXPECT_EQ(windows.all().size(), 1U) << situation();
    }
};

TEST_F(TrashKeys, movingTheOnlyFileOfAFolderShowsTheIdleState)
{
    addPicture("a.jpg", kRed);
    startAt("a.jpg", kRed);
    moveToTrash();
    EXPECT_TRUE(waitForTitle("Tallowmere")) << situation();
    EXPECT_TRUE(waitUntil([&] {
        const auto frame = windows.frame(window);
        return frame.width == 600 && frame.height == 400;
    })) << situation();
    EXPECT_TRUE(waitUntil([&] { return showsNoPicture(); })) << situation();
    EXPECT_EQ(binned(), Names{"a.jpg"});
    EXPECT_EQ(notes(), Names{"a.jpg.trashinfo"});
    EXPECT_EQ(pictures(), Names{});
}

TEST_F(TrashKeys, movingTheLastFileOfTheListShowsTheNewLastFile)
{
    addThree();
    startAt("c.jpg", kBlue);
    moveToTrash();
    EXPECT_TRUE(waitForPicture("b.jpg", kGreen)) << situation();
    EXPECT_EQ(binned(), Names{"c.jpg"});
}

TEST_F(TrashKeys, movingAMiddleFileShowsTheFileThatFollowedIt)
{
    addThree();
    startAt("b.jpg", kGreen);
    moveToTrash();
    EXPECT_TRUE(waitForPicture("c.jpg", kBlue)) << situation();
    input.press(key::kRight);
    EXPECT_TRUE(waitForPicture("a.jpg", kRed)) << situation();
}

TEST_F(TrashKeys, onePressMovesExactlyOneFile)
{
    addThree();
    startAt("a.jpg", kRed);
    moveToTrash();
    EXPECT_TRUE(waitForPicture("b.jpg", kGreen)) << situation();
    expectNoAlert();
    EXPECT_EQ(binned(), Names{"a.jpg"});
    EXPECT_EQ(pictures(), (Names{"b.jpg", "c.jpg"}));
    const std::string note = desktop::readFile(trash() / "info" / "a.jpg.trashinfo");
    EXPECT_TRUE(note.starts_with("[Trash Info]\nPath=" + (folders.pictures() / "a.jpg").string() + "\nDeletionDate="))
        << note;
}

TEST_F(TrashKeys, aFolderIsEmptiedFileByFile)
{
    addThree();
    startAt("a.jpg", kRed);
    moveToTrash();
    EXPECT_TRUE(waitForPicture("b.jpg", kGreen)) << situation();
    moveToTrash();
    EXPECT_TRUE(waitForPicture("c.jpg", kBlue)) << situation();
    moveToTrash();
    EXPECT_TRUE(waitForTitle("Tallowmere")) << situation();
    EXPECT_EQ(binned(), (Names{"a.jpg", "b.jpg", "c.jpg"}));
}

TEST_F(TrashKeys, anUndoBringsTheFileBackAndShowsIt)
{
    addThree();
    const std::string bytes = desktop::readFile(folders.pictures() / "b.jpg");
    startAt("b.jpg", kGreen);
    moveToTrash();
    ASSERT_TRUE(waitForPicture("c.jpg", kBlue)) << situation();
    undo();
    EXPECT_TRUE(waitForPicture("b.jpg", kGreen)) << situation();
    EXPECT_EQ(desktop::readFile(folders.pictures() / "b.jpg"), bytes);
    EXPECT_EQ(binned(), Names{});
    EXPECT_EQ(notes(), Names{});
    undo();
    expectNoAlert();
    EXPECT_EQ(pictures(), (Names{"a.jpg", "b.jpg", "c.jpg"}));
}

TEST_F(TrashKeys, anUndoFromTheIdleStateShowsTheFileAgain)
{
    addPicture("a.jpg", kRed);
    startAt("a.jpg", kRed);
    moveToTrash();
    ASSERT_TRUE(waitForTitle("Tallowmere")) << situation();
    undo();
    EXPECT_TRUE(waitForPicture("a.jpg", kRed)) << situation();
}

TEST_F(TrashKeys, anUndoAfterTheFileWasRestoredByHandSaysSoAndForgetsTheUndo)
{
    addThree();
    startAt("b.jpg", kGreen);
    moveToTrash();
    ASSERT_TRUE(waitForPicture("c.jpg", kBlue)) << situation();
    fs::copy_file(trash() / "files" / "b.jpg", folders.pictures() / "b.jpg");
    undo();
    expectAlert(kCannotUndo);
    fs::remove(folders.pictures() / "b.jpg"); // nothing would stand in the way any more
    undo();
    expectNoAlert();
    EXPECT_EQ(binned(), Names{"b.jpg"});
    EXPECT_EQ(pictures(), (Names{"a.jpg", "c.jpg"}));
}

TEST_F(TrashKeys, anUndoAfterEmptyingTheTrashSaysSoAndForgetsTheUndo)
{
    addThree();
    startAt("b.jpg", kGreen);
    moveToTrash();
    ASSERT_TRUE(waitForPicture("c.jpg", kBlue)) << situation();
    fs::remove_all(trash());
    undo();
    expectAlert(kCannotUndo);
    undo();
    expectNoAlert();
    EXPECT_EQ(pictures(), (Names{"a.jpg", "c.jpg"}));
}

TEST_F(TrashKeys, anUndoIntoAFolderThatIsGoneFailsAndTheFileStaysInTheTrash)
{
    addPicture("a.jpg", kRed);
    startAt("a.jpg", kRed);
    moveToTrash();
    ASSERT_TRUE(waitForTitle("Tallowmere")) << situation();
    fs::remove_all(folders.pictures());
    undo();
    expectAlert(kCannotRestore);
    EXPECT_EQ(binned(), Names{"a.jpg"});
    EXPECT_EQ(notes(), Names{"a.jpg.trashinfo"});
}

TEST_F(TrashKeys, openingAnotherFileInBetweenMakesAnUndoDoNothing)
{
    addThree();
    startAt("a.jpg", kRed);
    moveToTrash();
    ASSERT_TRUE(waitForPicture("b.jpg", kGreen)) << situation();
    const auto second = launch({"c.jpg"});
    ASSERT_EQ(second->waitForExit(), 0) << second->errors();
    ASSERT_TRUE(waitForPicture("c.jpg", kBlue)) << situation();
    undo();
    expectNoAlert();
    EXPECT_EQ(binned(), Names{"a.jpg"});
    EXPECT_EQ(pictures(), (Names{"b.jpg", "c.jpg"}));
}

TEST_F(TrashKeys, aFileThatIsGoneIsToldAndTheViewStaysAsItIs)
{
    addThree();
    startAt("b.jpg", kGreen);
    fs::remove(folders.pictures() / "b.jpg");
    moveToTrash();
    expectAlert(kCannotMove);
    EXPECT_TRUE(waitForPicture("b.jpg", kGreen)) << situation();
    EXPECT_EQ(binned(), Names{});
    EXPECT_EQ(notes(), Names{});
}

TEST_F(TrashKeys, aFileThatWasReplacedIsMovedAsItIsNowAndComesBackSo)
{
    addThree();
    startAt("b.jpg", kGreen);
    const std::string replaced = "not even a picture";
    desktop::writeFile(folders.pictures() / "new", replaced);
    fs::rename(folders.pictures() / "new", folders.pictures() / "b.jpg");
    moveToTrash();
    ASSERT_TRUE(waitForPicture("c.jpg", kBlue)) << situation();
    EXPECT_EQ(desktop::readFile(trash() / "files" / "b.jpg"), replaced);
    undo();
    EXPECT_TRUE(waitForTitle("Tallowmere • b.jpg")) << situation();
    EXPECT_EQ(desktop::readFile(folders.pictures() / "b.jpg"), replaced);
}

TEST_F(TrashKeys, aTrashThatCannotBeUsedIsToldAndTheFileStays)
{
    addThree();
    desktop::writeFile(trash(), "in the way");
    startAt("b.jpg", kGreen);
    moveToTrash();
    expectAlert(kCannotMove);
    EXPECT_TRUE(waitForPicture("b.jpg", kGreen)) << situation();
    EXPECT_EQ(pictures(), (Names{"a.jpg", "b.jpg", "c.jpg"}));
    fs::remove(trash());
    moveToTrash();
    EXPECT_TRUE(waitForPicture("c.jpg", kBlue)) << situation();
    EXPECT_EQ(binned(), Names{"b.jpg"});
}

TEST_F(TrashKeys, anAlertKeepsTheViewersKeysAwayButNotItsWork)
{
    addThree();
    startAt("b.jpg", kGreen);
    fs::remove(folders.pictures() / "b.jpg");
    moveToTrash();
    ASSERT_TRUE(waitUntil([&] { return windows.titled(kCannotMove).has_value(); })) << situation();
    const auto second = launch({"a.jpg"});
    ASSERT_EQ(second->waitForExit(), 0) << second->errors();
    EXPECT_TRUE(waitForTitle("Tallowmere • a.jpg")) << situation();
    const auto alert = windows.titled(kCannotMove);
    ASSERT_TRUE(alert.has_value()) << situation();
    windows.activate(*alert);
    ASSERT_TRUE(waitUntil([&] { return windows.hasFocus(*alert); })) << situation();
    moveToTrash();
    expectAlert(kCannotMove);
    EXPECT_EQ(binned(), Names{});
    EXPECT_EQ(pictures(), (Names{"a.jpg", "c.jpg"}));
}

TEST_F(TrashKeys, withoutAFileTheKeysDoNothing)
{
    addPicture("a.jpg", kRed);
    start();
    moveToTrash();
    undo();
    expectNoAlert();
    EXPECT_FALSE(fs::exists(trash()));
}

TEST_F(TrashKeys, namesAreBytesAndTheLongestOnesComeBackWhole)
{
    const std::string longest = std::string(251, 'n') + ".jpg";
    addPicture("na\xEFve.jpg", kRed);
    addPicture(longest, kGreen);
    startAt(longest, kGreen);
    moveToTrash();
    ASSERT_TRUE(waitForPicture("na\xEF\xBF\xBDve.jpg", kRed)) << situation();
    moveToTrash();
    ASSERT_TRUE(waitForTitle("Tallowmere")) << situation();
    EXPECT_TRUE(binned().contains("na\xEFve.jpg"));
    undo();
    ASSERT_TRUE(waitForPicture("na\xEF\xBF\xBDve.jpg", kRed)) << situation();
    moveToTrash();
    ASSERT_TRUE(waitForTitle("Tallowmere")) << situation();
    EXPECT_EQ(binned().size(), 2U);
}

TEST_F(TrashKeys, theNoteIsTheOneThatTheDesktopsOwnToolWrites)
{
    addThree();
    startAt("b.jpg", kGreen);
    moveToTrash();
    ASSERT_TRUE(waitForPicture("c.jpg", kBlue)) << situation();
    const std::string ours = desktop::readFile(trash() / "info" / "b.jpg.trashinfo");
    desktop::writeFile(folders.pictures() / "b.jpg", "another");
    const auto tool = desktop::run({.arguments = {"gio", "trash", (folders.pictures() / "b.jpg").string()},
                                    .environment = environment,
                                    .workingDirectory = {},
                                    .user = {}});
    ASSERT_EQ(tool.status, 0) << tool.errors;
    Names names = notes();
    ASSERT_EQ(names.size(), 2U) << "the tool uses another Trash";
    names.erase("b.jpg.trashinfo");
    const std::string theirs = desktop::readFile(trash() / "info" / *names.begin());
    const auto beforeTheMoment = [](const std::string &note) { return note.substr(0, note.find("Date=") + 5); };
    EXPECT_EQ(beforeTheMoment(ours), beforeTheMoment(theirs));
    EXPECT_EQ(ours.size(), theirs.size()) << "the moment is written otherwise";
}

class TrashKeysOfAnOrdinaryUser : public TrashKeys
{
protected:
    TrashKeysOfAnOrdinaryUser() : TrashKeys(desktop::kOrdinaryUser) {}
};

TEST_F(TrashKeysOfAnOrdinaryUser, aFolderThatMayNotBeChangedKeepsItsFiles)
{
    addThree();
    fs::permissions(folders.pictures(), fs::perms{0555});
    startAt("b.jpg", kGreen);
    moveToTrash();
    expectAlert(kCannotMove);
    EXPECT_TRUE(waitForPicture("b.jpg", kGreen)) << situation();
    EXPECT_EQ(pictures(), (Names{"a.jpg", "b.jpg", "c.jpg"}));
    EXPECT_EQ(notes(), Names{});
}

TEST_F(TrashKeysOfAnOrdinaryUser, movesAndTakesBack)
{
    addThree();
    startAt("b.jpg", kGreen);
    moveToTrash();
    ASSERT_TRUE(waitForPicture("c.jpg", kBlue)) << situation();
    EXPECT_EQ(binned(), Names{"b.jpg"});
    undo();
    EXPECT_TRUE(waitForPicture("b.jpg", kGreen)) << situation();
}

class TrashOfADisabledFormat : public TrashKeys
{};

TEST_F(TrashOfADisabledFormat, aRestoredFileThatTheListingLeavesOutIsOpened)
{
    addFile("a.png", photos::makePlainPng(300, 200, {224, 200, 24}));
    addPicture("b.jpg", kGreen);
    startAt("a.png", kYellow);
    moveToTrash();
    ASSERT_TRUE(waitForPicture("b.jpg", kGreen)) << situation();
    writeSettings("PNGSupportEnabled=false\n");
    undo();
    EXPECT_TRUE(waitForPicture("a.png", kYellow)) << situation();
    EXPECT_TRUE(program->waitForOutput("⚠️ Warning: Failed to load file list")) << situation();
    EXPECT_EQ(binned(), Names{});
}

} // namespace tallowmere
