// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/e2e/E2ETest.h"
#include "tests/e2e/TaggedFile.h"

#include <algorithm>
#include <utility>

namespace tallowmere {

using desktop::Colour;
using desktop::Point;
using desktop::Rectangle;
using desktop::waitUntil;
namespace key = desktop::key;

namespace {

constexpr Colour kWhite{255, 255, 255};
constexpr int kMargin = 16;
constexpr int kPillHeight = 24;
constexpr Colour kRedLabel{0xe5, 0x3a, 0x3a};

} // namespace

/// What lies over and under the picture, as it comes out on the screen. No automatic resizing: a view of 600 x 400,
/// filled by a picture of that size in one colour.
class OverlayTest : public E2ETest
{
protected:
    void startWith(const std::string &name, const std::string &settings, const Colour &colour = kWhite)
    {
        writeSettings("AutoResizeToImageSize=false\n" + settings);
        if (!std::filesystem::exists(folders.pictures() / name))
            addFile(name, photos::makePlainPng(600, 400,
                                               {static_cast<std::uint8_t>(colour.red),
                                                static_cast<std::uint8_t>(colour.green),
                                                static_cast<std::uint8_t>(colour.blue)}));
        start({name});
        // The menu bar is part of the window's contents, the view is the rest.
        const auto contents = windows.contents(window);
        m_view = {contents.x, contents.y + contents.height - 400, 600, 400};
        ASSERT_TRUE(screen.waitForColour(m_view.centre(), colour, 2)) << situation();
    }
    [[nodiscard]] Point infoPoint(int x, int fromBottom = kMargin + kPillHeight / 2) const
    {
        return {m_view.x + x, m_view.y + m_view.height - fromBottom};
    }
    [[nodiscard]] Point namePoint(int fromRight, int fromBottom = kMargin + kPillHeight / 2) const
    {
        return {m_view.x + m_view.width - fromRight, m_view.y + m_view.height - fromBottom};
    }
    [[nodiscard]] bool differsFromPicture(const Point &point, const Colour &picture = kWhite) const
    {
        return !alike(screen.at(point), picture, 4);
    }
    /// The right end of a pill that begins at the left margin, seen in its middle row; 0: there is none.
    [[nodiscard]] int infoPillEnd() const
    {
        const auto row = screen.capture({m_view.x, infoPoint(0).y, m_view.width, 1});
        int end = 0;
        for (int x = kMargin; x < row.width / 2 && !alike(row.at(x, 0), row.at(2, 0), 4); ++x)
            end = x + 1;
        return end;
    }
    /// Whether the lowest @p rows show nothing but the colour of the corner and the picture's white.
    [[nodiscard]] bool showsOnlyGroundAndWhite(int rows) const
    {
        const auto contents = windows.contents(window);
        const auto seen =
            screen.capture({contents.x + 1, contents.y + contents.height - rows, contents.width - 2, rows - 1});
        const Colour ground = seen.at(1, rows - 3);
        return std::ranges::all_of(
            seen.pixels, [&](const Colour &pixel) { return alike(pixel, ground, 4) || alike(pixel, kWhite, 4); });
    }
    /// The right end once the pill has come and stays.
    [[nodiscard]] int settledInfoPillEnd() const
    {
        int last = 0;
        EXPECT_TRUE(waitUntil([&] {
            const int now = infoPillEnd();
            return now > 0 && std::exchange(last, now) == now;
        })) << situation();
        return last;
    }
    void expectCircle(std::string_view tags, const Colour &colour)
    {
        const TaggedFile file(addFile("a.png", photos::makePlainPng(600, 400, {255, 255, 255})), tags);
        if (!file.tagged())
            GTEST_SKIP() << file.whyNot();
        startWith("a.png", "ShowFileTag=true\nShowFileSize=true\n");
        EXPECT_TRUE(screen.waitForColour(infoPoint(kMargin + 8 + 6), colour, 2)) << situation();
        EXPECT_TRUE(alike(screen.at(infoPoint(kMargin + 8 + 3)), colour, 2));
        EXPECT_FALSE(alike(screen.at(infoPoint(kMargin + 5)), colour, 40)) << "12 points wide";
        EXPECT_FALSE(alike(screen.at(infoPoint(kMargin + 8 + 14)), colour, 40));
    }
    /// Whether the pixels of a capsule of this place and size are the pill's, and those around it the picture's.
    void expectPill(int left, int right)
    {
        const int top = m_view.height - kMargin - kPillHeight;
        const auto at = [&](int x, int y) { return Point{m_view.x + x, m_view.y + y}; };
        EXPECT_TRUE(waitUntil([&] { return differsFromPicture(at(left + 3, top + 12)); })) << situation();
        EXPECT_TRUE(differsFromPicture(at((left + right) / 2, top + 1)));
        EXPECT_TRUE(differsFromPicture(at((left + right) / 2, top + kPillHeight - 2)));
        EXPECT_TRUE(differsFromPicture(at(right - 4, top + 12)));
        EXPECT_FALSE(differsFromPicture(at(left - 2, top + 12)));
        EXPECT_FALSE(differsFromPicture(at(right + 2, top + 12)));
        EXPECT_FALSE(differsFromPicture(at((left + right) / 2, top - 2)));
        EXPECT_FALSE(differsFromPicture(at((left + right) / 2, top + kPillHeight + 1)));
        // Its corners are round.
        EXPECT_FALSE(differsFromPicture(at(left + 1, top + 1)));
        EXPECT_FALSE(differsFromPicture(at(right - 2, top + kPillHeight - 2)));
    }

