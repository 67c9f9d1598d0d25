// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/e2e/E2ETest.h"

#include <sys/stat.h>

#include <cstring>

namespace tallowmere {

using desktop::waitUntil;
namespace fs = std::filesystem;
namespace key = desktop::key;

namespace {

/// One decode may have 512 MB to work with; the rest is the program, its toolkit and its fonts.
constexpr std::size_t kMostMemory = 800U << 20U;

std::vector<std::byte> bytesOf(std::string_view text)
{
    std::vector<std::byte> bytes(text.size());
    std::memcpy(bytes.data(), text.data(), text.size());
    return bytes;
}

} // namespace

/// Files that are not what their name says: the window stays, names the file and steps on.
class BadInputTest : public E2ETest
{
protected:
    explicit BadInputTest(std::optional<uid_t> user = std::nullopt) : E2ETest(user) {}

    void SetUp() override { addPicture("good.jpg", kGreen); }

    /// Opens bad.jpg, which shows nothing, and steps to good.jpg.
    void expectNothingShownAndSteppedPast()
    {
        start({"bad.jpg"});
        EXPECT_TRUE(waitForTitle("Tallowmere • bad.jpg")) << situation();
        EXPECT_TRUE(program->waitForOutput("✅ Successfully loaded 2 files from directory\n")) << situation();
        EXPECT_TRUE(showsNoPicture()) << situation();
        input.press(key::kLeft);
        EXPECT_TRUE(waitForPicture("good.jpg", kGreen)) << situation();
        EXPECT_LT(program->peakMemory(), kMostMemory);
        // Back, now that everything has been read ahead of time.
        input.press(key::kLeft);
        EXPECT_TRUE(waitForTitle("Tallowmere • bad.jpg")) << situation();
        EXPECT_TRUE(waitUntil([&] { return showsNoPicture(); })) << situation();
        EXPECT_EQ(program->errors(), "");
    }
};

class UnreadableInputTest : public BadInputTest
{
protected:
    UnreadableInputTest() : BadInputTest(desktop::kOrdinaryUser) {}
};

TEST_F(BadInputTest, anEmptyFile)
{
    addFile("bad.jpg", {});
    expectNothingShownAndSteppedPast();
}

TEST_F(BadInputTest, textNamedLikeAPicture)
{
    addFile("bad.jpg", bytesOf("This is not a picture.\n"));
    expectNothingShownAndSteppedPast();
}

TEST_F(BadInputTest, aFolderNamedLikeAPicture)
{
    fs::create_directory(folders.pictures() / "bad.jpg");
    expectNothingShownAndSteppedPast();
}

TEST_F(BadInputTest, aPipeNamedLikeAPicture)
{
    ASSERT_EQ(::mkfifo((folders.pictures() / "bad.jpg").c_str(), 0644), 0);
    expectNothingShownAndSteppedPast();
}

TEST_F(BadInputTest, aDanglingLink)
{
    fs::create_symlink("nowhere", folders.pictures() / "bad.jpg");
    expectNothingShownAndSteppedPast();
}

TEST_F(BadInputTest, aHeaderThatPromises60000By60000Pixels)
{
    addFile("bad.jpg", photos::withPromisedSize(picture(kRed), 60000, 60000));
    expectNothingShownAndSteppedPast();
}

TEST_F(BadInputTest, aFileCutOffWithinItsHeader)
{
    auto bytes = picture(kRed);
    bytes.resize(100);
    addFile("bad.jpg", bytes);
    expectNothingShownAndSteppedPast();
}

TEST_F(UnreadableInputTest, aFileThatMayNotBeRead)
{
    fs::permissions(addPicture("bad.jpg", kRed), fs::perms::none);
    expectNothingShownAndSteppedPast();
}

TEST_F(BadInputTest, aFileCutOffInItsMiddleShowsWhatThereIs)
{
    auto bytes = photos::makePhoto(800, 600, 1);
    bytes.resize(bytes.size() / 2);
    addFile("bad.jpg", bytes);
    start({"bad.jpg"});
    EXPECT_TRUE(waitForTitle("Tallowmere • bad.jpg")) << situation();
    EXPECT_TRUE(waitUntil([&] { return std::abs(windows.frame(window).width - 800) <= 2; })) << situation();
    // The upper half is sky: clearly blue.
    EXPECT_TRUE(waitUntil([&] {
        const auto contents = windows.contents(window);
        const auto sky = screen.at({contents.centre().x, contents.y + contents.height - 550});
        return sky.blue > sky.red + 30;
    })) << situation();
    input.press(key::kLeft);
    EXPECT_TRUE(waitForPicture("good.jpg", kGreen)) << situation();
}

TEST_F(BadInputTest, aMissingFileIsNamedAndTheFolderIsSteppedThrough)
{
    start({"missing.jpg"});
    EXPECT_TRUE(waitForTitle("Tallowmere • missing.jpg")) << situation();
    EXPECT_TRUE(showsNoPicture()) << situation();
    input.press(key::kLeft);
    EXPECT_TRUE(waitForPicture("good.jpg", kGreen)) << situation();
}

/// Words on the command line that are no files.
class CommandLineTest : public E2ETest
{
protected:
    void expectRefusal(const std::vector<std::string> &words, const std::string &line)
    {
        const auto refused = launch(words);
        EXPECT_EQ(refused->waitForExit(), 2);
        EXPECT_EQ(refused->errors(), line + "\n");
        EXPECT_EQ(refused->output(), "");
    }
};

TEST_F(CommandLineTest, anUnknownOptionIsRefusedOnOneLine)
{
    expectRefusal({"--slideshow"}, "tallowmere: there is no option --slideshow");
}

TEST_F(CommandLineTest, aWebAddressIsRefusedOnOneLine)
{
    expectRefusal({"https://localhost/a.jpg"}, "tallowmere: not a file on this computer: https://localhost/a.jpg");
}

TEST_F(CommandLineTest, twoDashesEndTheOptions)
{
    addPicture("-dash.jpg", kRed);
    start({"--", "-dash.jpg"});
    EXPECT_TRUE(waitForPicture("-dash.jpg", kRed)) << situation();
}

TEST_F(CommandLineTest, aRefusedWordDoesNotKeepAFileFromBeingOpened)
{
    addPicture("a.jpg", kRed);
    start({"--slideshow", "a.jpg"});
    EXPECT_TRUE(waitForPicture("a.jpg", kRed)) << situation();
    EXPECT_EQ(program->errors(), "tallowmere: there is no option --slideshow\n");
}

TEST_F(CommandLineTest, aFileUriIsOpened)
{
    addPicture("two words.jpg", kBlue);
    start({uri(folders.pictures()) + "/two%20words.jpg"});
    EXPECT_TRUE(waitForPicture("two words.jpg", kBlue)) << situation();
}

} // namespace tallowmere
