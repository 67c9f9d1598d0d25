// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/e2e/E2ETest.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace tallowmere {

using desktop::Colour;
using desktop::Point;
using desktop::Rectangle;
using desktop::waitUntil;
namespace key = desktop::key;

/// Pictures of 640 x 480 whose middle 320 x 240 have a colour of their own, at a scale factor.
class ZoomTest : public E2ETest
{
protected:
    /// Large enough for twice the medium window.
    ZoomTest() : E2ETest(std::nullopt, {.width = 2560, .height = 1440}) {}

    void SetUp() override
    {
        addPicture("a.jpg", kRed);
        addPicture("b.jpg", kGreen);
    }
    void setScale(double factor)
    {
        m_scale = factor;
        setEnvironment("QT_SCALE_FACTOR", std::to_string(factor));
    }
    void startWithFixedSize()
    {
        writeSettings("AutoResizeToImageSize=false\n");
        start({"a.jpg"});
        ASSERT_TRUE(waitForPicture("a.jpg", kRed)) << situation();
        ASSERT_TRUE(program->waitForOutput("✅ Successfully loaded 2 files from directory\n")) << situation();
    }
    /// In points of the program, rounded to whole ones as windows are; a menu bar adds to the height.
    [[nodiscard]] bool waitForContents(double width, double height)
    {
        return waitUntil([&] {
            const Rectangle contents = windows.contents(window);
            return std::abs(contents.width - std::round(width) * m_scale) <= 1 &&
                   contents.height >= std::round(height) * m_scale - 1;
        });
    }
    [[nodiscard]] bool waitUntilFrameRests()
    {
        const Point middle = screenAndKeys.workArea().centre();
        return waitUntil([&] {
            const Point centre = windows.frame(window).centre();
            return std::abs(centre.x - middle.x) <= 2 && std::abs(centre.y - middle.y) <= 2;
        });
    }
    /// The middle of the picture area: it ends where the window does, and begins below the menu bar.
    [[nodiscard]] Point middle() const
    {
        const Rectangle contents = windows.contents(window);
        return {contents.centre().x, contents.y + contents.height - static_cast<int>(m_areaHeight * m_scale / 2)};
    }
    /// @p dx and @p dy in points from the middle.
    [[nodiscard]] bool waitForColourAt(double dx, double dy, const Colour &colour)
    {
        return waitUntil([&] { return alike(colourAt(dx, dy), colour); });
    }
    [[nodiscard]] Colour colourAt(double dx, double dy) const { return screen.at(pointAt(dx, dy)); }
    [[nodiscard]] Point pointAt(double dx, double dy) const
    {
        const Point from = middle();
        return {from.x + static_cast<int>(std::lround(dx * m_scale)),
                from.y + static_cast<int>(std::lround(dy * m_scale))};
    }
    /// Points on either side of an edge: where a compressed picture's colours run into each other.
    static constexpr double kMargin = 8;
    /// The middle part reaches to @p reach points on the left and on the right.
    [[nodiscard]] bool waitForReach(double reach, const Colour &colour = kRed)
    {
        return waitUntil([&] {
            return alike(colourAt(reach - kMargin, 0), colour) && alike(colourAt(-reach + kMargin, 0), colour) &&
                   !alike(colourAt(reach + kMargin, 0), colour) && !alike(colourAt(-reach - kMargin, 0), colour);
        });
    }
    /// Drags again and again: the picture itself ends at @p dx, @p dy in the end, with its outer part on the side where
    /// @p inwardsX and @p inwardsY point to.
    [[nodiscard]] bool dragUntilOuterEdge(const Point &from, const Point &to, double dx, double dy, double inwardsX,
                                          double inwardsY)
    {
        return waitUntil([&] {
            drag(from, to);
            return alike(colourAt(dx + inwardsX * kMargin, dy + inwardsY * kMargin), kSurround) &&
                   !alike(colourAt(dx - inwardsX * kMargin, dy - inwardsY * kMargin), kSurround);
        });
    }
    /// The size of the whole picture on the screen, as far as it is of the colours given, in pixels.
    [[nodiscard]] bool waitForPictureSize(double width, double height)
    {
        constexpr double kTolerance = 3;
        return waitUntil([&] {
            const Rectangle shown = pictureOnScreen();
            return std::abs(shown.width - width) <= kTolerance && std::abs(shown.height - height) <= kTolerance;
        });
    }
    [[nodiscard]] Rectangle pictureOnScreen() const
    {
        const desktop::Picture picture = screen.capture(windows.contents(window));
        Point first{picture.width, picture.height};
        Point last{-1, -1};
        for (int y = 0; y < picture.height; ++y) {
            for (int x = 0; x < picture.width; ++x) {
                if (!alike(picture.at(x, y), kRed) && !alike(picture.at(x, y), kSurround))
                    continue;
                first = {std::min(first.x, x), std::min(first.y, y)};
                last = {std::max(last.x, x), std::max(last.y, y)};
            }
        }
        return last.x < 0 ? Rectangle{} : Rectangle{first.x, first.y, last.x - first.x + 1, last.y - first.y + 1};
    }
    void drag(const Point &from, const Point &to)
    {
        input.moveTo(from);
        input.buttonDown();
        input.moveTo({(from.x + to.x) / 2, (from.y + to.y) / 2});
        input.moveTo(to);
        input.buttonUp();
    }

