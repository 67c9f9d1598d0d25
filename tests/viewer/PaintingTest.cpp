// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "tests/viewer/ViewerFixture.h"
#include "viewer/DisplayPreparation.h"
#include "viewer/NonInteractiveImageView.h"

#include <QImage>
#include <QLabel>
#include <QTemporaryDir>
#include <QTest>

namespace tallowmere::test {
namespace {

constexpr QRgb kRed = 0xffcc2200;
constexpr QRgb kBackground = 0xff102030;

class Painting : public ::testing::Test
{
protected:
    Painting()
    {
        view.resize(200, 100);
        view.setImageScaling(ImageScaling::proportionallyDown);
        view.setBackgroundColor(QColor(kBackground));
        preparation->setTarget({{200, 100}, 1.0, std::nullopt, {}});
    }
    [[nodiscard]] QImage painted() { return view.grab().toImage().convertToFormat(QImage::Format_RGB32); }

    SettingsManager settings{std::make_unique<MemoryDefaultsStore>()};
    SteppedLauncher launcher;
    SteppedMainQueue mainQueue;
    std::shared_ptr<DisplayPreparation> preparation = std::make_shared<DisplayPreparation>(settings);
    DraggableImageView view{preparation, launcher, mainQueue};
};

TEST_F(Painting, fillsTheViewWithTheBackgroundWithoutAnImage)
{
    const QImage picture = painted();
    EXPECT_EQ(picture.pixel(0, 0), kBackground);
    EXPECT_EQ(picture.pixel(199, 99), kBackground);
    EXPECT_FALSE(view.hasPaintedImage());
}

TEST_F(Painting, putsASmallImageInTheMiddleAtItsOwnSize)
{
    view.setImage(imageOf(40, 20, kRed));
    const QImage picture = painted();
    EXPECT_EQ(picture.pixel(80, 40), kRed);
    EXPECT_EQ(picture.pixel(119, 59), kRed);
    EXPECT_EQ(picture.pixel(79, 40), kBackground);
    EXPECT_EQ(picture.pixel(120, 59), kBackground);
    EXPECT_EQ(picture.pixel(100, 39), kBackground);
    EXPECT_EQ(picture.pixel(100, 60), kBackground);
    EXPECT_TRUE(view.hasPaintedImage());
}

TEST_F(Painting, reducesALargeImageToTheView)
{
    view.setImage(imageOf(800, 200, kRed));
    const QImage picture = painted();
    EXPECT_EQ(picture.pixel(0, 50), kRed);
    EXPECT_EQ(picture.pixel(199, 50), kRed);
    EXPECT_EQ(picture.pixel(100, 24), kBackground);
    EXPECT_EQ(picture.pixel(100, 25), kRed);
    EXPECT_EQ(picture.pixel(100, 74), kRed);
    EXPECT_EQ(picture.pixel(100, 75), kBackground);
}

TEST_F(Painting, showsTheBackgroundThroughTransparentPixels)
{
    view.setImage(imageOf(40, 20, 0x00000000));
    EXPECT_EQ(painted().pixel(100, 50), kBackground);
}

TEST_F(Painting, makesDoWithoutTheCopyAndHasItMadeInTheBackground)
{
    view.setImage(imageOf(800, 400, kRed));
    EXPECT_EQ(painted().pixel(100, 50), kRed) << "before any copy exists";
    ASSERT_EQ(launcher.launched().size(), 1U);
    EXPECT_EQ(launcher.launched().front().label, "com.tallowmere.displayCopy");
    (void)painted();
    EXPECT_EQ(launcher.launched().size(), 1U) << "asked for once";
    launcher.runAll();
    EXPECT_TRUE(preparation->copies().find(view.image(), {200, 100}));
    mainQueue.runAll();
    EXPECT_EQ(painted().pixel(100, 50), kRed);
    EXPECT_EQ(launcher.launched().size(), 1U);
}

TEST_F(Painting, scalesNothingWhenTheCopyWasPreparedAhead)
{
    const ImagePtr image = imageOf(800, 400, kRed);
    settings.setAutoResizeToImageSize(false);
    preparation->prepare(image);
    view.setImage(image);
    EXPECT_EQ(painted().pixel(100, 50), kRed);
    EXPECT_TRUE(launcher.launched().empty());
}

TEST_F(Painting, asksForNoCopiesOfTheSizesInBetween)
{
    view.setImage(imageOf(800, 400, kRed));
    view.setInTransition(true);
    EXPECT_EQ(painted().pixel(100, 50), kRed);
    EXPECT_TRUE(launcher.launched().empty());
    view.setInTransition(false);
    (void)painted();
    EXPECT_EQ(launcher.launched().size(), 1U);
}

TEST_F(Painting, anOlderWishEndsWhenTheSizeChangesAgain)
{
    view.setImage(imageOf(3000, 1500, kRed));
    (void)painted();
    view.resize(150, 75);
    (void)painted();
    ASSERT_EQ(launcher.launched().size(), 2U);
    launcher.runAll();
    mainQueue.runAll();
    EXPECT_TRUE(preparation->copies().find(view.image(), {150, 75}));
    EXPECT_FALSE(preparation->copies().find(view.image(), {200, 100}));
}

TEST_F(Painting, aViewThatDiesWhileItsCopyIsMadeLeavesNothingBehind)
{
    auto other = std::make_unique<DraggableImageView>(preparation, launcher, mainQueue);
    other->resize(200, 100);
    other->setImage(imageOf(800, 400, kRed));
    (void)other->grab();
    other.reset();
    launcher.runAll();
    mainQueue.runAll();
    EXPECT_EQ(preparation->copies().bytes(), 0U);
}

TEST_F(Painting, survivesATinyView)
{
    view.setImage(imageOf(800, 400, kRed));
    view.resize(1, 1);
    EXPECT_EQ(painted().size(), QSize(1, 1));
    view.resize(0, 0);
    (void)painted();
}

class Idle : public ViewerFixture
{
protected:
    void expectInside(const QWidget *part) const
    {
        if (part->isVisible()) {
            EXPECT_TRUE(idleScreen()->rect().contains(part->geometry()))
                << part->geometry().width() << "x" << part->geometry().height();
        }
    }
};

TEST_F(Idle, fitsWhateverTheWindowsSize)
{
    showWindow();
    for (const QSize size : {QSize(600, 400), QSize(200, 300), QSize(900, 60), QSize(120, 40), QSize(30, 30)}) {
        window->resize(size);
        expectInside(idleScreen()->instructionLabel());
        expectInside(idleScreen()->logoImageView());
    }
}

TEST_F(Idle, theLogoIsNeverLargerThan100)
{
    showWindow();
    window->resize(780, 780);
    EXPECT_LE(idleScreen()->logoImageView()->width(), 100);
    EXPECT_LE(idleScreen()->logoImageView()->height(), 100);
}

TEST_F(Idle, theInstructionIsQuieterThanOrdinaryText)
{
    const QColor text = idleScreen()->instructionLabel()->palette().color(QPalette::WindowText);
    const QPalette palette = controller->view()->palette();
    const auto distance = [](const QColor &a, const QColor &b) { return std::abs(a.lightness() - b.lightness()); };
    EXPECT_LT(distance(text, palette.color(QPalette::Window)),
              distance(palette.color(QPalette::WindowText), palette.color(QPalette::Window)));
    EXPECT_GT(distance(text, palette.color(QPalette::Window)), 60);
}

TEST_F(Idle, theInstructionFollowsTheAppearance)
{
    QPalette dark;
    dark.setColor(QPalette::Window, QColor(30, 30, 30));
    dark.setColor(QPalette::WindowText, QColor(240, 240, 240));
    window->setPalette(dark);
    EXPECT_GT(idleScreen()->instructionLabel()->palette().color(QPalette::WindowText).lightness(), 120);
    window->setPalette(QPalette(Qt::black, QColor(240, 240, 240)));
    EXPECT_LT(idleScreen()->instructionLabel()->palette().color(QPalette::WindowText).lightness(), 140);
}

TEST(NonInteractiveImageView, drawsItsImageInProportionInTheMiddle)
{
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("wide.png"));
    QImage wide(40, 10, QImage::Format_RGB32);
    wide.fill(kRed);
    ASSERT_TRUE(wide.save(file));
    NonInteractiveImageView view;
    view.setImage(file);
    view.resize(80, 80);
    QImage picture(80, 80, QImage::Format_RGB32);
    picture.fill(kBackground);
    view.render(&picture, {}, {}, QWidget::DrawChildren);
    EXPECT_EQ(picture.pixel(1, 40), kRed);
    EXPECT_EQ(picture.pixel(78, 40), kRed);
    EXPECT_EQ(picture.pixel(40, 28), kBackground);
    EXPECT_EQ(picture.pixel(40, 52), kBackground);
}

TEST(NonInteractiveImageView, isEmptyWithoutItsImage)
{
    NonInteractiveImageView view;
    view.setImage(QStringLiteral(":/there-is-no-such.svg"));
    EXPECT_TRUE(view.isEmpty());
    view.resize(20, 20);
    EXPECT_FALSE(view.grab().isNull());
}

} // namespace
} // namespace tallowmere::test
