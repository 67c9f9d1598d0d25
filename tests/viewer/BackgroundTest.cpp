// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/doubles/TestImages.h"
#include "tests/viewer/ViewerFixture.h"

#include <QWindow>

namespace tallowmere::test {
namespace {

class Background : public ViewerFixture
{
protected:
    void rememberAverage(const FileURL &file, Color color)
    {
        cache->averageColorCache.insert(file, std::make_shared<Color>(color), sizeof(Color));
    }
    [[nodiscard]] QColor shown() const { return imageView()->backgroundColor().toRgb(); }
    [[nodiscard]] bool averageIsBeingComputed() const
    {
        for (const auto &launched : launcher.launched()) {
            if (launched.label == "com.tallowmere.averageColor")
                return true;
        }
        return false;
    }
    void setWindowColor(QColor color)
    {
        QPalette palette = window->palette();
        palette.setColor(QPalette::Window, color);
        window->setPalette(palette);
    }

    static constexpr Color kTeal{0.0, 0.4, 0.6, 1.0};
    const QColor teal = QColor(0, 102, 153);
};

TEST_F(Background, isTheCachedAverageColourWhenTheWindowFollowsTheImage)
{
    settings.setAutoResizeToImageSize(true);
    const FileURL file = cachedFile("a.jpg");
    rememberAverage(file, kTeal);
    controller->displayImage(file);
    EXPECT_EQ(shown(), teal);
    EXPECT_FALSE(averageIsBeingComputed());
}

TEST_F(Background, isComputedStoredAndAppliedWhenNothingIsCached)
{
    settings.setAutoResizeToImageSize(true);
    const FileURL file = folder.write("a.png", pngOf(40, 30, {0, 102, 153, 255}));
    controller->displayImage(file);
    EXPECT_FALSE(averageIsBeingComputed()) << "not before the image has loaded";
    launcher.runAll();
    mainQueue.runAll();
    EXPECT_EQ(shown(), controller->windowBackgroundColor());
    launcher.runAll();
    EXPECT_TRUE(cache->averageColorCache.contains(file));
    EXPECT_NE(shown(), teal) << "applied on the main queue only";
    mainQueue.runAll();
    EXPECT_EQ(shown(), teal);
}

TEST_F(Background, isNotRepaintedByAnAverageThatArrivesAfterFixedSizesWereChosen)
{
    settings.setAutoResizeToImageSize(true);
    controller->displayImage(cachedFile("a.jpg", imageOf(40, 30, 0xff006699)));
    launcher.runAll();
    settings.setAutoResizeToImageSize(false);
    mainQueue.runAll();
    EXPECT_EQ(shown(), controller->windowBackgroundColor());
}

TEST_F(Background, isNotRepaintedByAnAverageThatArrivesInTheIdleState)
{
    settings.setAutoResizeToImageSize(true);
    controller->displayImage(cachedFile("a.jpg", imageOf(40, 30, 0xff006699)));
    launcher.runAll();
    controller->showIdleState();
    mainQueue.runAll();
    EXPECT_EQ(shown(), controller->windowBackgroundColor());
}

TEST_F(Background, isRepaintedByAnAverageThatArrivesWhileTheNextFileIsLoading)
{
    settings.setAutoResizeToImageSize(true);
    controller->displayImage(cachedFile("a.jpg", imageOf(40, 30, 0xff006699)));
    ASSERT_TRUE(averageIsBeingComputed());
    launcher.runAll();
    controller->displayImage(folder.write("slow.png", pngOf(40, 30, {200, 0, 0, 255})));
    ASSERT_EQ(controller->currentImage(), nullptr);
    mainQueue.runAll();
    EXPECT_EQ(shown(), teal) << "results are applied as they arrive";
}

TEST_F(Background, isTheWindowColourWhenTheWindowDoesNotFollowTheImage)
{
    const FileURL file = cachedFile("a.jpg");
    rememberAverage(file, kTeal);
    controller->applyBackgroundColor(Qt::red);
    controller->displayImage(file);
    EXPECT_EQ(shown(), controller->windowBackgroundColor());
    EXPECT_FALSE(averageIsBeingComputed());
}

TEST_F(Background, followsTheAppearanceWhateverIsShown)
{
    settings.setAutoResizeToImageSize(true);
    const FileURL file = cachedFile("a.jpg");
    rememberAverage(file, kTeal);
    controller->displayImage(file);
    setWindowColor(QColor(30, 30, 30));
    EXPECT_EQ(shown(), teal) << "not within the event";
    mainQueue.runAll();
    EXPECT_EQ(shown(), QColor(30, 30, 30));
}

TEST_F(Background, isLeftAloneByAPaletteOfTheSameWindowColour)
{
    settings.setAutoResizeToImageSize(true);
    const FileURL file = cachedFile("a.jpg");
    rememberAverage(file, kTeal);
    controller->displayImage(file);
    QPalette palette = window->palette();
    palette.setColor(QPalette::Highlight, Qt::green);
    window->setPalette(palette);
    mainQueue.runAll();
    EXPECT_EQ(shown(), teal);
}

TEST_F(Background, letsTheWindowThroughATransparentAverage)
{
    setWindowColor(Qt::white);
    mainQueue.runAll();
    controller->applyBackgroundColor(QColor::fromRgbF(0, 0, 0, 0));
    EXPECT_EQ(shown(), QColor(Qt::white));
}

TEST_F(Background, theTitleFollowsTheSetting)
{
    open(cachedFile("photo.jpg"));
    EXPECT_EQ(window->windowTitle(), QStringLiteral("Tallowmere • photo.jpg"));
    settings.setFileNameDisplayLocation(FileNameDisplayLocation::inCorner);
    controller->updateFileNameDisplay(controller->currentFile());
    EXPECT_EQ(window->windowTitle(), QStringLiteral("Tallowmere"));
}

TEST_F(Background, anAsteriskInBracketsSurvivesInTheTitle)
{
    showWindow();
    open(cachedFile("a[*]b.jpg"));
    EXPECT_EQ(window->windowHandle()->title(), QStringLiteral("Tallowmere • a[*]b.jpg"));
}

} // namespace
} // namespace tallowmere::test