    double m_scale = 1.0;
    /// Points; the frame of a fixed size less title and menu bar, as the first window tells.
    double m_areaHeight = 0;
};

namespace {

/// The fitted picture in a view of this size: half the width of its middle part, points.
double fittedReach(double width, double height)
{
    return std::min({1.0, width / 640, height / 480}) * 160;
}

} // namespace

class ZoomAtScale : public ZoomTest, public testing::WithParamInterface<double>
{
protected:
    void start600By400()
    {
        setScale(GetParam());
        startWithFixedSize();
        // Wherever a menu bar lies: the picture is as wide as its height allows, and so tells the height.
        const Rectangle contents = windows.contents(window);
        ASSERT_TRUE(waitUntil([&] {
            int reach = 0;
            const int y = contents.centre().y;
            while (reach < contents.width / 2 && alike(screen.at({contents.centre().x + reach, y}), kRed))
                ++reach;
            const double width = reach * 4 / m_scale;
            m_areaHeight = width * 480 / 640;
            return m_areaHeight > 300 && m_areaHeight <= contents.height / m_scale + 2;
        })) << situation();
    }
    [[nodiscard]] double reach() const { return fittedReach(600, m_areaHeight); }
};

TEST_P(ZoomAtScale, keysZoomInAndOutAndBackAroundTheMiddle)
{
    start600By400();
    EXPECT_TRUE(waitForReach(reach())) << situation();
    input.control('=');
    EXPECT_TRUE(waitForReach(reach() * 1.5)) << situation();
    input.press('=', {key::kControl, key::kShift});
    EXPECT_TRUE(waitForReach(reach() * 2.25)) << situation();
    input.control('-');
    EXPECT_TRUE(waitForReach(reach() * 1.5)) << situation();
    input.control('0');
    EXPECT_TRUE(waitForReach(reach())) << situation();
    input.control('-');
    EXPECT_TRUE(waitForReach(reach() / 1.5)) << situation();
    for (int i = 0; i < 5; ++i)
        input.control('-');
    EXPECT_TRUE(waitForReach(reach() / 4)) << situation();
    input.control('0');
    EXPECT_TRUE(waitForReach(reach())) << situation();
}

