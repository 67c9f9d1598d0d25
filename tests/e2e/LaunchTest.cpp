// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "benchmarks/PhotoFormats.h"
#include "tests/e2e/E2ETest.h"

#include <webp/encode.h>
#include <webp/mux.h>

#include <algorithm>
#include <cstdlib>
#include <stdexcept>

namespace tallowmere {

using desktop::Rectangle;
using desktop::waitUntil;

namespace {

/// One frame a colour, a tenth of a second each.
std::vector<std::byte> animatedWebp(int width, int height, const std::vector<desktop::Colour> &frames)
{
    const std::unique_ptr<WebPAnimEncoder, decltype(&WebPAnimEncoderDelete)> encoder(
        WebPAnimEncoderNew(width, height, nullptr), &WebPAnimEncoderDelete);
    int milliseconds = 0;
    for (const auto &colour : frames) {
        WebPPicture picture;
        if (!encoder || !WebPPictureInit(&picture))
            throw std::runtime_error("no WebP encoder");
        picture.use_argb = 1;
        picture.width = width;
        picture.height = height;
        const std::unique_ptr<WebPPicture, decltype(&WebPPictureFree)> owner(&picture, &WebPPictureFree);
        if (!WebPPictureAlloc(&picture))
            throw std::runtime_error("no memory for a WebP frame");
        std::fill_n(picture.argb, static_cast<std::ptrdiff_t>(picture.argb_stride) * height,
                    0xff000000U | static_cast<std::uint32_t>((colour.red << 16) | (colour.green << 8) | colour.blue));
        if (!WebPAnimEncoderAdd(encoder.get(), &picture, milliseconds, nullptr))
            throw std::runtime_error("a WebP frame was refused");
        milliseconds += 100;
    }
    WebPData data;
    WebPDataInit(&data);
    if (!WebPAnimEncoderAdd(encoder.get(), nullptr, milliseconds, nullptr) ||
        !WebPAnimEncoderAssemble(encoder.get(), &data))
        throw std::runtime_error("the WebP animation was not finished");
    const auto all = std::as_bytes(std::span(data.bytes, data.size));
    std::vector<std::byte> bytes(all.begin(), all.end());
    WebPDataClear(&data);
    return bytes;
}

} // namespace

class LaunchTest : public E2ETest
{
protected:
    /// The frame lies in the middle of the work area; a pixel may be lost to rounding.
    [[nodiscard]] bool waitUntilCentred(int tolerance = 1)
    {
        const auto area = screenAndKeys.workArea();
        return waitUntil([&] {
            const auto frame = windows.frame(window);
            return std::abs(frame.centre().x - area.centre().x) <= tolerance &&
                   std::abs(frame.centre().y - area.centre().y) <= tolerance;
        });
    }
};

TEST_F(LaunchTest, withoutAFileShowsTheIdleWindowCentredWith600By400Contents)
{
    start();
    EXPECT_TRUE(waitForTitle("Tallowmere")) << situation();
    const Rectangle contents = windows.contents(window);
    EXPECT_EQ(contents.width, 600);
    // The menu bar is part of the window and not of its contents.
    EXPECT_GE(contents.height, 400 + 15);
    EXPECT_LE(contents.height, 400 + 45);
    EXPECT_TRUE(waitUntilCentred()) << situation();
    EXPECT_TRUE(showsNoPicture());
    EXPECT_TRUE(program->running());
}

TEST_F(LaunchTest, theIdleScreenShowsTheLogoAndTheInstruction)
{
    start();
    const Rectangle contents = windows.contents(window);
    const auto distinct = [&](int fromTop, int height) {
        const auto part = screen.capture({contents.x + 40, contents.y + fromTop, contents.width - 80, height});
        return std::ranges::count_if(part.pixels,
                                     [&](const auto &pixel) { return !alike(pixel, part.pixels.front(), 40); });
    };
    // Above the middle the logo, below it a line of text.
    EXPECT_TRUE(waitUntil([&] { return distinct(80, 150) > 200; })) << situation();
    EXPECT_TRUE(waitUntil([&] { return distinct(230, 150) > 200; })) << situation();
}

TEST_F(LaunchTest, withAPhotoFitsTheWindowToItInTheMiddleOfTheWorkArea)
{
    addPicture("photo.jpg", kRed, 640, 480);
    start({"photo.jpg"});
    EXPECT_TRUE(waitForPicture("photo.jpg", kRed)) << situation();
    EXPECT_TRUE(waitUntil([&] { return std::abs(windows.frame(window).width - 640) <= 2; })) << situation();
    EXPECT_TRUE(waitUntilCentred()) << situation();
    // The picture reaches the contents' lower corners: no wider and no taller than it.
    const Rectangle contents = windows.contents(window);
    EXPECT_TRUE(screen.waitForColour({contents.x + 4, contents.y + contents.height - 5}, kSurround));
    EXPECT_TRUE(screen.waitForColour({contents.x + contents.width - 5, contents.y + contents.height - 5}, kSurround));
    EXPECT_TRUE(screen.waitForColour({contents.x + 4, contents.y + contents.height - 475}, kSurround));
}

TEST_F(LaunchTest, aPhotoLargerThanTheScreenFillsTheWorkAreaInOneDirection)
{
    addPicture("large.jpg", kGreen, 3000, 2000);
    start({"large.jpg"});
    EXPECT_TRUE(waitForPicture("large.jpg", kGreen)) << situation();
    const Rectangle area = screenAndKeys.workArea();
    EXPECT_TRUE(waitUntil([&] { return std::abs(windows.frame(window).height - area.height) <= 1; })) << situation();
    EXPECT_TRUE(waitUntilCentred()) << situation();
    const Rectangle frame = windows.frame(window);
    const double ratio = static_cast<double>(frame.width) / (frame.height - 45.0);
    EXPECT_NEAR(ratio, 1.5, 0.1) << situation();
}

/// Two pixels a point, and room for 1440 x 875 points.
class LaunchOnDenseScreenTest : public E2ETest
{
protected:
    LaunchOnDenseScreenTest()
        : E2ETest(std::nullopt, {.width = 2880, .height = 1800, .marginTop = 50, .marginBottom = 0, .marginLeft = 0})
    {
        setEnvironment("QT_SCALE_FACTOR", "2");
    }
    [[nodiscard]] bool waitUntilCentred()
    {
        const auto area = screenAndKeys.workArea().centre();
        return waitUntil([&] {
            const auto frame = windows.frame(window).centre();
            return std::abs(frame.x - area.x) <= 2 && std::abs(frame.y - area.y) <= 2;
        });
    }
    /// How far the picture's surround reaches upwards from the lower left corner.
    [[nodiscard]] int heightOfPicture() const
    {
        const Rectangle contents = windows.contents(window);
        const auto column = screen.capture({contents.x + 4, contents.y, 1, contents.height});
        const auto from = std::find_if(column.pixels.rbegin(), column.pixels.rend(),
                                       [](const auto &pixel) { return !alike(pixel, kSurround); });
        return static_cast<int>(from - column.pixels.rbegin());
    }
};

TEST_F(LaunchOnDenseScreenTest, aPictureOf4000By3000AtScaleTwoIsFittedToTheWorkAreaAndCentred)
{
    addPicture("large.jpg", kGreen, 4000, 3000);
    start({"large.jpg"});
    EXPECT_TRUE(waitForPicture("large.jpg", kGreen)) << situation();
    EXPECT_TRUE(waitUntil([&] { return std::abs(windows.frame(window).height - 1750) <= 2; })) << situation();
    EXPECT_TRUE(waitUntilCentred()) << situation();
    const int width = windows.contents(window).width;
    EXPECT_TRUE(waitUntil([&] { return std::abs(heightOfPicture() - width * 3.0 / 4.0) <= 2; }))
        << width << " x " << heightOfPicture() << '\n'
        << situation();
}

TEST_F(LaunchOnDenseScreenTest, aPictureOf100By100AtScaleTwoHasAContentOf50By50)
{
    addPicture("small.jpg", kGreen, 100, 100);
    start({"small.jpg"});
    EXPECT_TRUE(waitForTitle("Tallowmere • small.jpg")) << situation();
    EXPECT_TRUE(waitUntil([&] { return std::abs(windows.contents(window).width - 100) <= 1; })) << situation();
    EXPECT_TRUE(waitUntilCentred()) << situation();
    EXPECT_TRUE(waitUntil([&] { return std::abs(heightOfPicture() - 100) <= 1; })) << heightOfPicture() << '\n'
                                                                                   << situation();
}

TEST_F(LaunchTest, ofThreeFilesTheFirstIsOpened)
{
    addPicture("a.jpg", kRed);
    addPicture("b.jpg", kGreen);
    addPicture("c.jpg", kBlue);
    start({"b.jpg", "c.jpg", "a.jpg"});
    EXPECT_TRUE(waitForPicture("b.jpg", kGreen)) << situation();
    EXPECT_TRUE(program->waitForOutput("✅ Successfully loaded 3 files from directory\n")) << situation();
}

TEST_F(LaunchTest, anUpperCaseExtensionIsAccepted)
{
    addPicture("HOLIDAY.JPG", kBlue);
    start({"HOLIDAY.JPG"});
    EXPECT_TRUE(waitForPicture("HOLIDAY.JPG", kBlue)) << situation();
}

TEST_F(LaunchTest, aPngIsShown)
{
    addFile("a.png", photos::makePlainPng(300, 200, {224, 200, 24}));
    start({"a.png"});
    EXPECT_TRUE(waitForPicture("a.png", kYellow)) << situation();
}

TEST_F(LaunchTest, everyFormatIsShownAndSteppedThrough)
{
    const auto plain = [](const desktop::Colour &colour) {
        return bench::Picture{320, 240, [colour](int, std::span<std::uint8_t> row) {
                                  for (std::size_t i = 0; i + 2 < row.size(); i += 3) {
                                      row[i] = static_cast<std::uint8_t>(colour.red);
                                      row[i + 1] = static_cast<std::uint8_t>(colour.green);
                                      row[i + 2] = static_cast<std::uint8_t>(colour.blue);
                                  }
                              }};
    };
    addFile("a.avif", bench::encodeAvif(plain(kRed)));
    addFile("b.heic", bench::encodeHeic(plain(kGreen)));
    addFile("c.heif", bench::encodeHeic(plain(kBlue)));
    addFile("d.webp", bench::encodeWebp(plain(kYellow)));
    start({"a.avif"});
    EXPECT_TRUE(waitForPicture("a.avif", kRed)) << situation();
    input.press(desktop::key::kLeft);
    EXPECT_TRUE(waitForPicture("b.heic", kGreen)) << situation();
    input.press(desktop::key::kLeft);
    EXPECT_TRUE(waitForPicture("c.heif", kBlue)) << situation();
    input.press(desktop::key::kLeft);
    EXPECT_TRUE(waitForPicture("d.webp", kYellow)) << situation();
}

TEST_F(LaunchTest, aPngWhilePngIsSwitchedOffLeavesTheIdleWindow)
{
    writeSettings("PNGSupportEnabled=false\n");
    addFile("a.png", photos::makePlainPng(300, 200, {224, 200, 24}));
    addPicture("b.jpg", kRed);
    start({"a.png", "b.jpg"});
    // Refused, and the next of the list is not taken in its place.
    waitUntilKeysAreDealtWith();
    EXPECT_EQ(windows.title(window), "Tallowmere");
    EXPECT_TRUE(showsNoPicture()) << situation();
    EXPECT_EQ(program->output().find("Successfully"), std::string::npos);
}

TEST_F(LaunchTest, theOnlyFileBeingAPngWhilePngIsSwitchedOffLeavesTheIdleWindow)
{
    writeSettings("PNGSupportEnabled=false\n");
    addFile("x.png", photos::makePlainPng(300, 200, {224, 200, 24}));
    start({"x.png"});
    waitUntilKeysAreDealtWith();
    EXPECT_EQ(windows.title(window), "Tallowmere");
    EXPECT_TRUE(showsNoPicture()) << situation();
    EXPECT_EQ(program->output().find("Successfully loaded"), std::string::npos);
}

TEST_F(LaunchTest, anAnimatedWebpShowsItsFirstFrame)
{
    addFile("a.webp", animatedWebp(320, 240, {kGreen, kRed, kBlue}));
    start({"a.webp"});
    EXPECT_TRUE(waitForPicture("a.webp", kGreen)) << situation();
    waitUntilKeysAreDealtWith();
    EXPECT_TRUE(waitForPicture("a.webp", kGreen)) << "and stays there\n" << situation();
}

TEST_F(LaunchTest, theSettingForAnImageServiceChangesNeitherThePictureNorWhoDecodesIt)
{
    addPicture("a.jpg", kRed);
    for (const char *value : {"true", "false"}) {
        writeSettings(std::string("UseXPCService=") + value + "\n");
        start({"a.jpg"});
        EXPECT_TRUE(waitForPicture("a.jpg", kRed)) << value << situation();
        const auto tasks = std::filesystem::path("/proc") / std::to_string(program->id()) / "task";
        for (const auto &task : std::filesystem::directory_iterator(tasks))
            EXPECT_EQ(desktop::readFile(task.path() / "children"), "") << "another process was started";
        program->end();
    }
}

TEST_F(LaunchTest, aFileThatIsNoPictureByItsNameLeavesTheIdleWindow)
{
    addFile("notes.txt", picture(kRed));
    start({"notes.txt"});
    EXPECT_TRUE(waitForTitle("Tallowmere"));
    EXPECT_TRUE(showsNoPicture()) << situation();
    EXPECT_EQ(program->errors(), "");
}

TEST_F(LaunchTest, anOrientationTagTurnsThePhotoUpright)
{
    // Stored lying: its left becomes the top when turned clockwise, as orientation 6 asks.
    photos::JpegOptions options;
    options.orientation = 6;
    addFile("turned.jpg", photos::makeHalves(600, 400, {208, 32, 32}, {32, 64, 200}, options));
    start({"turned.jpg"});
    EXPECT_TRUE(waitForTitle("Tallowmere • turned.jpg"));
    EXPECT_TRUE(waitUntil([&] { return std::abs(windows.frame(window).width - 400) <= 2; })) << situation();
    const Rectangle contents = windows.contents(window);
    const int bottom = contents.y + contents.height;
    EXPECT_TRUE(screen.waitForColour({contents.centre().x, bottom - 590}, kRed)) << situation();
    EXPECT_TRUE(screen.waitForColour({contents.centre().x, bottom - 330}, kRed)) << situation();
    EXPECT_TRUE(screen.waitForColour({contents.centre().x, bottom - 270}, kBlue)) << situation();
    EXPECT_TRUE(screen.waitForColour({contents.centre().x, bottom - 10}, kBlue)) << situation();
}

TEST_F(LaunchTest, aPhotoOf48MegapixelsIsShown)
{
    addPicture("huge.jpg", kYellow, 8000, 6000);
    start({"huge.jpg"});
    EXPECT_TRUE(waitForPicture("huge.jpg", kYellow)) << situation();
}

TEST_F(LaunchTest, theWindowIsKnownToTheDesktopByTheProgramsName)
{
    start();
    EXPECT_EQ(windows.className(window), "tallowmere");
}

} // namespace tallowmere
