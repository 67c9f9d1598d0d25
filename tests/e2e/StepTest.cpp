// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/e2e/E2ETest.h"
#include "tests/e2e/OpenedFiles.h"

namespace tallowmere {

using desktop::waitUntil;
namespace key = desktop::key;

namespace {

std::string numbered(int number)
{
    std::string name("p");
    return name.append(std::to_string(number)).append(".jpg");
}

} // namespace

class StepTest : public E2ETest
{
protected:
    void addThree()
    {
        addPicture("a.jpg", kRed);
        addPicture("b.jpg", kGreen, 500, 400);
        addPicture("c.jpg", kBlue, 400, 500);
    }
};

TEST_F(StepTest, theRightArrowShowsTheEarlierFileAndWrapsToTheLast)
{
    addThree();
    start({"b.jpg"});
    ASSERT_TRUE(waitForPicture("b.jpg", kGreen)) << situation();
    input.press(key::kRight);
    EXPECT_TRUE(waitForPicture("a.jpg", kRed)) << situation();
    input.press(key::kRight);
    EXPECT_TRUE(waitForPicture("c.jpg", kBlue)) << situation();
    input.press(key::kRight);
    EXPECT_TRUE(waitForPicture("b.jpg", kGreen)) << situation();
}

TEST_F(StepTest, theLeftArrowShowsTheLaterFileAndWrapsToTheFirst)
{
    addThree();
    start({"b.jpg"});
    ASSERT_TRUE(waitForPicture("b.jpg", kGreen)) << situation();
    input.press(key::kLeft);
    EXPECT_TRUE(waitForPicture("c.jpg", kBlue)) << situation();
    input.press(key::kLeft);
    EXPECT_TRUE(waitForPicture("a.jpg", kRed)) << situation();
}

TEST_F(StepTest, controlWithAnArrowStepsExactlyLikeThePlainArrow)
{
    addThree();
    start({"b.jpg"});
    ASSERT_TRUE(waitForPicture("b.jpg", kGreen)) << situation();
    input.control(key::kRight);
    EXPECT_TRUE(waitForPicture("a.jpg", kRed)) << situation();
    input.control(key::kLeft);
    EXPECT_TRUE(waitForPicture("b.jpg", kGreen)) << situation();
    input.control(key::kLeft);
    EXPECT_TRUE(waitForPicture("c.jpg", kBlue)) << situation();
}

// Where keys come faster than pictures, the last picture to be decoded stays, whichever it is: the title tells the
// file.

TEST_F(StepTest, aBurstOfKeysEndsAtTheRightFile)
{
    for (int i = 0; i < 10; ++i)
        addPicture(numbered(i), kRed);
    start({"p0.jpg"});
    ASSERT_TRUE(waitForPicture("p0.jpg", kRed)) << situation();
    for (int i = 0; i < 13; ++i)
        input.press(key::kLeft);
    waitUntilKeysAreDealtWith();
    EXPECT_EQ(windows.title(window), "Tallowmere • p3.jpg");
    EXPECT_TRUE(waitForPicture("p3.jpg", kRed)) << situation();
}

TEST_F(StepTest, aKeyPressedAtOnceAfterTheStartStepsFromTheOpenedFile)
{
    addThree();
    start({"b.jpg"});
    input.press(key::kLeft);
    EXPECT_TRUE(waitForTitle("Tallowmere • c.jpg")) << situation();
}

TEST_F(StepTest, aPhotoIsSteppedToWithItsOwnWindowSize)
{
    addThree();
    start({"b.jpg"});
    ASSERT_TRUE(waitForPicture("b.jpg", kGreen)) << situation();
    ASSERT_TRUE(waitUntil([&] { return std::abs(windows.frame(window).width - 500) <= 2; })) << situation();
    input.press(key::kLeft);
    EXPECT_TRUE(waitUntil([&] { return std::abs(windows.frame(window).width - 400) <= 2; })) << situation();
}

TEST_F(StepTest, filesComeInTheOrderOfAFileManagerAndWithoutHiddenOnes)
{
    addPicture("b.jpg", kGreen);
    addFile("A.PNG", photos::makePlainPng(300, 200, {224, 200, 24}));
    addFile("c.txt", picture(kRed));
    addPicture(".hidden.jpg", kRed);
    addPicture("img10.jpg", kBlue);
    addPicture("img2.jpg", kRed);
    start({"b.jpg"});
    ASSERT_TRUE(waitForPicture("b.jpg", kGreen)) << situation();
    EXPECT_TRUE(program->waitForOutput("✅ Successfully loaded 4 files from directory\n")) << situation();
    input.press(key::kLeft);
    EXPECT_TRUE(waitForPicture("img2.jpg", kRed)) << situation();
    input.press(key::kLeft);
    EXPECT_TRUE(waitForPicture("img10.jpg", kBlue)) << situation();
    input.press(key::kLeft);
    EXPECT_TRUE(waitForPicture("A.PNG", kYellow)) << situation();
    input.press(key::kLeft);
    EXPECT_TRUE(waitForPicture("b.jpg", kGreen)) << situation();
}

TEST_F(StepTest, aSubfolderNamedLikeAPictureIsSteppedToAndPast)
{
    addPicture("a.jpg", kRed);
    std::filesystem::create_directory(folders.pictures() / "set.jpeg");
    addPicture("z.jpg", kBlue);
    start({"a.jpg"});
    ASSERT_TRUE(waitForPicture("a.jpg", kRed)) << situation();
    EXPECT_TRUE(program->waitForOutput("✅ Successfully loaded 3 files from directory\n")) << situation();
    input.press(key::kLeft);
    EXPECT_TRUE(waitForTitle("Tallowmere • set.jpeg")) << situation();
    EXPECT_TRUE(waitUntil([&] { return showsNoPicture(); })) << situation();
    input.press(key::kLeft);
    EXPECT_TRUE(waitForPicture("z.jpg", kBlue)) << situation();
}

TEST_F(StepTest, withPngSwitchedOffPngFilesAreNotInTheFolder)
{
    writeSettings("PNGSupportEnabled=false\n");
    addPicture("a.jpg", kRed);
    addFile("b.png", photos::makePlainPng(300, 200, {224, 200, 24}));
    addPicture("c.jpg", kBlue);
    start({"a.jpg"});
    ASSERT_TRUE(waitForPicture("a.jpg", kRed)) << situation();
    EXPECT_TRUE(program->waitForOutput("✅ Successfully loaded 2 files from directory\n")) << situation();
    input.press(key::kLeft);
    EXPECT_TRUE(waitForPicture("c.jpg", kBlue)) << situation();
    input.press(key::kLeft);
    EXPECT_TRUE(waitForPicture("a.jpg", kRed)) << situation();
}

TEST_F(StepTest, onlyFilesOfTheFormatsSwitchedOnAreCounted)
{
    for (const char *name : {"a.jpg", "b.jpeg", "c.png", "d.webp", "e.avif", "f.heic", "g.heif"})
        addPicture(name, kRed);
    const std::vector<std::pair<std::string, std::string>> cases{
        {"", "7"},
        {"PNGSupportEnabled=false\nAVIFSupportEnabled=false\n", "5"},
        {"PNGSupportEnabled=false\nWebPSupportEnabled=false\nAVIFSupportEnabled=false\nHEICSupportEnabled=false\n",
         "2"}};
    for (const auto &[lines, count] : cases) {
        writeSettings(lines);
        start({"a.jpg"});
        EXPECT_TRUE(program->waitForOutput("✅ Successfully loaded " + count + " files from directory\n"))
            << situation();
        program->end();
    }
}

TEST_F(StepTest, theOnlyFileOfAFolderStaysWithEitherArrow)
{
    addPicture("only.jpg", kGreen);
    start({"only.jpg"});
    ASSERT_TRUE(waitForPicture("only.jpg", kGreen)) << situation();
    EXPECT_TRUE(program->waitForOutput("✅ Successfully loaded 1 files from directory\n")) << situation();
    input.press(key::kLeft);
    input.press(key::kRight);
    waitUntilKeysAreDealtWith();
    EXPECT_EQ(windows.title(window), "Tallowmere • only.jpg");
    EXPECT_TRUE(waitForPicture("only.jpg", kGreen)) << situation();
}

TEST_F(StepTest, arrowsDoNothingWhileNoFileIsOpen)
{
    addThree();
    start();
    input.press(key::kLeft);
    input.press(key::kRight);
    input.control(key::kLeft);
    waitUntilKeysAreDealtWith();
    EXPECT_EQ(windows.title(window), "Tallowmere");
    EXPECT_TRUE(showsNoPicture()) << situation();
}

TEST_F(StepTest, plainLettersSpaceAndEscapeDoNothing)
{
    addThree();
    start({"b.jpg"});
    ASSERT_TRUE(waitForPicture("b.jpg", kGreen)) << situation();
    for (const std::uint32_t symbol : {std::uint32_t{'h'}, std::uint32_t{'z'}, std::uint32_t{'1'}, std::uint32_t{' '},
                                       std::uint32_t{'0'}, key::kEscape, key::kReturn, key::kBackspace})
        input.press(symbol);
    // Exactly one step on from where it was, in a window that still follows the picture.
    input.press(key::kLeft);
    EXPECT_TRUE(waitForPicture("c.jpg", kBlue)) << situation();
    EXPECT_TRUE(waitUntil([&] { return std::abs(windows.frame(window).width - 400) <= 2; })) << situation();
    EXPECT_EQ(settings().find("AutoResizeToImageSize"), std::string::npos);
    EXPECT_TRUE(std::filesystem::exists(folders.pictures() / "b.jpg"));
}

TEST_F(StepTest, theTwoFilesBeforeAndTheTwentyAfterAreReadAheadOfTime)
{
    for (int i = 10; i < 40; ++i)
        addPicture(numbered(i), i == 15 ? kYellow : kRed, 64, 64);
    OpenedFiles opened(folders.pictures());
    start({"p15.jpg"});
    ASSERT_TRUE(waitForPicture("p15.jpg", kYellow)) << situation();
    std::set<std::string> expected;
    for (int i = 13; i <= 35; ++i)
        expected.insert(numbered(i));
    EXPECT_TRUE(waitUntil([&] { return opened.soFar() == expected; })) << testing::PrintToString(opened.soFar());
    // One step to the front: one more there. Whatever was read besides would show by now.
    input.press(key::kRight);
    expected.insert("p12.jpg");
    EXPECT_TRUE(waitUntil([&] { return opened.soFar() == expected; })) << testing::PrintToString(opened.soFar());
}

TEST_F(StepTest, aFileReadAheadOfTimeIsNotReadAgain)
{
    addThree();
    OpenedFiles opened(folders.pictures());
    start({"b.jpg"});
    ASSERT_TRUE(waitForPicture("b.jpg", kGreen)) << situation();
    ASSERT_TRUE(waitUntil([&] { return opened.soFar().size() == 3; }));
    // The steps there and back make sure that what was decoded ahead has been delivered.
    input.press(key::kRight);
    ASSERT_TRUE(waitForPicture("a.jpg", kRed)) << situation();
    input.press(key::kLeft);
    ASSERT_TRUE(waitForPicture("b.jpg", kGreen)) << situation();
    addPicture("a.jpg", kYellow);
    input.press(key::kRight);
    EXPECT_TRUE(waitForPicture("a.jpg", kRed)) << situation();
}

TEST_F(StepTest, aFileThatHasGoneShowsNothingAndIsSteppedPast)
{
    writeSettings("AutoResizeToImageSize=false\n");
    for (int i = 100; i < 160; ++i)
        addPicture(numbered(i), kRed, 64, 64);
    start({"p100.jpg"});
    ASSERT_TRUE(waitForPicture("p100.jpg", kRed)) << situation();
    ASSERT_TRUE(program->waitForOutput("✅ Successfully loaded 60 files from directory\n"));
    // Far enough back from the first that nobody has read it ahead.
    std::filesystem::remove(folders.pictures() / "p159.jpg");
    input.press(key::kRight);
    EXPECT_TRUE(waitForTitle("Tallowmere • p159.jpg")) << situation();
    EXPECT_TRUE(waitUntil([&] { return showsNoPicture(); })) << situation();
    input.press(key::kRight);
    EXPECT_TRUE(waitForPicture("p158.jpg", kRed)) << situation();
}

} // namespace tallowmere