TEST_P(ZoomAtScale, aDragPansTheMagnifiedPictureWithinItsLimits)
{
    start600By400();
    input.control('=');
    ASSERT_TRUE(waitForReach(reach() * 1.5)) << situation();
    drag(pointAt(60, 0), pointAt(20, 0));
    // The offset counts in the magnified picture: 40 points of it are 60 of the screen.
    EXPECT_TRUE(waitForColourAt(reach() * 1.5 - 60 - kMargin, 0, kRed)) << situation();
    EXPECT_TRUE(waitForColourAt(reach() * 1.5 - 60 + kMargin, 0, kSurround)) << situation();
    drag(pointAt(-250, 0), pointAt(250, 0));
    drag(pointAt(-250, 0), pointAt(250, 0));
    // No further than half of what sticks out: (640 x 1.5 - 600) / 2.
    EXPECT_TRUE(waitForColourAt(-reach() * 1.5 + 180 * 1.5 + kMargin, 0, kRed)) << situation();
    EXPECT_TRUE(waitForColourAt(-reach() * 1.5 + 180 * 1.5 - kMargin, 0, kSurround)) << situation();
}

TEST_P(ZoomAtScale, anImageSmallerThanTheViewIsNotEnlarged)
{
    addPicture("a.jpg", kRed, 200, 150);
    setScale(GetParam());
    startWithFixedSize();
    EXPECT_TRUE(waitForPictureSize(200 * m_scale, 150 * m_scale)) << situation();
    input.control('=');
    EXPECT_TRUE(waitForPictureSize(300 * m_scale, 225 * m_scale)) << situation();
}

INSTANTIATE_TEST_SUITE_P(Scales, ZoomAtScale, testing::Values(1.0, 1.25, 1.5, 2.0),
                         [](const auto &each) { return "at" + std::to_string(static_cast<int>(each.param * 100)); });

class ZoomAtScale1 : public ZoomAtScale
{};

TEST_P(ZoomAtScale1, theWheelPansAndNeverZooms)
{
    start600By400();
    input.control('=');
    ASSERT_TRUE(waitForReach(reach() * 1.5)) << situation();
    const double top = reach() * 0.75 * 1.5;
    ASSERT_TRUE(waitForColourAt(0, -top + kMargin, kRed)) << situation();
    // Away from the user: what lies above comes down, three lines of 20 points a notch.
    input.wheel(pointAt(100, 0), 1);
    EXPECT_TRUE(waitForColourAt(0, -top + 90 - kMargin, kSurround)) << situation();
    EXPECT_TRUE(waitForColourAt(0, -top + 90 + kMargin, kRed)) << situation();
    input.wheel(pointAt(100, 0), -1);
    EXPECT_TRUE(waitForColourAt(0, -top + kMargin, kRed)) << situation();
    EXPECT_TRUE(waitForReach(reach() * 1.5)) << situation();
}

TEST_P(ZoomAtScale1, withAutoResizeOffReturningToAFileKeepsTheZoomItHadAtTheSameWindowSize)
{
    start600By400();
    input.control('=');
    ASSERT_TRUE(waitForReach(reach() * 1.5)) << situation();
    input.press(key::kLeft);
    EXPECT_TRUE(waitForReach(reach(), kGreen)) << situation();
    input.press(key::kRight);
    EXPECT_TRUE(waitForReach(reach() * 1.5)) << situation();
    const Rectangle before = windows.contents(window);
    const Rectangle frame = windows.frame(window);
    windows.moveAndResize(window, {frame.x, frame.y, before.width + 80, before.height});
    EXPECT_TRUE(waitUntil([&] { return windows.contents(window).width == before.width + 80; }));
    EXPECT_TRUE(waitForReach(reach())) << situation();
    windows.moveAndResize(window, {frame.x, frame.y, before.width, before.height});
    EXPECT_TRUE(waitForReach(reach() * 1.5)) << situation();
}

