// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/viewer/ViewerFixture.h"
#include "viewer/TransparencyChecker.h"

namespace tallowmere::test {
namespace {

constexpr std::uint32_t kHalfRed = 0x80800000; // premultiplied
constexpr std::uint32_t kClear = 0x00000000;

class Transparency : public ViewerFixture
{
protected:
    Transparency()
    {
        settings.setTransparencyBackground(TransparencyBackground::checkers);
        settings.setShowFileSize(false);
        settings.setShowCreationDate(false);
        settings.setShowImageResolution(false);
    }
    void setWindowColor(QColor color)
    {
        QPalette palette = window->palette();
        palette.setColor(QPalette::Window, color);
        window->setPalette(palette);
        mainQueue.runAll();
    }
    [[nodiscard]] TransparencyChecker *checker() const
    {
        return controller->view()->findChild<TransparencyChecker *>();
    }
    /// Eight bits a component, as on the screen.
    [[nodiscard]] QColor seenAt(QPoint point)
    {
        mainQueue.runAll();
        return QColor(controller->view()->grab().toImage().pixel(point));
    }
    [[nodiscard]] static QColor grey(int white) { return {white, white, white}; }
};

TEST_F(Transparency, anOpaqueJpegHasNoCheckerboard)
{
    showWindow();
    open(cachedFile("a.jpg", imageOf(300, 200)));
    EXPECT_TRUE(checker()->isHidden());
    EXPECT_EQ(seenAt({5, 5}), controller->windowBackgroundColor());
}

TEST_F(Transparency, aPngWithAlphaAndASolidColourLetsTheBackgroundThrough)
{
    settings.setTransparencyBackground(TransparencyBackground::solidColor);
    showWindow();
    open(cachedFile("a.png", imageOf(300, 200, kClear)));
    EXPECT_TRUE(checker()->isHidden());
    EXPECT_EQ(seenAt({300, 200}), controller->windowBackgroundColor());
}

TEST_F(Transparency, aPngWithAlphaLiesOnACheckerboardThatFillsTheView)
{
    setWindowColor(QColor(239, 239, 239));
    showWindow();
    open(cachedFile("a.png", imageOf(300, 200, kClear)));
    EXPECT_TRUE(checker()->isVisible());
    EXPECT_EQ(checker()->geometry(), controller->view()->rect());
    const QColor base = grey(224);
    const QColor square = grey(209);
    EXPECT_EQ(seenAt({5, 5}), square) << "around the image, too";
    EXPECT_EQ(seenAt({15, 5}), base);
    EXPECT_EQ(seenAt({5, 15}), base);
    EXPECT_EQ(seenAt({305, 205}), square) << "through the image";
    EXPECT_EQ(seenAt({315, 205}), base);
}

TEST_F(Transparency, aHalfTransparentPictureMixesWithTheCheckerboard)
{
    setWindowColor(QColor(239, 239, 239));
    showWindow();
    open(cachedFile("a.png", imageOf(300, 200, kHalfRed)));
    const QColor seen = seenAt({315, 205});
    EXPECT_NEAR(seen.red(), 128 + 224 / 2, 2);
    EXPECT_NEAR(seen.green(), 224 / 2, 2);
}

TEST_F(Transparency, lightAndDarkChangeTheGreysAndRestoreTheWindowColour)
{
    settings.setAutoResizeToImageSize(true);
    const FileURL file = cachedFile("a.png", imageOf(300, 200, kClear));
    cache->averageColorCache.insert(file, std::make_shared<Color>(Color{0.0, 0.4, 0.6, 1.0}), sizeof(Color));
    setWindowColor(QColor(239, 239, 239));
    showWindow();
    open(file);
    EXPECT_EQ(checker()->pattern(), (CheckerPattern{0.88, 0.82}));
    EXPECT_EQ(imageView()->backgroundColor().toRgb(), QColor(0, 102, 153));
    setWindowColor(QColor(30, 30, 30));
    EXPECT_EQ(checker()->pattern(), (CheckerPattern{0.32, 0.27}));
    EXPECT_EQ(imageView()->backgroundColor().toRgb(), QColor(30, 30, 30));
    EXPECT_EQ(seenAt({5, 5}), grey(69));
    setWindowColor(QColor(239, 239, 239));
    EXPECT_EQ(checker()->pattern(), (CheckerPattern{0.88, 0.82}));
}

TEST_F(Transparency, theCheckerboardLeavesWithTheImage)
{
    showWindow();
    open(cachedFile("a.png", imageOf(300, 200, kClear)));
    ASSERT_TRUE(checker()->isVisible());
    controller->displayImage(folder.write("slow.png")); // not cached: nothing is shown for the moment
    EXPECT_TRUE(checker()->isHidden());
    open(cachedFile("b.png", imageOf(300, 200, kClear)));
    ASSERT_TRUE(checker()->isVisible());
    controller->showIdleState();
    EXPECT_TRUE(checker()->isHidden());
    EXPECT_EQ(seenAt({5, 5}), controller->windowBackgroundColor());
}

TEST_F(Transparency, theSettingTakesEffectOnTheImageShown)
{
    showWindow();
    settings.setTransparencyBackground(TransparencyBackground::solidColor);
    open(cachedFile("a.png", imageOf(300, 200, kClear)));
    settings.setTransparencyBackground(TransparencyBackground::checkers);
    controller->updateTransparencyBackground();
    EXPECT_TRUE(checker()->isVisible());
    settings.setTransparencyBackground(TransparencyBackground::solidColor);
    controller->updateTransparencyBackground();
    EXPECT_EQ(seenAt({5, 5}), controller->windowBackgroundColor());
}

TEST_F(Transparency, anImageWithoutPixelsHasNoCheckerboard)
{
    showWindow();
    open(cachedFile("a.png", imageOf(0, 0, kClear)));
    EXPECT_TRUE(checker()->isHidden());
}

} // namespace
} // namespace tallowmere::test