    Rectangle m_view;
};

TEST_F(OverlayTest, theInformationLiesInAPillAtTheLowerLeft)
{
    startWith("a.png", "ShowFileSize=true\nShowImageResolution=true\n");
    ASSERT_TRUE(waitUntil([this] { return infoPillEnd() > kMargin + 60; })) << situation();
    expectPill(kMargin, infoPillEnd());
    // Translucent: some of the picture's white comes through, and dark text lies on it.
    const auto pill = screen.capture({m_view.x + kMargin, infoPoint(0).y - 6, infoPillEnd() - kMargin, 12});
    const auto dark = std::ranges::count_if(pill.pixels, [](const Colour &pixel) { return pixel.green < 110; });
    const auto light = std::ranges::count_if(pill.pixels, [](const Colour &pixel) { return pixel.green > 220; });
    EXPECT_GT(dark, 40);
    EXPECT_GT(light, 400);
}

TEST_F(OverlayTest, withAllThreeInformationSettingsOffThereIsNoPill)
{
    startWith("a.png", "ShowFileSize=false\nShowCreationDate=false\nShowImageResolution=false\n");
    waitUntilKeysAreDealtWith();
    EXPECT_TRUE(waitUntil([this] { return showsOnlyGroundAndWhite(45); })) << situation();
}

TEST_F(OverlayTest, aNameOfTenCharactersInTheCornerHasAPillOf150)
{
    startWith("abcdef.png", "FileNameDisplayLocation=inCorner\nShowFileSize=false\nShowImageResolution=false\n");
    expectPill(600 - kMargin - 150, 600 - kMargin);
    EXPECT_EQ(windows.title(window), "Tallowmere");
}

TEST_F(OverlayTest, aVeryLongNameInTheCornerHasAPillOf300)
{
    startWith(std::string(200, 'w') + ".png",
              "FileNameDisplayLocation=inCorner\nShowFileSize=false\nShowImageResolution=false\n");
    expectPill(600 - kMargin - 300, 600 - kMargin);
}

TEST_F(OverlayTest, aVeryLongNameInTheCornerIsTruncatedInTheMiddle)
{
    // Underscores lie below the line on which letters and full stops stand.
    startWith(std::string(100, '_') + std::string(100, 'W') + ".png",
              "FileNameDisplayLocation=inCorner\nShowFileSize=false\nShowImageResolution=false\n");
    constexpr int kPadding = 15;
    constexpr int kTextWidth = 300 - 2 * kPadding;
    constexpr int kThird = kTextWidth / 3;
    constexpr int kCapitalsFromTop = 8;
    constexpr int kCapitalsHeight = 6;
    const Rectangle left{m_view.x + 600 - kMargin - 300 + kPadding,
                         m_view.y + 400 - kMargin - kPillHeight + kCapitalsFromTop, kThird, kCapitalsHeight};
    const Rectangle right{left.x + 2 * kThird, left.y, kThird, kCapitalsHeight};
    const auto darkIn = [this](const Rectangle &part) {
        const auto seen = screen.capture(part);
        return std::ranges::count_if(seen.pixels, [](const Colour &pixel) { return pixel.green < 110; });
    };
    EXPECT_TRUE(waitUntil([&] { return darkIn(right) > 30; })) << "its end, " << darkIn(right) << '\n' << situation();
    EXPECT_EQ(darkIn(left), 0) << "its beginning";
    // Which is there, below.
    const Rectangle below{left.x, left.y + kCapitalsHeight, kThird,
                          kPillHeight - kCapitalsFromTop - kCapitalsHeight - 2};
    EXPECT_GT(darkIn(below), 60);
}

TEST_F(OverlayTest, anUnknownLocationOfTheNameIsTheTitle)
{
    startWith("a.png", "FileNameDisplayLocation=somewhere\nShowFileSize=false\nShowImageResolution=false\n");
    EXPECT_TRUE(waitForTitle("Tallowmere • a.png")) << situation();
    EXPECT_FALSE(differsFromPicture(namePoint(kMargin + 75)));
}

TEST_F(OverlayTest, aLocationOfTheNameInTheWrongCaseIsTheTitle)
{
    startWith("a.png", "FileNameDisplayLocation=InCorner\nShowFileSize=false\nShowImageResolution=false\n");
    EXPECT_TRUE(waitForTitle("Tallowmere • a.png")) << situation();
    EXPECT_FALSE(differsFromPicture(namePoint(kMargin + 75)));
}

TEST_F(OverlayTest, whereThereIsNoRoomForBothTheNameGivesWay)
{
    startWith("a.png", "FileNameDisplayLocation=inCorner\nShowFileSize=true\nShowImageResolution=true\n");
    ASSERT_TRUE(waitUntil([this] { return infoPillEnd() > kMargin && differsFromPicture(namePoint(kMargin + 75)); }));
    const auto frame = windows.frame(window);
    windows.moveAndResize(window, {frame.x, frame.y, 300, windows.contents(window).height});
    ASSERT_TRUE(waitUntil([this] { return windows.contents(window).width == 300; })) << situation();
    m_view = {windows.contents(window).x, m_view.y, 300, 400};
    // The picture is 300 x 200 now: the pills lie on the window's colour.
    EXPECT_TRUE(waitUntil([this] {
        const Colour ground = screen.at({m_view.x + 3, m_view.y + m_view.height - 3});
        return !alike(ground, kWhite, 4) && !differsFromPicture(namePoint(kMargin + 20), ground) &&
               differsFromPicture(infoPoint(kMargin + 5), ground);
    })) << situation();
}

TEST_F(OverlayTest, theFilesLabelIsACircleInItsColour)
{
    expectCircle("holiday,Red", kRedLabel);
}

TEST_F(OverlayTest, aLabelColourFarFromTheStandardOneIsShownAsCustomised)
{
    expectCircle("Red,#00c8ff", {0x00, 0xc8, 0xff});
}

TEST_F(OverlayTest, aLabelColourSlightlyOffIsShownInTheStandardColour)
{
    expectCircle("Red,#d53a4a", kRedLabel);
}

TEST_F(OverlayTest, anAbsurdLabelHasNoCircle)
{
    const TaggedFile file(addFile("a.png", photos::makePlainPng(600, 400, {255, 255, 255})),
                          std::string(3000, ',') + "#gg0000,#12345,\xff\xfe," + std::string(500, 'R'));
    if (!file.tagged())
        GTEST_SKIP() << file.whyNot();
    startWith("a.png", "ShowFileTag=true\nShowFileSize=true\nShowImageResolution=false\n");
    const int withTag = settledInfoPillEnd();
    program->end();
    startWith("a.png", "ShowFileTag=false\nShowFileSize=true\nShowImageResolution=false\n");
    EXPECT_EQ(withTag, settledInfoPillEnd()) << "as wide as without a label";
}

TEST_F(OverlayTest, anImageThatReportsAWidthOfZeroLeavesTheResolutionOut)
{
    auto bytes = photos::makePlainPng(600, 400, {255, 255, 255});
    constexpr std::ptrdiff_t kWidth = 16; // behind the signature, the chunk's length and its name
    std::fill_n(bytes.begin() + kWidth, 4, std::byte{0});
    addFile("a.png", bytes);
    const auto pillEndWith = [this](const std::string &resolution) {
        writeSettings("AutoResizeToImageSize=false\nShowFileSize=true\nShowImageResolution=" + resolution + "\n");
        start({"a.png"});
        const auto contents = windows.contents(window);
        m_view = {contents.x, contents.y + contents.height - 400, 600, 400};
        const int end = settledInfoPillEnd();
        program->end();
        return end;
    };
    EXPECT_EQ(pillEndWith("true"), pillEndWith("false"));
}

TEST_F(OverlayTest, inTheCornerOfTheMenuMovesTheNameThere)
{
    startWith("a.png", "ShowFileSize=false\nShowImageResolution=false\n");
    ASSERT_TRUE(waitForTitle("Tallowmere • a.png")) << situation();
    input.press('v', {key::kAlt});
    // From the last item of the View menu to the second of its submenu.
    for (const std::uint32_t each : {key::kUp, key::kRight, key::kDown, key::kReturn})
        input.press(each);
    EXPECT_TRUE(waitForTitle("Tallowmere")) << situation();
    expectPill(600 - kMargin - 150, 600 - kMargin);
    EXPECT_NE(settings().find("FileNameDisplayLocation=inCorner"), std::string::npos) << settings();
}

TEST_F(OverlayTest, showFileSizeOfTheMenuSwitchesTheInformationOffAndOn)
{
    startWith("a.png", "ShowFileSize=true\nShowImageResolution=false\n");
    ASSERT_GT(settledInfoPillEnd(), 0);
    const auto chooseFirstItem = [this] {
        input.press('v', {key::kAlt});
        input.press(key::kReturn);
    };
    chooseFirstItem();
    EXPECT_TRUE(waitUntil([this] { return infoPillEnd() == 0; })) << situation();
    chooseFirstItem();
    EXPECT_GT(settledInfoPillEnd(), 0);
}

TEST_F(OverlayTest, aTransparentPictureLiesOnACheckerboardWhereItIsWanted)
{
    addFile("a.png", photos::makeClearPng(600, 400));
    writeSettings("AutoResizeToImageSize=false\nTransparencyBackground=checkers\nShowFileSize=false\n"
                  "ShowImageResolution=false\n");
    start({"a.png"});
    const auto contents = windows.contents(window);
    const Point origin{contents.x, contents.y + contents.height - 400};
    const Colour square{209, 209, 209};
    const Colour base{224, 224, 224};
    EXPECT_TRUE(screen.waitForColour({origin.x + 305, origin.y + 205}, square, 1)) << situation();
    EXPECT_TRUE(screen.waitForColour({origin.x + 315, origin.y + 205}, base, 1)) << situation();
    EXPECT_TRUE(screen.waitForColour({origin.x + 315, origin.y + 215}, square, 1)) << situation();
}

TEST_F(OverlayTest, anOpaquePictureHasNoCheckerboard)
{
    writeSettings("AutoResizeToImageSize=false\nTransparencyBackground=checkers\nShowFileSize=false\n"
                  "ShowImageResolution=false\n");
    addPicture("a.jpg", kRed, 300, 200);
    start({"a.jpg"});
    ASSERT_TRUE(waitForPicture("a.jpg", kRed)) << situation();
    waitUntilKeysAreDealtWith();
    const auto contents = windows.contents(window);
    const Rectangle corner{contents.x + 1, contents.y + contents.height - 20, 60, 18};
    EXPECT_TRUE(waitUntil([&] {
        const auto seen = screen.capture(corner);
        return std::ranges::all_of(seen.pixels, [&](const Colour &pixel) { return pixel == seen.at(0, 0); }) &&
               alike(screen.at(contents.centre()), kRed);
    })) << situation();
}

TEST_F(OverlayTest, withASolidColourTheBackgroundShowsThroughATransparentPicture)
{
    addFile("a.png", photos::makeClearPng(300, 200));
    writeSettings("AutoResizeToImageSize=false\nTransparencyBackground=solidColor\nShowFileSize=false\n"
                  "ShowImageResolution=false\n");
    start({"a.png"});
    EXPECT_TRUE(waitForTitle("Tallowmere • a.png")) << situation();
    waitUntilKeysAreDealtWith();
    EXPECT_TRUE(waitUntil([this] { return showsOnlyGroundAndWhite(400); })) << situation();
    EXPECT_FALSE(alike(screen.at(windows.contents(window).centre()), kWhite, 4));
}

} // namespace tallowmere