TEST_P(ZoomAtScale1, aPresetSizeEndsTheZoom)
{
    start600By400();
    input.control('=');
    ASSERT_TRUE(waitForReach(reach() * 1.5)) << situation();
    const double menuHeight = windows.contents(window).height - m_areaHeight;
    input.control('1');
    ASSERT_TRUE(waitUntil([&] { return windows.frame(window).width == 600 && windows.frame(window).height == 400; }))
        << situation();
    m_areaHeight = windows.contents(window).height - menuHeight;
    EXPECT_TRUE(waitForReach(reach())) << situation();
}

TEST_P(ZoomAtScale1, aHorizontalWheelMovesThePictureSideways)
{
    start600By400();
    input.control('=');
    ASSERT_TRUE(waitForReach(reach() * 1.5)) << situation();
    // To the left: what lies there comes into view, three lines of 20 points a notch.
    input.wheelSideways(pointAt(100, 0), 1);
    EXPECT_TRUE(waitForColourAt(-reach() * 1.5 + 90 - kMargin, 0, kSurround)) << situation();
    EXPECT_TRUE(waitForColourAt(-reach() * 1.5 + 90 + kMargin, 0, kRed)) << situation();
    input.wheelSideways(pointAt(100, 0), -1);
    EXPECT_TRUE(waitForReach(reach() * 1.5)) << situation();
}

TEST_P(ZoomAtScale1, zoomInFrom8StopsAt10AndAFurtherZoomInChangesNothing)
{
    start600By400();
    for (int i = 0; i < 6; ++i)
        input.control('=');
    ASSERT_TRUE(waitForColourAt(-290, 0, kRed)) << situation();
    ASSERT_TRUE(waitForColourAt(290, 0, kRed)) << situation();
    // The offset counts in the magnified picture: this brings an edge of the middle part into view.
    const double offset = std::round(reach()) - 15;
    drag(pointAt(offset, 0), pointAt(0, 0));
    const double edge = reach() - offset;
    ASSERT_TRUE(waitForColourAt(edge * 10 - 3 * kMargin, 0, kRed)) << situation();
    ASSERT_TRUE(waitForColourAt(edge * 10 + 3 * kMargin, 0, kSurround)) << situation();
    const desktop::Picture before = screen.capture(windows.contents(window));
    input.control('=');
    // There and back, so that the key has been dealt with.
    input.press(key::kLeft);
    ASSERT_TRUE(waitForReach(reach(), kGreen)) << situation();
    input.press(key::kRight);
    EXPECT_TRUE(waitUntil([&] { return screen.capture(windows.contents(window)) == before; })) << situation();
    for (int i = 0; i < 5; ++i)
        input.control('-');
    const double zoom = 10 / std::pow(1.5, 5);
    EXPECT_TRUE(waitForColourAt(edge * zoom - kMargin, 0, kRed)) << situation();
    EXPECT_TRUE(waitForColourAt(edge * zoom + kMargin, 0, kSurround)) << situation();
}

TEST_P(ZoomAtScale1, zoomOutFromAThirdOrSoGivesAQuarterAndStops)
{
    start600By400();
    for (int i = 0; i < 3; ++i)
        input.control('-');
    ASSERT_TRUE(waitForReach(reach() / 3.375)) << situation();
    input.control('-');
    EXPECT_TRUE(waitForPictureSize(reach(), reach() * 3 / 4)) << situation();
    input.control('-');
    input.control('=');
    EXPECT_TRUE(waitForPictureSize(reach() * 1.5, reach() * 1.5 * 3 / 4)) << situation();
}

TEST_P(ZoomAtScale1, aDragAtZoom1AndBelowMovesNothingAndAboveItDoes)
{
    // So large that there would be room to move it even where it is shown reduced.
    addPicture("a.jpg", kRed, 1920, 1440);
    start600By400();
    drag(pointAt(0, 0), pointAt(40, 0));
    input.control('-');
    ASSERT_TRUE(waitForReach(reach() / 1.5)) << situation();
    drag(pointAt(0, 0), pointAt(40, 0));
    // Keys may overtake the mouse, a wheel does not: when it has had its effect, both drags have had theirs.
    input.wheelSideways(pointAt(0, 0), 1);
    EXPECT_TRUE(waitForColourAt(reach() / 1.5 + 40 - kMargin, 0, kRed)) << situation();
    EXPECT_TRUE(waitForColourAt(reach() / 1.5 + 40 + kMargin, 0, kSurround)) << situation();
    EXPECT_TRUE(waitForColourAt(-reach() / 1.5 + 40 - kMargin, 0, kSurround)) << situation();
    EXPECT_TRUE(waitForColourAt(-reach() / 1.5 + 40 + kMargin, 0, kRed)) << situation();
    input.control('0');
    input.control('=');
    ASSERT_TRUE(waitForReach(reach() * 1.5)) << situation();
    drag(pointAt(0, 0), pointAt(40, 0));
    EXPECT_TRUE(waitForColourAt(-reach() * 1.5 + 60 - kMargin, 0, kSurround)) << situation();
    EXPECT_TRUE(waitForColourAt(-reach() * 1.5 + 60 + kMargin, 0, kRed)) << situation();
}

TEST_P(ZoomAtScale1, aPictureTwiceAsWideAsTheViewMovesNoFurtherThanHalfTheView)
{
    addPicture("a.jpg", kRed, 1200, 900);
    start600By400();
    input.control('=');
    input.control('=');
    ASSERT_TRUE(waitForReach(reach() * 2.25)) << situation();
    const double halfWidth = reach() * 2 * 2.25;
    EXPECT_TRUE(dragUntilOuterEdge(pointAt(-280, 0), pointAt(280, 0), -halfWidth + 300 * 2.25, 0, 1, 0)) << situation();
    EXPECT_TRUE(dragUntilOuterEdge(pointAt(280, 0), pointAt(-280, 0), halfWidth - 300 * 2.25, 0, -1, 0)) << situation();
    // The picture is as high as the view: half the view is half of itself.
    const double far = m_areaHeight / 2 - 20;
    EXPECT_TRUE(dragUntilOuterEdge(pointAt(0, -far), pointAt(0, far), -200, 0, 0, 1)) << situation();
}

TEST_P(ZoomAtScale1, plusOfTheKeypadDoesNotZoomAndPlusOfTheMainKeysDoes)
{
    start600By400();
    input.control(key::kKeypadPlus);
    input.press('=', {key::kControl, key::kShift});
    EXPECT_TRUE(waitForReach(reach() * 1.5)) << situation();
    input.control(key::kKeypadMinus);
    input.press('=', {key::kControl, key::kShift});
    EXPECT_TRUE(waitForReach(reach() * 2.25)) << situation();
}

INSTANTIATE_TEST_SUITE_P(Scale, ZoomAtScale1, testing::Values(1.0), [](const auto &) { return "at100"; });

/// The window follows the picture.
class ZoomThatResizes : public ZoomTest, public testing::WithParamInterface<double>
{
protected:
    void SetUp() override
    {
        ZoomTest::SetUp();
        setScale(GetParam());
    }
};

TEST_P(ZoomThatResizes, keysResizeTheWindowUpToThePictureAndThenMagnifyIt)
{
    // Keys that come during an animation have a test of their own.
    writeSettings("AutoResizeWithAnimation=false\n");
    start({"a.jpg"});
    ASSERT_TRUE(waitForPicture("a.jpg", kRed)) << situation();
    // One pixel of the picture for one of the screen.
    const double width = std::round(640 / m_scale);
    const double height = std::round(480 / m_scale);
    m_areaHeight = height;
    ASSERT_TRUE(waitForContents(width, height)) << situation();
    ASSERT_TRUE(waitUntilFrameRests()) << situation();
    EXPECT_TRUE(waitForReach(width / 4)) << situation();

    input.control('-');
    EXPECT_TRUE(waitForContents(width / 1.5, height / 1.5)) << situation();
    EXPECT_TRUE(waitUntilFrameRests()) << situation();
    m_areaHeight = height / 1.5;
    EXPECT_TRUE(waitForReach(width / 4 / 1.5)) << situation();

    input.control('=');
    EXPECT_TRUE(waitForContents(width, height)) << situation();
    EXPECT_TRUE(waitUntilFrameRests()) << situation();
    m_areaHeight = height;
    EXPECT_TRUE(waitForReach(width / 4)) << situation();

    input.control('=');
    EXPECT_TRUE(waitForReach(width / 4 * 1.5)) << situation();
    EXPECT_TRUE(waitForContents(width, height)) << situation();

    input.control('0');
    EXPECT_TRUE(waitForReach(width / 4)) << situation();
    EXPECT_TRUE(waitForContents(width, height)) << situation();
}

TEST_F(ZoomTest, aSecondZoomKeyDuringTheAnimationCounts)
{
    addPicture("a.jpg", kRed, 900, 600);
    start({"a.jpg"});
    ASSERT_TRUE(waitForPicture("a.jpg", kRed)) << situation();
    ASSERT_TRUE(waitForContents(900, 600)) << situation();
    ASSERT_TRUE(waitUntilFrameRests()) << situation();
    input.control('-');
    input.control('-');
    EXPECT_TRUE(waitForContents(400, 267)) << situation();
    EXPECT_TRUE(waitUntilFrameRests()) << situation();
    input.control('=');
    input.control('=');
    input.control('=');
    EXPECT_TRUE(waitForContents(900, 600)) << situation();
    EXPECT_TRUE(waitUntilFrameRests()) << situation();
    m_areaHeight = 600;
    EXPECT_TRUE(waitForReach(225 * 1.5)) << situation();
}

TEST_P(ZoomThatResizes, everyPresetHasTheFrameItShouldHave)
{
    start({"a.jpg"});
    ASSERT_TRUE(waitForPicture("a.jpg", kRed)) << situation();
    ASSERT_TRUE(waitForContents(640 / m_scale, 480 / m_scale)) << situation();
    ASSERT_TRUE(waitUntilFrameRests()) << situation();
    const auto frameIs = [&](double width, double height) {
        return waitUntil([&] {
            const Rectangle frame = windows.frame(window);
            return std::abs(frame.width - width) <= 2 && std::abs(frame.height - height) <= 2;
        });
    };
    const Point centre = windows.frame(window).centre();
    const auto keptItsCentre = [&] {
        const Point now = windows.frame(window).centre();
        return std::abs(now.x - centre.x) <= 3 && std::abs(now.y - centre.y) <= 3;
    };
    input.control('1');
    EXPECT_TRUE(frameIs(600 * m_scale, 400 * m_scale)) << situation();
    EXPECT_TRUE(waitUntil(keptItsCentre)) << situation();
    input.control('2');
    EXPECT_TRUE(frameIs(900 * m_scale, 600 * m_scale)) << situation();
    EXPECT_TRUE(waitUntil(keptItsCentre)) << situation();
    const Rectangle area = screenAndKeys.workArea();
    input.control('3');
    EXPECT_TRUE(frameIs(area.width - 80 * m_scale, area.height - 80 * m_scale)) << situation();
    EXPECT_TRUE(waitUntilFrameRests()) << situation();
    input.control('4');
    EXPECT_TRUE(waitForContents(640 / m_scale, 480 / m_scale)) << situation();
    EXPECT_TRUE(waitUntilFrameRests()) << situation();
}

INSTANTIATE_TEST_SUITE_P(Scales, ZoomThatResizes, testing::Values(1.0, 1.25, 1.5, 2.0),
                         [](const auto &each) { return "at" + std::to_string(static_cast<int>(each.param * 100)); });

} // namespace tallowmere
